#pragma once

#include "platform/picture_box.h"
#include "platform/win32/system.h"

/// What screen readers and magnifiers follow: the keyboard focus, a caret, and events that tell of changes.
namespace qxterm::win32 {

/// The window of a picture box has got the keyboard, or loses it. The system's caret is there meanwhile, as
/// large as a cell and without a pixel that would be seen.
void screenGotFocus(PictureBox& box);
void screenLostFocus();
/// A frame was shown: the caret goes where the cursor is, and readers are told which rows have changed, at
/// once when little has changed, a few times a second while output flows. Costs next to nothing while nobody
/// listens.
void screenShown(PictureBox& box);

}  // namespace qxterm::win32
