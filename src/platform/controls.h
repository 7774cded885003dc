#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event.h"
#include "platform/form.h"
#include "platform/geometry.h"

namespace qxterm {

enum class ControlKind : std::uint8_t {
    label,
    frame,
    button,
    optionButton,
    checkBox,
    textBox,
    listBox,
    comboBox,
    scrollBar,
    image,
    tabStrip,
    pictureBox,
};

/// What a control looks like each time its form loads, before the form's load routine runs.
struct Design {
    const char* caption = "";
    bool enabled = true;
    bool visible = true;
};

/// What all controls have. Properties may be set at any time; while the form is not loaded they are kept and
/// the next load brings the designed ones back. None of the routines raises an error unless it says so.
class Control {
public:
    Control(Form& form, ControlKind kind, const char* name, int id, Design design, int index = -1);
    ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] Form& form() const { return form_; }
    [[nodiscard]] ControlKind kind() const { return kind_; }
    [[nodiscard]] const char* name() const { return name_; }
    /// Number of the control in the form's resource.
    [[nodiscard]] int id() const { return id_; }
    /// Place in a control array, -1 for a single control.
    [[nodiscard]] int index() const { return index_; }
    [[nodiscard]] Control* next() const { return next_; }
    [[nodiscard]] const Design& design() const { return design_; }

    [[nodiscard]] bool enabled() const { return enabled_; }
    void setEnabled(bool enabled);
    [[nodiscard]] bool visible() const { return visible_; }
    void setVisible(bool visible);
    /// Whether what the control stands on (a frame, a tab) is shown; leaves `visible` alone. Designed: true.
    void setContainerShown(bool shown);
    /// True when the control can be seen: it is visible itself, and so is what it stands on.
    [[nodiscard]] bool seen() const { return visible_ && containerShown_; }
    [[nodiscard]] const std::string& caption() const { return caption_; }
    /// Buttons, labels, frames, option buttons, check boxes: the text on them, "&" before the mnemonic. CR LF
    /// breaks the line.
    void setCaption(std::string_view text);
    [[nodiscard]] TwipsRect place() const;
    void move(const TwipsRect& place);
    void setFocus();

    struct Native;
    Native* native = nullptr;  ///< the platform's own record; null while the form is not loaded

protected:
    friend class Form;
    /// Back to the designed state; called by the platform when the form loads.
    void resetToDesign();

    Form& form_;
    ControlKind kind_;
    const char* name_;
    int id_;
    int index_;
    Design design_;
    Control* next_ = nullptr;
    bool enabled_ = true;
    bool visible_ = true;
    bool containerShown_ = true;
    std::string caption_;
    TwipsRect place_;
};

class Label : public Control {
public:
    Label(Form& form, const char* name, int id, Design design = {})
        : Control{form, ControlKind::label, name, id, design} {}
    /// Text colour and see-through background (over a picture).
    void setTextColour(Rgb colour);
    Rgb textColour{};
    bool coloured = false;
};

class Frame : public Control {
public:
    Frame(Form& form, const char* name, int id, Design design = {})
        : Control{form, ControlKind::frame, name, id, design} {}
};

class Button : public Control {
public:
    Button(Form& form, const char* name, int id, Design design = {}, int index = -1)
        : Control{form, ControlKind::button, name, id, design, index} {}
    Event<> onClick;
    /// For an element of a control array: its index. Raised instead of onClick.
    Event<std::int16_t> onClickIndex;
};

/// What is on or off.
class ToggleControl : public Control {
public:
    [[nodiscard]] bool value() const { return value_; }
    /// Raises no event.
    void setValue(bool value);
    Event<> onClick;

protected:
    using Control::Control;

private:
    friend class Control;
    bool value_ = false;
};

/// Selecting one deselects the others of its group (the controls of one frame).
class OptionButton : public ToggleControl {
public:
    OptionButton(Form& form, const char* name, int id, Design design = {})
        : ToggleControl{form, ControlKind::optionButton, name, id, design} {}
};

class CheckBox : public ToggleControl {
public:
    CheckBox(Form& form, const char* name, int id, Design design = {})
        : ToggleControl{form, ControlKind::checkBox, name, id, design} {}
};

class TextBox : public Control {
public:
    TextBox(Form& form, const char* name, int id, Design design = {})
        : Control{form, ControlKind::textBox, name, id, design} {}
    [[nodiscard]] const std::string& text() const { return text_; }
    /// Raises onChange when the text differs.
    void setText(std::string_view text);
    /// Size of the box's own font in points, for the sample text; 0 is the dialog's font.
    void setFont(std::string_view face, float points);
    Event<> onChange, onGotFocus;
    /// Character code; a handler that sets it to 0 discards the key.
    Event<std::int16_t&> onKeyPress;

