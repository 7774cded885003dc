#include "platform/profile_strings.h"

#include <algorithm>

#include "platform/headless/failures.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {
namespace {

constexpr std::string_view designedLanguage = "enu";

std::vector<IniSection>& sections() {
    static std::vector<IniSection> all;
    return all;
}

std::string& language() {
    static std::string code{designedLanguage};
    return code;
}

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

const std::string* findValue(std::string_view section, std::string_view key) {
    for (const IniSection& known : sections()) {
        if (!sameName(known.name, section)) continue;
        for (const auto& [name, value] : known.values) {
            if (sameName(name, key)) return &value;
        }
    }
    return nullptr;
}

/// The file keeps no blanks around a value, and a value in quotation marks is read without them.
std::string_view asRead(std::string_view value) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = value.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    value = value.substr(first, value.find_last_not_of(blanks) - first + 1);
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
        value.back() == value.front()) {
        value = value.substr(1, value.size() - 2);
    }
    return value;
}

std::string cut(std::string_view value) {
    return std::string{value.substr(0, static_cast<std::size_t>(profileBufferSize) - 1)};
}

}  // namespace

const std::vector<IniSection>& ini() { return sections(); }

void putIni(std::string_view section, std::string_view key, std::string_view value) {
    auto at = std::find_if(sections().begin(), sections().end(),
                           [&](const IniSection& known) { return sameName(known.name, section); });
    if (at == sections().end()) at = sections().insert(at, {std::string{section}, {}});
    const auto entry = std::find_if(at->values.begin(), at->values.end(),
                                    [&](const auto& known) { return sameName(known.first, key); });
    if (entry == at->values.end()) {
        at->values.emplace_back(key, value);
    } else {
        entry->second = value;
    }
}

void setLanguage(std::string_view code) { language() = code; }

void resetProfileStrings() {
    sections().clear();
    language() = designedLanguage;
}

}  // namespace qxterm::headless

namespace qxterm {

std::string getPrivateProfileString(std::string_view section, std::string_view key,
                                    std::string_view fallback) {
    if (headless::fails(headless::Point::iniRead)) return headless::cut(fallback);
    const std::string* value = headless::findValue(section, key);
    return headless::cut(value != nullptr ? headless::asRead(*value) : fallback);
}

std::string getWholePrivateProfileString(std::string_view section, std::string_view key) {
    if (headless::fails(headless::Point::iniRead)) return {};
    const std::string* value = headless::findValue(section, key);
    return value != nullptr ? std::string{headless::asRead(*value)} : std::string{};
}

void writePrivateProfileString(std::string_view section, std::string_view key, std::string_view value) {
    if (headless::fails(headless::Point::iniWrite)) return;
    headless::putIni(section, key, value);
    headless::record("ini", [&] {
        return headless::Fields{
            {"section", std::string{section}}, {"key", std::string{key}}, {"value", std::string{value}}};
    });
}

std::string getProfileString(std::string_view section, std::string_view key, std::string_view fallback) {
    if (headless::fails(headless::Point::languageRead)) return headless::cut(fallback);
    const bool languageAsked = headless::sameName(section, "intl") && headless::sameName(key, "sLanguage");
    return headless::cut(languageAsked ? std::string_view{headless::language()} : fallback);
}

}  // namespace qxterm
