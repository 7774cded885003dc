#pragma once

#include <string>
#include <vector>

namespace qxterm::bench {

/// A table of text: the first column stands left, the others right, as wide as their longest cell.
class Table {
public:
    explicit Table(std::vector<std::string> headings);
    void addRow(std::vector<std::string> cells);
    /// Prints heading, rule and rows on standard output.
    void print() const;

private:
    std::vector<std::vector<std::string>> rows_;
};

/// A number with this many digits behind the point.
[[nodiscard]] std::string decimal(double value, int digits);

}  // namespace qxterm::bench
