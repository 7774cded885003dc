#include "platform/glass.h"

#include <algorithm>

namespace qxterm {
namespace {

/// Cells that stand right between two that do not are drawn along when they are so few: one longer call costs
/// less than two.
constexpr int longestGap = 8;

/// A scroll must save drawing so many rows; it costs about as much as drawing that many.
constexpr int fewestRowsSaved = 4;

/// True when two cells show the same but for inversions.
[[nodiscard]] bool sameContent(PictureCell a, PictureCell b) {
    a = a.plain();
    b = b.plain();
    return a == b || (a.blank() && b.blank() && a.bg() == b.bg());
}

[[nodiscard]] bool sameInversion(PictureCell a, PictureCell b) {
    return a.inverted() == b.inverted() && a.barInverted() == b.barInverted();
}

/// A run of cells that one text call draws. Blanks take any look of their background, but not the terminal
/// font, which is asked for its glyphs alone.
class Run {
public:
    explicit Run(PictureCell first) { (void)take(first); }

    /// False when the cell does not belong to the run.
    [[nodiscard]] bool take(PictureCell cell) {
        if (cell.blank() && !underlined_ && look_.font == TextFont::normal) {
            if (size_ > 0 && cell.bg() != look_.bg) return false;
            look_.bg = cell.bg();
        } else if (size_ == 0 ||
                   (blank_ && cell.bg() == look_.bg && !cell.underlined() && !cell.terminalFont())) {
            look_ = cell.look();
            underlined_ = cell.underlined();
            blank_ = false;
        } else if (cell.look() != look_ || cell.underlined() != underlined_) {
            return false;
        }
        codes_[size_++] = cell.code();
        return true;
    }

    [[nodiscard]] bool blank() const { return blank_; }

