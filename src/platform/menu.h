#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event.h"
#include "platform/form.h"

namespace qxterm {

struct MenuDesign {
    std::int16_t index;
    const char* caption;  ///< "-" is a separator
    bool visible = true;
};

/// One menu of a form's menu bar with its control array of entries.
class Menu {
public:
    Menu(Form& form, const char* name, const char* caption, std::vector<MenuDesign> entries);
    ~Menu();
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    struct Entry {
        std::int16_t index;
        std::string caption;
        bool enabled = true;
        bool visible = true;
        [[nodiscard]] bool separator() const { return caption == "-"; }
    };

    /// Error 91 when there is no entry with this index.
    [[nodiscard]] const Entry& entry(std::int16_t index) const;
    void setCaption(std::int16_t index, std::string_view caption);
    void setEnabled(std::int16_t index, bool enabled);
    void setVisible(std::int16_t index, bool visible);
    [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
    [[nodiscard]] const char* name() const { return name_; }
    [[nodiscard]] const char* caption() const { return caption_; }
    [[nodiscard]] Form& form() const { return form_; }
    /// All menus in the order of the menu bar.
    [[nodiscard]] static const std::vector<Menu*>& all();
    /// Back to the designed entries. Called by the platform when the form loads and by the program's start
    /// values.
    void resetToDesign();

    Event<std::int16_t> onClick;  ///< the chosen entry's index
    Event<> onOpen;               ///< the menu is about to open

private:
    Entry& find(std::int16_t index);
    void changed();  ///< tells the native menu bar
    Form& form_;
    const char* name_;
    const char* caption_;
    std::vector<MenuDesign> design_;
    std::vector<Entry> entries_;
};

}  // namespace qxterm
