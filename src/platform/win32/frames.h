#pragma once

namespace qxterm::win32 {

/// Brings all pictures onto the glass, after the paints that wait: when the event loop is about to wait,
/// before another loop than the program's own begins, after a paint message.
void showPictures();
/// The same while output flows, when the frame before has stood long enough (some 16 ms). inBlock: the
/// picture may be half way, so that there is reason to wait for the end of the block.
void showPicturesIfDue(bool inBlock);

}  // namespace qxterm::win32
