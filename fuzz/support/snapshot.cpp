#include "support/snapshot.h"

#include <algorithm>

#include "terminal/commands/function_keys.h"
#include "terminal/drawing/screen_controls.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"

namespace qxterm::fuzz {
namespace {

template <class... Number>
void appendNumbers(std::string& out, Number... number) {
    ((out += std::to_string(number) + ' '), ...);
    out += '\n';
}

void appendLine(std::string& out, const ScreenLine& line) {
    out.append(line.text.data(), line.text.size());
    for (std::size_t at = 1; at < line.attrs.size(); ++at) out += ' ' + std::to_string(line.attrs[at]);
    out += '\n';
}

}  // namespace

std::string terminalState() {
    std::string out;
    for (std::int32_t row = 0; row < screenRows; ++row) appendLine(out, lineOnRow(row));
    appendNumbers(out, curCol, curRow, curAttr, curFg, curBg, screenMode, regionTop, regionBottom);
    appendNumbers(out, savedCol, savedRow, savedAttr.flags, savedAttr.fg, savedAttr.bg, scrollbackTop,
                  fkeyBank);
    out += lastChar + '\n';
    for (const auto& bank : fkeyLabels) {
        for (const auto& label : bank) out.append(label.begin(), label.end());
    }
    for (const auto& bank : fkeyStrings) {
        for (const auto& string : bank) out += string + '\n';
    }
    constexpr std::int32_t newest = 30;
    const std::int32_t first = std::max<std::int32_t>(scrollbackTop, scrollbackLines - newest);
    for (std::int32_t position = first; position <= scrollbackLines; ++position)
        appendLine(out, virtualLine(position));
    return out;
}

std::string windowState() {
    const Picture& cells = picterm.picture();
    std::string out;
    for (int row = 0; row < pictureRows; ++row) {
        for (int column = 0; column < pictureColumns; ++column) {
            const PictureCell cell = cells.at(column, row);
            out += cell.text();
            for (const int part :
                 {int{cell.fg()}, int{cell.bg()}, int{cell.style()}, int{cell.drawn()}, int{cell.cursor()}})
                out += static_cast<char>('0' + part);
        }
        out += '\n';
    }
    return out;
}

}  // namespace qxterm::fuzz
