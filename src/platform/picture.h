#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

/// What a picture box shows, as character cells in memory: the same on every system. How the cells get onto
/// the glass is the system's business.
namespace qxterm {

inline constexpr int pictureColumns = 80;
inline constexpr int pictureRows = 25;

/// Which font a character is drawn with: the picture box's own, or the terminal font that holds the
/// line-drawing glyphs.
enum class TextFont : std::uint8_t { normal, terminal };

/// Raster operations of an area fill.
enum class Raster : std::uint8_t { blackness, whiteness };

/// Whom an inverted cell belongs to. The underline cursor inverts only the lowest pixels of its cell.
enum class Inversion : std::uint8_t { cursor, underlineCursor, selection };

/// Height in pixels of the underline cursor.
inline constexpr std::int32_t underlineCursorHeight = 2;

/// How a text is drawn: colour indices 0 to 7, weight and font.
struct TextLook {
    std::uint8_t fg = 7;
    std::uint8_t bg = 0;
    bool bold = false;
    TextFont font = TextFont::normal;
    friend constexpr bool operator==(const TextLook&, const TextLook&) = default;
};

/// Cells from a column and row on. May lie outside of the picture, wholly or in part.
struct CellArea {
    std::int32_t column = 0;
    std::int32_t row = 0;
    std::int32_t columns = 0;
    std::int32_t rows = 0;

    [[nodiscard]] constexpr bool empty() const { return columns <= 0 || rows <= 0; }
    /// True when this area lies wholly inside the other one.
    [[nodiscard]] constexpr bool within(const CellArea& other) const {
        return column >= other.column && row >= other.row &&
               column + columns <= other.column + other.columns && row + rows <= other.row + other.rows;
    }
    /// What of it lies in the picture; empty when nothing does.
    [[nodiscard]] CellArea visible() const;
    friend constexpr bool operator==(const CellArea&, const CellArea&) = default;
};

/// The whole picture.
inline constexpr CellArea allCells{0, 0, pictureColumns, pictureRows};

/// Any cells of the picture, such as those that wait to be painted.
class CellSet {
public:
    void add(const CellArea& area);
    void clear();
    [[nodiscard]] bool empty() const { return bounds_.empty(); }
    [[nodiscard]] bool contains(std::int32_t column, std::int32_t row) const;
    /// The smallest area that holds them all.
    [[nodiscard]] const CellArea& bounds() const { return bounds_; }
    /// Cells of rows first..last that a scroll by that many rows takes along are in the set at their new
    /// place, too.
    void follow(std::int32_t first, std::int32_t last, std::int32_t by);

private:
    friend class Picture;
    void widen(const CellArea& area);

    std::array<std::bitset<pictureColumns>, pictureRows> rows_;
    CellArea bounds_;
};

/// One cell. A cell that nothing was drawn on shows the picture box's background; it counts as a blank.
class PictureCell {
public:
    constexpr PictureCell() = default;
    constexpr PictureCell(char code, const TextLook& look)
        : bits_{static_cast<unsigned char>(code) | std::uint32_t{look.fg} << fgShift |
                std::uint32_t{look.bg} << bgShift | (look.font == TextFont::terminal ? terminalFontBit : 0U) |
                (look.bold ? boldBit : 0U) | drawnBit} {}

    /// A cell without a character yet. colours: foreground in bits 0 to 3, background in bits 4 to 7; style:
    /// as records of the window tell it, without 16.
    [[nodiscard]] static constexpr PictureCell styled(std::uint32_t colours, std::uint32_t style) {
        return PictureCell{colours << fgShift | style << styleShift | drawnBit};
    }
    /// The same look with a character; the cell must have none yet.
    [[nodiscard]] constexpr PictureCell with(char code) const {
        return PictureCell{bits_ | static_cast<unsigned char>(code)};
    }

