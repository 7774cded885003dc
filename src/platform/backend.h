#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/menu.h"
#include "platform/picture_box.h"
#include "platform/timer.h"

/// The seam inside the platform: what the classes' common half asks of the system's half (win32/ or
/// headless/). Nothing outside platform/ includes this file. Calls that name a control or form are made only
/// while its form is loaded
/// (`native` set), unless they say otherwise.
namespace qxterm::backend {

/// Creates the form's native window and its controls' native parts, hidden, in their designed state; sets
/// `native` of all.
void createWindow(Form& form);
void destroyWindow(Form& form);
void showWindow(Form& form, bool modal);
/// Runs events until the form is unloaded (or the program ends); the other windows do not answer meanwhile.
void runModal(Form& form);
void formCaptionChanged(Form& form, const std::string& caption);
[[nodiscard]] TwipsRect formPlace(const Form& form);
void moveForm(Form& form, const TwipsRect& place);
void setFormClientSize(Form& form, std::int32_t width, std::int32_t height);
[[nodiscard]] PixelRect formNormalPosition(const Form& form);
void focusForm(Form& form);
void formHookChanged(Form& form, bool attached);
/// May be called before any form is loaded.
void applicationTitleChanged(std::string_view text);

void enabledChanged(Control& control);
void visibleChanged(Control& control);
void captionChanged(Control& control);
[[nodiscard]] TwipsRect controlPlace(const Control& control);
void moveControl(Control& control, const TwipsRect& place);
void focusControl(Control& control);
void textColourChanged(Label& label);
/// An option button's or check box's value.
void valueChanged(Control& control, bool value);
void textChanged(TextBox& box);
void textFontChanged(TextBox& box, std::string_view face, float points);
void itemsChanged(ItemsControl& list);
void chosenChanged(ItemsControl& list);
/// Range, value or changes; the native half may put off telling the bar until the event loop's next turn.
void scrollBarChanged(ScrollBar& bar);
void loadPicture(Image& image, const std::string& path);
void tabsChanged(TabStrip& strip);
/// An entry of the menu changed.
void menuChanged(Menu& menu);

/// The first change of a picture since its last frame.
void pictureChanged(PictureBox& box);
/// Cells of a picture box became invalid: their paint message is to follow.
void paintWaits(PictureBox& box);
/// May be called before the form is loaded.
void cellSizeChanged(PictureBox& box, std::int32_t width, std::int32_t height,
                     const std::array<std::int32_t, pictureColumns>& advances);

/// Interval or enabling changed: the period starts anew. May be called while the form is not loaded.
void timerChanged(Timer& timer);

}  // namespace qxterm::backend
