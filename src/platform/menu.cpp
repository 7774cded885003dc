#include "platform/menu.h"

#include <algorithm>

#include "platform/backend.h"

namespace qxterm {
namespace {

std::vector<Menu*>& menus() {
    static std::vector<Menu*> all;
    return all;
}

}  // namespace

Menu::Menu(Form& form, const char* name, const char* caption, std::vector<MenuDesign> entries)
    : form_{form}, name_{name}, caption_{caption}, design_{std::move(entries)} {
    menus().push_back(this);
    resetToDesign();
}

Menu::~Menu() { std::erase(menus(), this); }

const std::vector<Menu*>& Menu::all() { return menus(); }

void Menu::resetToDesign() {
    entries_.clear();
    for (const MenuDesign& entry : design_)
        entries_.push_back({entry.index, entry.caption, true, entry.visible});
}

Menu::Entry& Menu::find(std::int16_t index) {
    const auto at =
        std::find_if(entries_.begin(), entries_.end(), [&](const Entry& e) { return e.index == index; });
    if (at == entries_.end()) throw RunTimeError{errors::objectNotSet};
    return *at;
}

const Menu::Entry& Menu::entry(std::int16_t index) const { return const_cast<Menu*>(this)->find(index); }

void Menu::setCaption(std::int16_t index, std::string_view caption) {
    Entry& entry = find(index);
    if (entry.caption == caption) return;
    entry.caption = caption;
    changed();
}

void Menu::setEnabled(std::int16_t index, bool enabled) {
    Entry& entry = find(index);
    if (entry.enabled == enabled) return;
    entry.enabled = enabled;
    changed();
}

void Menu::setVisible(std::int16_t index, bool visible) {
    Entry& entry = find(index);
    if (entry.visible == visible) return;
    entry.visible = visible;
    changed();
}

void Menu::changed() {
    if (form_.loaded()) backend::menuChanged(*this);
}

}  // namespace qxterm