    /// What the font is asked for: a character, or a glyph code of the terminal font.
    [[nodiscard]] constexpr char code() const { return static_cast<char>(bits_ & 0xFFU); }
    /// The stored character, also where a glyph stands for it.
    [[nodiscard]] char text() const;
    [[nodiscard]] constexpr std::uint8_t fg() const { return (bits_ >> fgShift) & 0xFU; }
    [[nodiscard]] constexpr std::uint8_t bg() const { return (bits_ >> bgShift) & 0xFU; }
    [[nodiscard]] constexpr bool terminalFont() const { return (bits_ & terminalFontBit) != 0; }
    [[nodiscard]] constexpr bool bold() const { return (bits_ & boldBit) != 0; }
    [[nodiscard]] constexpr bool underlined() const { return (bits_ & underlinedBit) != 0; }
    [[nodiscard]] constexpr bool drawn() const { return (bits_ & drawnBit) != 0; }
    [[nodiscard]] constexpr bool selected() const { return (bits_ & selectedBit) != 0; }
    /// True while a cursor of either shape stands on the cell.
    [[nodiscard]] constexpr bool cursor() const { return (bits_ & (blockCursorBit | barCursorBit)) != 0; }
    /// Every pixel of the cell is inverted.
    [[nodiscard]] constexpr bool inverted() const {
        return ((bits_ & selectedBit) != 0) != ((bits_ & blockCursorBit) != 0);
    }
    /// The lowest pixels are inverted, once more.
    [[nodiscard]] constexpr bool barInverted() const { return (bits_ & barCursorBit) != 0; }
    /// Style as records of the window tell it: 1 terminal font, 2 bold, 4 underlined, 16 selected.
    [[nodiscard]] constexpr std::uint8_t style() const {
        return static_cast<std::uint8_t>((terminalFont() ? 1 : 0) | (bold() ? 2 : 0) |
                                         (underlined() ? 4 : 0) | (selected() ? 16 : 0));
    }
    [[nodiscard]] constexpr TextLook look() const {
        return {fg(), bg(), bold(), terminalFont() ? TextFont::terminal : TextFont::normal};
    }
    /// True when only its background is seen.
    [[nodiscard]] constexpr bool blank() const { return code() == ' ' && !underlined(); }
    /// The same cell without inversions.
    [[nodiscard]] constexpr PictureCell plain() const { return PictureCell{bits_ & ~inversionBits}; }
    /// The same cell; one that nothing was drawn on as a blank of that background.
    [[nodiscard]] constexpr PictureCell on(std::uint8_t background) const {
        if (drawn()) return *this;
        return PictureCell{(bits_ & ~(0xFU << bgShift)) | std::uint32_t{background} << bgShift | drawnBit};
    }
    friend constexpr bool operator==(const PictureCell&, const PictureCell&) = default;

private:
    friend class Picture;
    friend class Glass;
    static constexpr unsigned fgShift = 8;
    static constexpr unsigned bgShift = 12;
    static constexpr unsigned styleShift = 16;
    static constexpr std::uint32_t terminalFontBit = 1U << 16U;
    static constexpr std::uint32_t boldBit = 1U << 17U;
    static constexpr std::uint32_t underlinedBit = 1U << 18U;
    static constexpr std::uint32_t drawnBit = 1U << 19U;
    static constexpr std::uint32_t selectedBit = 1U << 20U;
    static constexpr std::uint32_t blockCursorBit = 1U << 21U;
    static constexpr std::uint32_t barCursorBit = 1U << 22U;
    static constexpr std::uint32_t inversionBits = selectedBit | blockCursorBit | barCursorBit;

    explicit constexpr PictureCell(std::uint32_t bits) : bits_{bits} {}

    std::uint32_t bits_ = std::uint32_t{' '} | std::uint32_t{7} << fgShift;  ///< nothing drawn
};

/// The cells of a picture box. Drawing only changes memory. Rows and columns outside are left out; no routine
/// raises an error.
class Picture {
public:
    using Row = std::array<PictureCell, pictureColumns>;

    /// Nothing drawn, as at first.
    void reset();