    void draw(Surface& surface, int row, int column, int count) const {
        if (blank_) {
            surface.blank(row, column, count, look_.bg);
        } else {
            surface.text(row, column, {codes_.data(), static_cast<std::size_t>(count)}, look_, underlined_);
        }
    }

private:
    std::array<char, pictureColumns> codes_{};
    std::size_t size_ = 0;
    TextLook look_;
    bool blank_ = true;
    bool underlined_ = false;
};

}  // namespace

void Glass::forget() {
    for (Row& row : rows_) row.fill(unknown);
}

void Glass::forget(const CellSet& cells) {
    if (cells.empty()) return;
    for (int row = 0; row < pictureRows; ++row) {
        for (int column = 0; column < pictureColumns; ++column) {
            if (cells.contains(column, row)) rowAt(row)[static_cast<std::size_t>(column)] = unknown;
        }
    }
}

bool Glass::stands(const Row& wanted, int row) const {
    const Row& there = rows_[static_cast<std::size_t>(row)];
    return std::equal(wanted.begin(), wanted.end(), there.begin(), [](PictureCell a, PictureCell b) {
        return a == b || (sameContent(a, b) && sameInversion(a, b));
    });
}

/// By how many the rows that have to be drawn become fewer.
int Glass::rowsSavedBy(const Move& move) const {
    int saved = 0;
    for (int row = move.first; row <= move.last; ++row) {
        const Row& wanted = wanted_[static_cast<std::size_t>(row)];
        const int from = row - move.by;
        const bool standsThen = from >= move.first && from <= move.last && stands(wanted, from);
        saved += (standsThen ? 1 : 0) - (stands(wanted, row) ? 1 : 0);
    }
    return saved;
}

/// The widest scroll of this frame, if it is worth being carried out.
bool Glass::findMove(const Picture& picture, Move& move) const {
    std::array<int, std::size_t{2} * pictureRows> followers{};  // rows by the distance that they have come
    const auto distanceOf = [&](int row) { return row - picture.origins()[static_cast<std::size_t>(row)]; };
    const auto cameAlong = [&](int row) {
        return picture.origins()[static_cast<std::size_t>(row)] != Picture::noOrigin && distanceOf(row) != 0;
    };
    for (int row = 0; row < pictureRows; ++row) {
        if (cameAlong(row)) ++followers[static_cast<std::size_t>(distanceOf(row) + pictureRows)];
    }
    const auto most = std::max_element(followers.begin(), followers.end());
    if (*most < fewestRowsSaved) return false;
    move = {pictureRows, -1, static_cast<int>(most - followers.begin()) - pictureRows};
    for (int row = 0; row < pictureRows; ++row) {
        if (!cameAlong(row) || distanceOf(row) != move.by) continue;
        move.first = std::min({move.first, row, row - move.by});
        move.last = std::max({move.last, row, row - move.by});
    }
    return rowsSavedBy(move) >= fewestRowsSaved;
}

void Glass::moveRows(const Move& move, Surface& surface) {
    CellSet lost;
    surface.scroll(move.first, move.last, move.by, lost);
    const auto first = rows_.begin() + move.first;
    const auto end = rows_.begin() + move.last + 1;
    if (move.by < 0) {
        std::fill(std::copy(first - move.by, end, first), end, [] {
            Row row;
            row.fill(unknown);
            return row;
        }());
    } else {
        std::copy_backward(first, end - move.by, end);
        for (auto row = first; row != first + move.by; ++row) row->fill(unknown);
    }
    forget(lost);
}

void Glass::show(Picture& picture, std::uint8_t background, Surface& surface, bool mayScroll) {
    for (int row = 0; row < pictureRows; ++row) {
        const Row& cells = picture.row(row);
        std::transform(cells.begin(), cells.end(), wanted_[static_cast<std::size_t>(row)].begin(),
                       [background](PictureCell cell) { return cell.on(background); });
    }
    if (Move move{}; mayScroll && findMove(picture, move)) moveRows(move, surface);
    picture.beginFrame();
    for (int row = 0; row < pictureRows; ++row) {
        const Row& wanted = wanted_[static_cast<std::size_t>(row)];
        if (wanted == rows_[static_cast<std::size_t>(row)]) continue;
        for (int column = 0; column < pictureColumns;) {
            const auto at = static_cast<std::size_t>(column);
            column = sameContent(wanted[at], rowAt(row)[at]) ? column + 1 : drawRun(row, column, surface);
        }
        invertRow(row, surface);
    }
}

/// Draws the run that begins with a cell that differs, as far as there are more of them. Returns the column
/// behind it.
int Glass::drawRun(int row, int first, Surface& surface) {
    const Row& wanted = wanted_[static_cast<std::size_t>(row)];
    Row& there = rowAt(row);
    const auto cell = [](int column) { return static_cast<std::size_t>(column); };
    Run run{wanted[cell(first)]};
    int end = first + 1;  // behind the last cell that differs
    int ink = end;        // behind the last cell of them that shows more than its background
    for (int column = end; column < pictureColumns && column - end <= longestGap; ++column) {
        if (!run.take(wanted[cell(column)])) break;
        if (sameContent(wanted[cell(column)], there[cell(column)])) continue;
        end = column + 1;
        if (!wanted[cell(column)].blank()) ink = end;
    }
    // A long blank end is filled rather than written.
    if (!run.blank() && end - ink > longestGap) end = ink;
    run.draw(surface, row, first, end - first);
    cellsDrawn_ += static_cast<std::uint64_t>(end - first);
    for (int column = first; column < end; ++column) there[cell(column)] = wanted[cell(column)].plain();
    return end;
}

/// Once the contents stand: inverts what is inverted and should not be, and the other way round.
void Glass::invertRow(int row, Surface& surface) {
    const Row& wanted = wanted_[static_cast<std::size_t>(row)];
    Row& there = rowAt(row);
    const auto invertSpans = [&](auto&& differs, bool bar) {
        for (int column = 0; column < pictureColumns;) {
            int end = column;
            while (end < pictureColumns && differs(static_cast<std::size_t>(end))) ++end;
            if (end > column) surface.invert(row, column, end - column, bar);
            column = end + 1;
        }
    };
    invertSpans([&](std::size_t at) { return wanted[at].inverted() != there[at].inverted(); }, false);
    invertSpans([&](std::size_t at) { return wanted[at].barInverted() != there[at].barInverted(); }, true);
    there = wanted;
}

}  // namespace qxterm
