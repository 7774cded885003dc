#include "platform/win32/key_buttons.h"

#include <algorithm>
#include <string>

#include "platform/win32/native.h"

namespace qxterm::win32 {
namespace {

constexpr int labelLines = 2;
constexpr int labelColumns = 8;
constexpr int cornerPixels = 5;  // diameter of the rounded corners
constexpr int marginPixels = 3;  // between border and text

/// The largest fixed-pitch font in which two lines of eight characters fit into the area; made anew when the
/// area's size changes.
HFONT labelFont(HDC dc, int width, int height) {
    static Font font;
    static SIZE forArea{-1, -1};
    if (font && forArea.cx == width && forArea.cy == height) return font.get();
    constexpr int smallest = 8;
    for (int lineHeight = height / labelLines; lineHeight >= smallest; --lineHeight) {
        font.reset(CreateFontA(lineHeight, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                               OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY,
                               FIXED_PITCH | FF_MODERN, "Courier New"));
        const Selected selected{dc, font.get()};
        SIZE size{};
        GetTextExtentPoint32A(dc, "MMMMMMMM", labelColumns, &size);
        if (size.cx <= width) break;
    }
    forArea = {width, height};
    return font.get();
}

COLORREF mix(COLORREF a, COLORREF b, int percentOfB) {
    const auto channel = [&](int shift) {
        const int from = static_cast<int>((a >> shift) & 0xFFU);
        const int to = static_cast<int>((b >> shift) & 0xFFU);
        return static_cast<COLORREF>(from + (to - from) * percentOfB / 100) << shift;
    };
    return channel(0) | channel(8) | channel(16);
}

int brightness(COLORREF colour) { return GetRValue(colour) + GetGValue(colour) + GetBValue(colour); }

/// A little away from the face of other buttons, but never towards the text: in a scheme of light text on a
/// dark ground a button that is not pressed has the plain face.
COLORREF faceColour(bool pressed) {
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    if (pressed) return mix(face, GetSysColor(COLOR_BTNSHADOW), 45);
    const bool darkText = brightness(GetSysColor(COLOR_BTNTEXT)) < brightness(face);
    return darkText ? mix(face, GetSysColor(COLOR_BTNHIGHLIGHT), 60) : face;
}

void drawFace(HDC dc, const RECT& area, bool pressed) {
    FillRect(dc, &area, GetSysColorBrush(COLOR_BTNFACE));
    const Brush fill{CreateSolidBrush(faceColour(pressed))};
    const Pen border{
        CreatePen(PS_SOLID, 1, mix(GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_BTNTEXT), 15))};
    const Selected selectedBrush{dc, fill.get()};
    const Selected selectedPen{dc, border.get()};
    RoundRect(dc, area.left, area.top, area.right, area.bottom, cornerPixels, cornerPixels);
}

void drawLine(HDC dc, const std::string& text, const RECT& area) {
    RECT clip = area;
    DrawTextA(dc, text.data(), static_cast<int>(text.size()), &clip,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
}

void drawLabel(HDC dc, const std::string& caption, RECT area) {
    InflateRect(&area, -marginPixels, -marginPixels);
    const Selected selected{dc, labelFont(dc, area.right - area.left, area.bottom - area.top)};
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    const std::size_t end = caption.find("\r\n");
    const LONG middle = (area.top + area.bottom) / 2;
    drawLine(dc, caption.substr(0, end), {area.left, area.top, area.right, middle});
    if (end != std::string::npos)
        drawLine(dc, caption.substr(end + 2), {area.left, middle, area.right, area.bottom});
}

}  // namespace

std::string spokenLabel(const Control& button) {
    std::string label;
    bool gap = false;
    for (const char c : button.caption()) {
        const bool blank = c == ' ' || c == '\r' || c == '\n';
        if (!blank) {
            if (gap && !label.empty()) label += ' ';
            // A single one would stand for a letter to press.
            if (c == '&') label += c;
            label += c;
        }
        gap = blank;
    }
    // Many hosts put the key into the label themselves.
    const std::string key = "F" + std::to_string(button.index());
    if (label.empty() || label == key || label.starts_with(key + ' ')) return label.empty() ? key : label;
    return key + ' ' + label;
}

Control::Native* createKeyButton(Control& control, HWND parent) {
    HWND const window =
        CreateWindowExA(0, "BUTTON", "", WS_CHILD | WS_CLIPSIBLINGS | BS_OWNERDRAW, 0, 0, 0, 0, parent,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(control.id())), instance(), nullptr);
    return new Control::Native{window};
}

void drawKeyButton(const Form& form, const DRAWITEMSTRUCT& item) {
    const Control* const control = controlOf(form, item.hwndItem);
    if (control == nullptr) return;
    const bool pressed = (item.itemState & ODS_SELECTED) != 0;
    RECT area = item.rcItem;
    drawFace(item.hDC, area, pressed);
    if (pressed) OffsetRect(&area, 0, 1);
    drawLabel(item.hDC, control->caption(), area);
}

}  // namespace qxterm::win32
