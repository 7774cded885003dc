#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "diag/recorded.h"
#include "headless-session/session.h"
#include "platform/controls.h"
#include "platform/form.h"
#include "platform/headless/clock.h"
#include "platform/headless/message_box.h"
#include "platform/headless/modal.h"
#include "platform/headless/profile_strings.h"
#include "platform/headless/user.h"
#include "platform/menu.h"

namespace qxterm::test {

/// What happens inside the modal windows of the running test, one step at a time.
inline std::deque<std::function<void()>> steps;

inline bool runNextStep() {
    if (steps.empty()) return false;
    const auto step = steps.front();
    steps.pop_front();
    step();
    return true;
}

/// A test of the whole program in memory, before its start.
class ProgramTest : public RecordedTest {
protected:
    void SetUp() override {
        headless::resetAll();
        watch();
        steps.clear();
        headless::setNextEvent(runNextStep);
    }
    void TearDown() override {
        EXPECT_TRUE(steps.empty()) << steps.size() << " steps were never reached";
        headless::resetAll();
    }

    /// Queues what is to happen inside a modal window.
    static void then(std::function<void()> step) { steps.push_back(std::move(step)); }
    /// Queues the passing of time inside a modal window.
    static void thenWait(std::int64_t milliseconds) {
        then([milliseconds] { headless::advance(milliseconds); });
    }

    static void start(std::string_view profile = {}) { headless::runProgram(profile); }
    static void putSettings(const std::vector<std::pair<const char*, const char*>>& values) {
        for (const auto& [key, value] : values) headless::putIni("Settings", key, value);
    }
    static void putProfile(std::string_view name,
                           const std::vector<std::pair<const char*, const char*>>& values) {
        for (const auto& [key, value] : values) headless::putIni(name, key, value);
    }

    /// Everything recorded since the last call, one line each: the kind and the fields' values.
    static std::vector<std::string> happened() {
        std::vector<std::string> lines;
        for (const headless::Record& record : records) {
            std::string line = record.kind;
            for (const auto& [name, value] : record.fields) line += ' ' + fieldOf(record, name);
            lines.push_back(line);
        }
        records.clear();
        return lines;
    }
    static std::vector<std::string> boxes() { return recorded("box", "text"); }

    template <class Kind>
    static Kind& find(Form& form, const char* name) {
        Control* control = form.find(name);
        if (control == nullptr) throw std::out_of_range{name};
        return static_cast<Kind&>(*control);
    }
    static void click(Form& form, const char* name) {
        ASSERT_TRUE(headless::click(find<Control>(form, name))) << name << " cannot be used";
    }
    static void enter(Form& form, const char* name, std::string_view text) {
        ASSERT_TRUE(headless::enterText(find<TextBox>(form, name), text)) << name << " cannot be used";
    }
    static std::string textOf(Form& form, const char* name) { return find<TextBox>(form, name).text(); }
};

/// The value of a key of "qxterm.ini" as the file has it, "(none)" when it is not there.
inline std::string iniValue(std::string_view section, std::string_view key) {
    for (const headless::IniSection& known : headless::ini()) {
        if (known.name != section) continue;
        for (const auto& [name, value] : known.values) {
            if (name == key) return value;
        }
    }
    return "(none)";
}

}  // namespace qxterm::test
