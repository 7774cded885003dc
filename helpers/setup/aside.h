#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace setup {

/// A file in use cannot be replaced, but can be given another name: it is set aside. The names of such files
/// are those of the file, this mark and a number.
inline constexpr std::wstring_view asideMark = L".in-use-";

/// The number-th name for the file set aside.
[[nodiscard]] std::wstring asideName(std::wstring_view file, unsigned number);

/// The name that a file set aside had, or an empty one if the name is not one of those.
[[nodiscard]] std::wstring nameBeforeAside(std::wstring_view name);

/// What an installer's action is told: a folder and the files in it, as "FOLDER|FILE|FILE...".
struct FileList {
    /// Ends in a backslash.
    std::wstring folder;
    /// Relative to the folder.
    std::vector<std::wstring> files;
};

/// Takes the text apart; a list without a folder has no files.
[[nodiscard]] FileList readFileList(std::wstring_view text);

}  // namespace setup