    /// Takes over what the user typed: keeps it and raises onChange when it differs. Called by the platform.
    void userChanged(std::string_view text);

private:
    friend class Control;
    friend class Form;
    std::string text_;
};

/// List and combo boxes: entries from 0, index -1 when none is chosen.
class ItemsControl : public Control {
public:
    [[nodiscard]] const std::vector<std::string>& items() const { return items_; }
    void clear();
    void addItem(std::string_view text);
    [[nodiscard]] int listIndex() const { return listIndex_; }
    /// Chooses an entry without an event; -1 chooses none. Error 5 when there is no such entry.
    void setListIndex(int index);
    /// The chosen entry's text, empty when none is.
    [[nodiscard]] std::string_view chosenText() const;
    Event<> onClick, onDblClick;
    Event<std::int16_t&> onKeyPress;

    /// Takes over the entry that the user chose and raises onClick. Called by the platform.
    void userChose(int index);

protected:
    ItemsControl(Form& form, ControlKind kind, const char* name, int id, Design design)
        : Control{form, kind, name, id, design} {}

private:
    friend class Control;
    friend class Form;
    std::vector<std::string> items_;
    int listIndex_ = -1;
};

class ListBox : public ItemsControl {
public:
    ListBox(Form& form, const char* name, int id, Design design = {})
        : ItemsControl{form, ControlKind::listBox, name, id, design} {}
};

/// A drop-down list; the user cannot type into it.
class ComboBox : public ItemsControl {
public:
    ComboBox(Form& form, const char* name, int id, Design design = {})
        : ItemsControl{form, ControlKind::comboBox, name, id, design} {}
};

/// A vertical scroll bar; value within minimum..maximum.
class ScrollBar : public Control {
public:
    ScrollBar(Form& form, const char* name, int id, Design design = {})
        : Control{form, ControlKind::scrollBar, name, id, design} {}
    [[nodiscard]] std::int16_t minimum() const { return minimum_; }
    [[nodiscard]] std::int16_t maximum() const { return maximum_; }
    [[nodiscard]] std::int16_t value() const { return value_; }
    [[nodiscard]] const std::string& tag() const { return tag_; }
    void setTag(std::string_view tag) { tag_ = tag; }
    /// The native bar is touched only when the minimum really changed, and at most once between two turns of
    /// the event loop, so that a flood of lines does not pay for it line by line.
    void setMinimum(std::int16_t minimum);
    void setMaximum(std::int16_t maximum);
    void setChanges(std::int16_t large, std::int16_t small);
    [[nodiscard]] std::int16_t largeChange() const { return largeChange_; }
    [[nodiscard]] std::int16_t smallChange() const { return smallChange_; }
    /// Raises onChange when the value differs. Error 5 outside minimum..maximum.
    void setValue(std::int16_t value);
    Event<> onChange, onScroll;

    /// The user moved the bar: held within minimum and maximum; raises onScroll while dragging, else
    /// onChange. Called by the platform.
    void userMoved(std::int16_t value, bool dragging);

private:
    friend class Control;
    friend class Form;
    std::int16_t minimum_ = 0;
    std::int16_t maximum_ = 0;
    std::int16_t value_ = 0;
    std::int16_t largeChange_ = 1;
    std::int16_t smallChange_ = 1;
    std::string tag_;
};

/// Shows a picture file.
class Image : public Control {
public:
    Image(Form& form, const char* name, int id) : Control{form, ControlKind::image, name, id, {}} {}
    /// Loads a picture file and takes its size. Error 53 when it is missing, 75 when it is not a picture.
    void loadPicture(const std::string& path);
};

/// Tabs of a dialog: one tab visible at a time; which controls stand on which tab is the form's business.
class TabStrip : public Control {
public:
    TabStrip(Form& form, const char* name, int id) : Control{form, ControlKind::tabStrip, name, id, {}} {}
    void setTabs(const std::vector<std::string>& captions);
    [[nodiscard]] const std::vector<std::string>& tabs() const { return tabs_; }
    [[nodiscard]] int tab() const { return tab_; }
    /// Shows the tab and raises onChange when it differs.
    void setTab(int tab);
    Event<> onChange;

private:
    friend class Control;
    friend class Form;
    std::vector<std::string> tabs_;
    int tab_ = 0;
};

}  // namespace qxterm
