#include "setup/aside.h"

#include <algorithm>
#include <iterator>

namespace setup {

std::wstring asideName(std::wstring_view file, unsigned number) {
    return std::wstring{file}.append(asideMark).append(std::to_wstring(number));
}

std::wstring nameBeforeAside(std::wstring_view name) {
    const std::size_t mark = name.rfind(asideMark);
    if (mark == std::wstring_view::npos || mark == 0) return {};
    const std::wstring_view number = name.substr(mark + asideMark.size());
    const bool digits = !number.empty() && std::all_of(number.begin(), number.end(),
                                                       [](wchar_t c) { return c >= L'0' && c <= L'9'; });
    return digits ? std::wstring{name.substr(0, mark)} : std::wstring{};
}

FileList readFileList(std::wstring_view text) {
    std::vector<std::wstring> parts(1);
    for (const wchar_t letter : text) {
        if (letter == L'|') {
            parts.emplace_back();
        } else {
            parts.back() += letter;
        }
    }
    FileList list;
    list.folder = parts.front();
    if (list.folder.empty()) return list;
    if (list.folder.back() != L'\\') list.folder += L'\\';
    std::copy_if(parts.begin() + 1, parts.end(), std::back_inserter(list.files),
                 [](const std::wstring& file) { return !file.empty(); });
    return list;
}

}  // namespace setup
