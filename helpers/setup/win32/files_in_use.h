#pragma once

#include <string>

#include "setup/aside.h"

namespace setup {

/// The path of a file that somebody has open so that it cannot be set aside, or an empty text. Nothing is
/// changed. Whoever may not rename the files anyway is told of none.
[[nodiscard]] std::wstring stuckFile(const FileList& list);

/// Gives every file of the list that is in use another name, so that its own name is free. Either all of
/// them, or none: returns the path of a file that could not be set aside, or an empty text.
[[nodiscard]] std::wstring setAside(const FileList& list);

/// Gives files that were set aside their names again, where these are free.
void putBack(const FileList& list);

/// Deletes what was set aside in the folders of the list, as far as it is no longer in use. What still is
/// goes when Windows starts next, and the folders with it if nothing else is in them by then.
void clearAside(const FileList& list);

}  // namespace setup
