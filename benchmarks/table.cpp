#include "table.h"

#include <algorithm>
#include <cstdio>

namespace qxterm::bench {

Table::Table(std::vector<std::string> headings) { rows_.push_back(std::move(headings)); }

void Table::addRow(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

void Table::print() const {
    std::vector<std::size_t> widths;
    for (const auto& row : rows_) {
        widths.resize(std::max(widths.size(), row.size()), 0);
        for (std::size_t at = 0; at < row.size(); ++at) widths[at] = std::max(widths[at], row[at].size());
    }
    for (std::size_t number = 0; number < rows_.size(); ++number) {
        std::string line;
        for (std::size_t at = 0; at < rows_[number].size(); ++at) {
            const std::string& cell = rows_[number][at];
            const std::string blanks(widths[at] - cell.size(), ' ');
            line += at == 0 ? cell + blanks : "  " + blanks + cell;
        }
        std::printf("%s\n", line.c_str());
        if (number == 0) std::printf("%s\n", std::string(line.size(), '-').c_str());
    }
    std::printf("\n");
    std::fflush(stdout);
}

std::string decimal(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

}  // namespace qxterm::bench
