#include "picture_svg.h"

#include "picture_text.h"

namespace qxterm::scenario {
namespace {

constexpr int baseline = 14;         // of the text, below a cell's upper edge
constexpr int underlineOffset = 16;  // of the line under it
constexpr const char* fonts = "QXTERM, 'Liberation Mono', 'DejaVu Sans Mono', 'Courier New', monospace";

/// The look of a cell as it is seen, with its inversion.
struct Look {
    std::uint8_t fg;
    std::uint8_t bg;
    bool bold;
    friend bool operator==(const Look&, const Look&) = default;
};

/// Bit 0 is red, bit 1 green, bit 2 blue.
std::string colour(std::uint8_t index) {
    std::string text{"#"};
    for (const unsigned bit : {1U, 2U, 4U}) text += (index & bit) != 0 ? 'f' : '0';
    return text;
}

std::uint8_t inverted(std::uint8_t index) { return index ^ 7U; }

Look lookOf(const PictureCell& cell) {
    if (cell.inverted()) return {inverted(cell.fg()), inverted(cell.bg()), cell.bold()};
    return {cell.fg(), cell.bg(), cell.bold()};
}

std::string escaped(const std::string& character) {
    if (character == "&") return "&amp;";
    if (character == "<") return "&lt;";
    if (character == ">") return "&gt;";
    return character;
}

std::string number(int halves) {
    std::string text = std::to_string(halves / 2);
    if (halves % 2 != 0) text += ".5";
    return text;
}

std::string rectangle(int x, int y, int width, int height, std::uint8_t index) {
    return "<rect x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" width=\"" +
           std::to_string(width) + "\" height=\"" + std::to_string(height) + "\" fill=\"" + colour(index) +
           "\"/>\n";
}

/// The strokes of a line-drawing character in the cell whose upper left corner is at x and y.
std::string strokes(char character, int x, int y) {
    const std::string left = std::to_string(x);
    const std::string right = std::to_string(x + svgCellWidth);
    const std::string top = std::to_string(y);
    const std::string bottom = std::to_string(y + svgCellHeight);
    const std::string middleX = number(2 * x + svgCellWidth);
    const std::string middleY = number(2 * y + svgCellHeight + 1);
    const auto across = [&](int halves) { return "M" + left + ' ' + number(2 * y + halves) + 'H' + right; };
    const std::string centre = "M" + middleX + ' ' + middleY;
    const std::string up = centre + 'V' + top;
    const std::string down = centre + 'V' + bottom;
    const std::string leftward = centre + 'H' + left;
    const std::string rightward = centre + 'H' + right;
    switch (character) {
        case 'j': return up + leftward;
        case 'k': return down + leftward;
        case 'l': return down + rightward;
        case 'm': return up + rightward;
        case 'n': return up + down + leftward + rightward;
        case 'o': return across(1);
        case 'p': return across(9);
        case 'q': return leftward + rightward;
        case 'r': return across(27);
        case 's': return across(35);
        case 't': return up + down + rightward;
        case 'u': return up + down + leftward;
        case 'v': return up + leftward + rightward;
        case 'w': return down + leftward + rightward;
        default: return up + down;
    }
}

/// Cells of one row from `first` on that look alike.
class RowDrawing {
public:
    RowDrawing(const Picture::Row& row, int y, std::uint8_t background) : y_{y} {
        for (std::size_t column = 0; column < row.size(); ++column) {
            const PictureCell cell = row[column].on(background);
            const Look look = lookOf(cell);
            if (column == 0 || !(look == look_)) {
                finish();
                look_ = look;
                first_ = static_cast<int>(column);
            }
            end_ = static_cast<int>(column) + 1;
            add(cell);
        }
        finish();
    }

    std::string backgrounds;
    std::string foregrounds;

private:
    void add(const PictureCell& cell) {
        const int x = (end_ - 1) * svgCellWidth;
        if (isGlyph(cell)) {
            path_ += strokes(cell.text(), x, y_);
            finishWord();
        } else if (cell.code() == ' ' || cell.code() == '\xA0') {
            finishWord();
        } else {
            places_ += (places_.empty() ? "" : " ") + std::to_string(x);
            word_ += escaped(utf8(cell.code()));
        }
        if (cell.underlined()) {
            path_ += "M" + std::to_string(x) + ' ' + std::to_string(y_ + underlineOffset) + ".5h" +
                     std::to_string(svgCellWidth);
        }
        if (cell.barInverted()) {
            bar_ += rectangle(x, y_ + svgCellHeight - underlineCursorHeight, svgCellWidth,
                              underlineCursorHeight, inverted(look_.bg));
        }
    }

    /// Each character has its place, so that any font keeps the columns. Viewers that know only the first
    /// place of a text keep them by words, in fonts of the usual width.
    void finishWord() {
        if (word_.empty()) return;
        texts_ += "<text y=\"" + std::to_string(y_ + baseline) + "\" x=\"" + places_ + "\" fill=\"" +
                  colour(look_.fg) + (look_.bold ? "\" font-weight=\"bold" : "") + "\">" + word_ +
                  "</text>\n";
        word_.clear();
        places_.clear();
    }

    void finish() {
        if (end_ == first_) return;
        backgrounds +=
            rectangle(first_ * svgCellWidth, y_, (end_ - first_) * svgCellWidth, svgCellHeight, look_.bg);
        finishWord();
        foregrounds += texts_;
        if (!path_.empty()) {
            foregrounds += "<path d=\"" + path_ + "\" stroke=\"" + colour(look_.fg) + "\"/>\n";
        }
        foregrounds += bar_;
        texts_.clear();
        path_.clear();
        bar_.clear();
        first_ = end_;
    }

    int y_;
    int first_ = 0;
    int end_ = 0;
    Look look_{};
    std::string texts_;
    std::string word_;
    std::string places_;  ///< of the word's characters
    std::string path_;
    std::string bar_;
};

}  // namespace

std::string pictureAsSvg(const Picture& picture, std::uint8_t background) {
    const std::string width = std::to_string(svgWidth);
    const std::string height = std::to_string(svgHeight);
    std::string backgrounds;
    std::string foregrounds;
    for (int row = 0; row < pictureRows; ++row) {
        const RowDrawing drawing{picture.row(row), row * svgCellHeight, background};
        backgrounds += drawing.backgrounds;
        foregrounds += drawing.foregrounds;
    }
    std::string svg =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"";
    svg += width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + ' ' + height +
           "\" font-family=\"" + fonts +
           "\" font-size=\"15\" fill=\"none\" shape-rendering=\"crispEdges\">\n";
    return svg + backgrounds + foregrounds + "</svg>\n";
}

}  // namespace qxterm::scenario