    // --- drawing -------------------------------------------------------------------------------------------
    /// A character in each cell from there on. look: a cell without a character.
    void drawTextLike(std::int32_t row, std::int32_t column, std::string_view text, const PictureCell& look) {
        const bool inside = static_cast<std::uint32_t>(row) < pictureRows && column >= 0 &&
                            column + static_cast<std::int64_t>(text.size()) <= pictureColumns;
        if (!inside || clip_ != nullptr) [[unlikely]] {
            drawTextWithin(row, column, text, look);
            return;
        }
        PictureCell* const cells = rowAt(row).data() + column;
        touch(row, column + static_cast<std::int32_t>(text.size()));
        if (text.size() == 1) {
            *cells = look.with(text.front());
        } else {
            putCells(cells, text, look);
        }
    }
    void drawText(std::int32_t row, std::int32_t column, std::string_view text, const TextLook& look) {
        drawTextLike(row, column, text, PictureCell{0, look});
    }
    /// A line under the cells, in the colour of each cell's text.
    void underline(std::int32_t row, std::int32_t column, std::int32_t count);
    /// Blanks of one colour.
    void fill(const CellArea& area, std::uint8_t colour);
    /// Inverts the cells; inverted twice they are as before.
    void invert(const CellArea& area, Inversion of);
    /// Moves rows first..last by that many rows (negative: up) within themselves, with all that their cells
    /// show; nothing is drawn on the rows that come free. Clips do not hold it.
    void scroll(std::int32_t first, std::int32_t last, std::int32_t by);
    /// Nothing is drawn on the cells any more.
    void erase(const CellSet& cells);
    /// Draws only on these cells from now on; null draws everywhere.
    void setClip(const CellSet* cells) { clip_ = cells; }

    // --- looking -------------------------------------------------------------------------------------------
    [[nodiscard]] const Row& row(int row) const { return rows_[static_cast<std::size_t>(row)]; }
    [[nodiscard]] const PictureCell& at(int column, int row) const {
        return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
    }
    /// Column and row of the cell that the cursor stands on.
    [[nodiscard]] std::optional<std::pair<int, int>> cursor() const;

    // --- frames --------------------------------------------------------------------------------------------
    /// The row on which each row's cells stood when this frame began, as far as they were scrolled there;
    /// noOrigin for a row that a scroll has freed.
    [[nodiscard]] const std::array<std::int8_t, pictureRows>& origins() const { return origins_; }
    static constexpr std::int8_t noOrigin = -1;
    void beginFrame();

private:
    template <class Change>
    void change(const CellArea& area, Change&& change);
    static void putCells(PictureCell* cells, std::string_view text, const PictureCell& look);
    /// drawText where the text may lie outside, or the clip.
    void drawTextWithin(std::int32_t row, std::int32_t column, std::string_view text,
                        const PictureCell& look);
    void blankRows(std::int32_t first, std::int32_t count);
    /// Something is drawn on the row's cells in front of this column.
    void touch(std::int32_t row, std::int32_t end) {
        std::int32_t& touched = touched_[static_cast<std::size_t>(row)];
        touched = touched < end ? end : touched;
    }
    [[nodiscard]] Row& rowAt(std::int32_t row) { return rows_[static_cast<std::size_t>(row)]; }

    std::array<Row, pictureRows> rows_{};
    /// On the cells of each row from this column on nothing was ever drawn since the row was blanked: so that
    /// a row that is blanked for short lines costs little.
    std::array<std::int32_t, pictureRows> touched_{};
    std::array<std::int8_t, pictureRows> origins_ = inPlace();
    const CellSet* clip_ = nullptr;

    [[nodiscard]] static constexpr std::array<std::int8_t, pictureRows> inPlace() {
        std::array<std::int8_t, pictureRows> all{};
        for (std::size_t row = 0; row < all.size(); ++row) all[row] = static_cast<std::int8_t>(row);
        return all;
    }
};

/// The terminal font's glyph codes 16 to 30 stand for the characters "j" to "x"; others stand for themselves.
[[nodiscard]] char storedCharacter(char glyph);

}  // namespace qxterm
