// Commands that print state.

#include <array>

#include "commands.h"
#include "dumps.h"
#include "program_forms.h"
#include "script.h"
#include "terminal/model/line_record.h"

namespace qxterm::scenario {
namespace {

template <Json (*dump)()>
Action dumped(Arguments& /*arguments*/) {
    return [] { print(dump()); };
}

Action form(Arguments& arguments) {
    const std::string name = arguments.word("NAME");
    const Form* named = formNamed(name);
    if (named == nullptr) throw ScriptFault{"there is no form named " + name};
    return [=] { print(dumpForm(*named)); };
}

Action row(Arguments& arguments) {
    const std::int32_t number = arguments.number("ROW", 0, screenRows - 1);
    return [=] { print(dumpRow(number)); };
}

constexpr std::array<Command, 18> commands{{
    {"dump screen", false, dumped<dumpScreen>},
    {"dump terminal", false, dumped<dumpTerminal>},
    {"dump page", false, dumped<dumpPage>},
    {"dump row", false, row},
    {"dump view", false, dumped<dumpView>},
    {"dump scrollback", false, dumped<dumpScrollback>},
    {"dump window", false, dumped<dumpWindow>},
    {"dump keys", false, dumped<dumpKeys>},
    {"dump menus", false, dumped<dumpMenus>},
    {"dump form", false, form},
    {"dump profile", false, dumped<dumpProfile>},
    {"dump lists", false, dumped<dumpLists>},
    {"dump ini", false, dumped<dumpIni>},
    {"dump timers", false, dumped<dumpTimers>},
    {"dump state", false, dumped<dumpState>},
    {"dump selection", false, dumped<dumpSelection>},
    {"dump clipboard", false, dumped<dumpClipboard>},
    {"dump failures", true, dumped<dumpFailures>},
}};

}  // namespace

std::span<const Command> dumpCommands() { return commands; }

}  // namespace qxterm::scenario
