#include "setup/ini_text.h"

#include <algorithm>

namespace setup {
namespace {

constexpr std::string_view settingsSection = "Settings";
constexpr std::string_view profilesKey = "Profiles";
constexpr std::string_view lineEnd = "\r\n";

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool sameName(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view withoutQuotes(std::string_view value) {
    if (value.size() < 2 || value.front() != value.back()) return value;
    if (value.front() != '"' && value.front() != '\'') return value;
    return value.substr(1, value.size() - 2);
}

template <class Sections>
auto findSection(Sections& sections, std::string_view name) {
    return std::find_if(sections.begin(), sections.end(),
                        [&](const IniSection& section) { return sameName(section.name, name); });
}

auto findKey(const IniSection& section, std::string_view key) {
    return std::find_if(section.values.begin(), section.values.end(),
                        [&](const auto& entry) { return sameName(entry.first, key); });
}

std::vector<std::string> namesIn(const std::string* list) {
    std::vector<std::string> names;
    if (list == nullptr) return names;
    for (std::size_t start = 0; (start = list->find_first_not_of(' ', start)) != std::string::npos;) {
        const std::size_t end = std::min(list->find(' ', start), list->size());
        names.push_back(list->substr(start, end - start));
        start = end;
    }
    return names;
}

void setValue(IniSection& section, std::string_view key, const std::string& value) {
    for (auto& entry : section.values) {
        if (sameName(entry.first, key)) {
            entry.second = value;
            return;
        }
    }
    section.values.emplace_back(key, value);
}

std::string written(const std::vector<IniSection>& sections) {
    std::string text;
    for (const IniSection& section : sections) {
        text.append("[").append(section.name).append("]").append(lineEnd);
        for (const auto& [key, value] : section.values) {
            text.append(key).append("=").append(value).append(lineEnd);
        }
    }
    return text;
}

}  // namespace

std::vector<IniSection> readIni(std::string_view text) {
    std::vector<IniSection> sections;
    auto current = sections.end();
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == ';') continue;
        if (line.front() == '[') {
            const std::string_view name = trimmed(line.substr(1, line.find(']') - 1));
            current = findSection(sections, name);
            if (current == sections.end())
                current = sections.insert(current, IniSection{std::string{name}, {}});
            continue;
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || current == sections.end()) continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        if (key.empty() || findKey(*current, key) != current->values.end()) continue;
        current->values.emplace_back(key, withoutQuotes(trimmed(line.substr(equals + 1))));
    }
    return sections;
}

const std::string* valueOf(const std::vector<IniSection>& sections, std::string_view section,
                           std::string_view key) {
    const auto found = findSection(sections, section);
    if (found == sections.end()) return nullptr;
    const auto entry = findKey(*found, key);
    return entry == found->values.end() ? nullptr : &entry->second;
}

std::string mergedProfiles(std::string_view present, std::string_view brought) {
    std::vector<IniSection> sections = readIni(present);
    const std::vector<IniSection> more = readIni(brought);
    std::vector<std::string> names = namesIn(valueOf(sections, settingsSection, profilesKey));
    for (const std::string& name : namesIn(valueOf(more, settingsSection, profilesKey))) {
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    std::string list;
    for (const std::string& name : names) list.append(name).append(" ");

    for (const IniSection& section : more) {
        const auto own = findSection(sections, section.name);
        if (own == sections.end()) {
            sections.push_back(section);
        } else if (sameName(section.name, settingsSection)) {
            for (const auto& [key, value] : section.values) {
                if (findKey(*own, key) == own->values.end()) own->values.emplace_back(key, value);
            }
        }
    }
    const auto settings = findSection(sections, settingsSection);
    if (settings != sections.end()) setValue(*settings, profilesKey, list);
    return written(sections);
}

bool namesProfiles(std::string_view text) {
    return !namesIn(valueOf(readIni(text), settingsSection, profilesKey)).empty();
}

}  // namespace setup
