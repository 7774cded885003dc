#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "output.h"
#include "platform/picture.h"
#include "platform/win32/handle.h"

namespace qxterm::probe {

using scenario::Json;

/// Pixels in memory that the system can draw on: 0x00RRGGBB, from the top.
class Canvas {
public:
    /// Other sizes than before lose what was drawn.
    void resize(int width, int height);
    /// Waits until what was drawn stands, and takes away what the system keeps in the fourth byte.
    void settle();

    [[nodiscard]] HDC dc() const { return dc_.get(); }
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] const std::uint32_t* line(int y) const {
        return pixels_ + static_cast<std::ptrdiff_t>(y) * width_;
    }

private:
    // The context that the bitmap is selected into is released before it.
    win32::Bitmap bitmap_;
    win32::MemoryDc dc_;
    std::uint32_t* pixels_ = nullptr;
    int width_ = 0;
    int height_ = 0;
};

/// What cells must look like, drawn here with fonts of its own: nothing of what draws the window takes part.
class Looks {
public:
    using Pixels = std::vector<std::uint32_t>;

    /// Takes over size and font of the cells when they have changed.
    void follow();
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    /// Good until the next call.
    [[nodiscard]] const Pixels& of(const PictureCell& cell, std::uint8_t background);
    /// The characters of which pixels lie beside their cell: "normal A", "bold W", "lines j".
    [[nodiscard]] const std::vector<std::string>& overhanging() const { return overhanging_; }

private:
    [[nodiscard]] const Pixels& plain(const PictureCell& cell, std::uint8_t background);
    void draw(HDC dc, int left, int top, char code, HFONT font) const;
    void findOverhang(const char* name, HFONT font, unsigned first, unsigned last);
    [[nodiscard]] HFONT fontOf(const PictureCell& cell) const;

    int width_ = 0;
    int height_ = 0;
    float points_ = 0;
    int ascent_ = 0;
    int lineAscent_ = 0;
    win32::Font normal_;
    win32::Font bold_;
    win32::Font lines_;
    Canvas canvas_;
    std::unordered_map<std::uint32_t, Pixels> known_;
    Pixels inverted_;
    std::vector<std::string> overhanging_;
};

/// The window's pixels beside those of the picture.
class GlassCheck {
public:
    /// Compares all cells that can be seen. An empty object when they are equal, else the first that differs.
    [[nodiscard]] Json compare();
    /// How many cells the last comparison left out, since another window lies over them.
    [[nodiscard]] int leftOut() const { return leftOut_; }
    [[nodiscard]] const std::vector<std::string>& overhanging() const { return looks_.overhanging(); }

    /// Copies the window's pixels. False when none of them can be seen.
    bool copy();
    /// Writes the last copy, three bytes a pixel, behind a head that tells the size (PPM).
    void save(const std::string& path) const;
    /// The same for what the picture asks for.
    void saveWanted(const std::string& path);

private:
    [[nodiscard]] bool hidden(int column, int row) const;
    [[nodiscard]] bool equal(const Looks::Pixels& wanted, int column, int row) const;
    [[nodiscard]] Json difference(const Looks::Pixels& wanted, int column, int row) const;

    Looks looks_;
    Canvas found_;
    win32::Region hidden_;
    bool anyHidden_ = false;
    int leftOut_ = 0;
};

}  // namespace qxterm::probe
