#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/event.h"
#include "platform/geometry.h"

namespace qxterm {

/// Which font a text call uses: the picture box's own, or the terminal font that holds the line-drawing
/// glyphs.
enum class TextFont : std::uint8_t { normal, terminal };

/// Raster operations of an area fill.
enum class Raster : std::uint8_t { blackness, whiteness };

/// Whom an inverted area belongs to: the window shows both alike; a record of the window keeps them apart.
enum class Inversion : std::uint8_t { cursor, selection };

/// The screen's picture box. Text and areas are in pixels of its client area, place and size in twips.
/// Colours are indices 0 to 7 into the table given by setColourTable. Drawing goes straight to the window;
/// while the form is not loaded it is dropped. No routine here raises an error unless it says so.
class PictureBox : public Control {
public:
    PictureBox(Form& form, const char* name, int id) : Control{form, ControlKind::pictureBox, name, id, {}} {}

    // --- font and measures ---------------------------------------------------------------------------------
    void setFontName(std::string_view face);
    /// 9, 10 or 11 points.
    void setFontSize(float points);
    void setFontBold(bool bold);
    /// Height and width of a text in twips in the picture box's (not bold) font.
    [[nodiscard]] std::int32_t textHeight(std::string_view text) const;
    [[nodiscard]] std::int32_t textWidth(std::string_view text) const;
    /// The terminal font "QXTERM": cell height and character width in pixels. Deletes the one before.
    void createTerminalFont(std::int32_t height, std::int32_t width);
    void deleteTerminalFont();
    /// Size of the drawing area in twips.
    [[nodiscard]] std::int32_t scaleWidth() const;
    [[nodiscard]] std::int32_t scaleHeight() const;

    // --- drawing state -------------------------------------------------------------------------------------
    void setColourTable(const std::array<Rgb, 8>& table);
    /// Colour of the picture box where nothing is drawn. Does not redraw.
    void setBackground(std::uint8_t index);
    /// Colour of text and lines.
    void setTextColour(std::uint8_t index);
    /// Colour behind text (SetBkColor).
    void setTextBackground(std::uint8_t index);
    /// Opaque text background, as the screen is drawn.
    void setOpaque(bool opaque);

    // --- drawing -------------------------------------------------------------------------------------------
    /// One text call, opaque and clipped to the cell rectangle, at its left top corner; advance: pixels per
    /// character.
    void drawText(const PixelRect& cells, std::string_view text, TextFont font, const std::int32_t* advances);
    /// PatBlt in black or white.
    void fill(const PixelRect& area, Raster raster);
    /// Clears an area to the picture box's background.
    void clear(const PixelRect& area);
    /// DSTINVERT.
    void invert(const PixelRect& area, Inversion of);
    /// A horizontal line one pixel high in the text colour, from x to x + width.
    void drawLine(std::int32_t x, std::int32_t y, std::int32_t width);
    /// Moves the pixels of area by dy (negative: up) within area; what it exposes becomes invalid
    /// (ScrollWindow).
    void scroll(const PixelRect& area, std::int32_t dy);
    /// Delivers the paint message of the invalid area at once (UpdateWindow).
    void update();
    /// Makes the whole picture box invalid: a paint message follows when the event loop runs.
    void refresh();

    // --- painting ------------------------------------------------------------------------------------------
    /// The area that the paint in progress covers; the whole picture box outside of one.
    [[nodiscard]] PixelRect clipBox() const;
    /// True when the pixel lies in the invalid area (GetUpdateRgn, PtInRegion). Only meaningful in
    /// onPaintMessage.
    [[nodiscard]] bool invalidAt(std::int32_t x, std::int32_t y) const;

    /// mbPaint: a paint message (15) arrives, before it is carried out. Raised while the hook is attached.
    Event<> onPaintMessage;
    /// The paint itself; the invalid area has been cleared to the background.
    Event<> onPaint;
    void attachMessageHook(bool attached);

    /// Mouse events: button mask (1 left), shift mask, x and y in twips (may lie outside while a button is
    /// held).
    Event<std::int16_t, std::int16_t, std::int32_t, std::int32_t> onMouseDown, onMouseMove, onMouseUp;
    /// Lines that the mouse wheel asks the view to move: negative scrolls back.
    Event<std::int16_t> onWheel;

private:
    friend class Control;
    friend class Form;
    bool hooked_ = false;
};

}  // namespace qxterm
