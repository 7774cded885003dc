#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/controls.h"
#include "platform/event.h"
#include "platform/geometry.h"
#include "platform/picture.h"

namespace qxterm {

/// Told of every drawing call before it changes a picture, for records and counts.
class DrawingWatcher {
public:
    enum class Area : std::uint8_t { fill, clear };

    DrawingWatcher() = default;
    DrawingWatcher(const DrawingWatcher&) = delete;
    DrawingWatcher& operator=(const DrawingWatcher&) = delete;
    virtual ~DrawingWatcher() = default;

    virtual void text(std::int32_t row, std::int32_t column, std::string_view text, const TextLook& look) = 0;
    virtual void underline(std::int32_t row, std::int32_t column, std::int32_t count) = 0;
    virtual void blank(Area kind, const CellArea& area, std::uint8_t colour) = 0;
    virtual void invert(const CellArea& area, Inversion of) = 0;
    virtual void scroll(std::int32_t first, std::int32_t last, std::int32_t by) = 0;
};
/// Null while nobody watches.
extern DrawingWatcher* drawingWatcher;

/// The screen's picture box. Drawing speaks in cells and changes the picture in memory; the system shows it
/// when it comes to it. Place and size are in twips, colours are indices 0 to 7 into the table given by
/// setColourTable. While the form is not loaded drawing is dropped. No routine here raises an error unless it
/// says so.
class PictureBox : public Control {
public:
    PictureBox(Form& form, const char* name, int id) : Control{form, ControlKind::pictureBox, name, id, {}} {}

    // --- font and measures ---------------------------------------------------------------------------------
    void setFontName(std::string_view face);
    /// 9, 10 or 11 points.
    void setFontSize(float points);
    /// Height and width of a text in twips in the picture box's (not bold) font; about that when the system
    /// cannot measure it.
    [[nodiscard]] std::int32_t textHeight(std::string_view text) const;
    [[nodiscard]] std::int32_t textWidth(std::string_view text) const;
    /// The terminal font "QXTERM": cell height and character width in pixels. Deletes the one before.
    void createTerminalFont(std::int32_t height, std::int32_t width);
    void deleteTerminalFont();
    /// Size of the drawing area in twips.
    [[nodiscard]] std::int32_t scaleWidth() const;
    [[nodiscard]] std::int32_t scaleHeight() const;
    /// Size of a cell in pixels, and the advance of each of a row's characters. With another size than before
    /// nothing is drawn on any cell.
    void setCellSize(std::int32_t width, std::int32_t height,
                     const std::array<std::int32_t, pictureColumns>& advances);

    void setColourTable(const std::array<Rgb, 8>& table);
    /// Colour of the cells that nothing is drawn on. Does not draw.
    void setBackground(std::uint8_t index);
    /// Opaque text background, as the screen is drawn.
    void setOpaque(bool opaque);

    // --- drawing -------------------------------------------------------------------------------------------
    /// A character in each cell from there on. look: a cell without a character; where it is underlined, a
    /// line is drawn under the text.
    void drawTextLike(std::int32_t row, std::int32_t column, std::string_view text, const PictureCell& look) {
        if (native == nullptr) return;
        if (drawingWatcher != nullptr) [[unlikely]]
            tellText(row, column, text, look);
        picture_.drawTextLike(row, column, text, look);
        if (!changed_) [[unlikely]]
            noteFirstChange();
    }
    void drawText(std::int32_t row, std::int32_t column, std::string_view text, const TextLook& look) {
        drawTextLike(row, column, text, PictureCell{0, look});
    }
    /// A line under the cells, in the colour of their text.
    void underline(std::int32_t row, std::int32_t column, std::int32_t count);
    /// Blank cells in black or white.
    void fill(const CellArea& area, Raster raster);
    /// Blank cells in the picture box's background.
    void clear(const CellArea& area);
    /// Inverts cells; inverted twice they are as before.
    void invert(const CellArea& area, Inversion of);
    /// Moves what stands on rows first..last by that many rows (negative: up) within themselves, and with it
    /// what is invalid. Nothing is drawn on the cells that come free, and no paint follows for them.
    void scroll(std::int32_t first, std::int32_t last, std::int32_t by);
    /// Delivers the paint message of the invalid cells at once.
    void update();
    /// Makes the whole picture box invalid: a paint message follows when the event loop runs.
    void refresh() { invalidate(allCells); }

    // --- painting ------------------------------------------------------------------------------------------
    /// The cells that the paint in progress covers; the whole picture box outside of one.
    [[nodiscard]] CellArea clipBox() const;
    /// True when the cell is invalid. Only meaningful in onPaintMessage.
    [[nodiscard]] bool invalidAt(std::int32_t column, std::int32_t row) const {
        return invalid_.contains(column, row);
    }

    /// True when drawing reaches the cell: outside of a paint, and in one that covers it.
    [[nodiscard]] bool drawsAt(std::int32_t column, std::int32_t row) const {
        return !inPaint_ || painting_.contains(column, row);
    }

    /// mbPaint: a paint message (15) arrives, before it is carried out. Raised while the hook is attached.
    Event<> onPaintMessage;
    /// The paint itself; the invalid cells have been cleared to the background, and drawing reaches no other.
    Event<> onPaint;
    void attachMessageHook(bool attached) { hooked_ = attached; }

    /// Mouse events: button mask (1 left), shift mask, x and y in twips (may lie outside while a button is
    /// held).
    Event<std::int16_t, std::int16_t, std::int32_t, std::int32_t> onMouseDown, onMouseMove, onMouseUp;
    /// Lines that the mouse wheel asks the view to move: negative scrolls back.
    Event<std::int16_t> onWheel;

    // --- for whoever shows it ------------------------------------------------------------------------------
    [[nodiscard]] const Picture& picture() const { return picture_; }
    [[nodiscard]] std::uint8_t background() const { return background_; }
    /// True when cells wait to be painted.
    [[nodiscard]] bool paintWaits() const { return !invalid_.empty(); }
    /// Cells have to be painted anew: their paint message waits.
    void invalidate(const CellArea& area);
    /// True when anything has changed since the last frame; hands the picture out and begins the next frame.
    [[nodiscard]] bool changed() const { return changed_; }
    [[nodiscard]] Picture& takeFrame();
    /// A new window: nothing drawn, nothing invalid.
    void resetPicture();

private:
    friend class Control;
    friend class Form;
    class Paint;

    void noteChange();
    void noteFirstChange();
    static void tellText(std::int32_t row, std::int32_t column, std::string_view text,
                         const PictureCell& look);

    Picture picture_;
    CellSet invalid_;   ///< cells that wait for a paint
    CellSet painting_;  ///< those of the paint in progress
    std::uint8_t background_ = 0;
    bool hooked_ = false;
    bool inPaint_ = false;
    bool changed_ = false;
    std::uint32_t loads_ = 0;  ///< counts the windows: a paint may outlive its own
    std::int32_t cellWidth_ = 0;
    std::int32_t cellHeight_ = 0;
};

/// What is taken for the size of a character, in twips, when the system cannot measure it.
[[nodiscard]] std::int32_t usualHeight(float points);
[[nodiscard]] std::int32_t usualWidth(float points);

/// The pixel row of the line under a cell row: an eighth of the cell above its lower edge, reckoned in twips.
[[nodiscard]] std::int32_t underlineTop(std::int32_t row, std::int32_t cellHeight,
                                        std::int32_t twipsPerPixel);

}  // namespace qxterm
