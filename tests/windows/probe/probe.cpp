// Answers questions about the running program, for the tests of the window.
//
// This file is linked into qxterm-probe.exe only; the program's own files know nothing of it. A question is
// the file request.json in the folder that the environment variable QXTERM_PROBE names: {"id": N, "want":
// [NAME ...]}, and with "faults" it plans failures first (faults.h). The answer is reply.json: {"id": N,
// NAME: {...} ...}. Both files get their names when they are complete.

#include <array>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <map>
#include <string>

#include "dumps.h"
#include "faults.h"
#include "faults/fault_table.h"
#include "folder.h"
#include "observe.h"
#include "platform/run_time_error.h"
#include "program_forms.h"
#include "shortage.h"
#include "watch.h"

namespace qxterm::probe {
namespace {

constexpr UINT lookEvery = 20;  // milliseconds

Json forms() {
    Json all = Json::object();
    for (const Form* form : scenario::programForms()) {
        if (form->loaded()) all[form->name()] = scenario::dumpForm(*form);
    }
    return all;
}

const std::map<std::string, std::function<Json()>>& subjects() {
    static const std::map<std::string, std::function<Json()>> all{{"screen", scenario::dumpScreen},
                                                                  {"scrollback", scenario::dumpScrollback},
                                                                  {"keys", scenario::dumpKeys},
                                                                  {"menus", scenario::dumpMenus},
                                                                  {"profile", scenario::dumpProfile},
                                                                  {"lists", scenario::dumpLists},
                                                                  {"timers", scenario::dumpTimers},
                                                                  {"state", scenario::dumpState},
                                                                  {"selection", scenario::dumpSelection},
                                                                  {"forms", forms},
                                                                  {"view", view},
                                                                  {"places", places},
                                                                  {"windows", windows},
                                                                  {"focus", focus},
                                                                  {"resources", resources},
                                                                  {"drawn", drawn},
                                                                  {"glass", glass},
                                                                  {"copy", copy},
                                                                  {"cover", cover},
                                                                  {"uncover", uncover},
                                                                  {"faults", faults},
                                                                  {"fewObjects", fewObjects},
                                                                  {"noObjects", noObjects},
                                                                  {"freeObjects", freeObjects},
                                                                  {"noFonts", noFonts},
                                                                  {"freeFonts", freeFonts},
                                                                  {"noSpace", noSpace},
                                                                  {"freeSpace", freeSpace}};
    return all;
}

class Folder {
public:
    Folder() : path_{folderOfQuestions()} {}

    [[nodiscard]] bool known() const { return !path_.empty(); }

    /// The waiting question; it is taken away. Null when there is none.
    [[nodiscard]] Json question() const {
        const std::string name = path_ + "request.json";
        if (GetFileAttributesA(name.c_str()) == INVALID_FILE_ATTRIBUTES) return {};
        Json asked;
        {
            std::ifstream file{name, std::ios::binary};
            asked = Json::parse(file, nullptr, false);
        }
        DeleteFileA(name.c_str());
        return asked.is_object() ? asked : Json{};
    }

    void answer(const Json& reply) const {
        const std::string half = path_ + "reply.tmp";
        {
            std::ofstream file{half, std::ios::binary};
            file << reply.dump();
        }
        MoveFileExA(half.c_str(), (path_ + "reply.json").c_str(), MOVEFILE_REPLACE_EXISTING);
    }

private:
    std::string path_;
};

Json about(const std::string& subject) {
    const auto found = subjects().find(subject);
    if (found == subjects().end()) return {{"fault", "the probe knows nothing of " + subject}};
    try {
        Json told = found->second();
        (void)told.dump();  // fails on a text that is none
        return told;
    } catch (const std::exception& failure) {
        return {{"fault", failure.what()}};
    }
}

void CALLBACK look(HWND /*window*/, UINT /*message*/, UINT_PTR /*timer*/, DWORD /*time*/) {
    static const Folder folder;
    static bool answering = false;
    const faults::OwnCalls own;
    if (!folder.known() || answering) return;
    const Json asked = folder.question();
    if (asked.is_null()) return;
    answering = true;
    Json reply{{"id", asked.value("id", 0)}};
    if (asked.contains("faults")) {
        try {
            planFaults(asked["faults"]);
        } catch (const std::exception& failure) {
            reply["refused"] = failure.what();
        }
    }
    for (const Json& subject : asked.value("want", Json::array())) {
        const auto name = subject.get<std::string>();
        reply[name] = about(name);
    }
    folder.answer(reply);
    answering = false;
}

/// What ended the program, for whoever finds only its exit status.
[[noreturn]] void noteEnd() {
    std::string reason = "nothing was thrown";
    if (const std::exception_ptr thrown = std::current_exception()) {
        try {
            std::rethrow_exception(thrown);
        } catch (const std::exception& failure) {
            reason = failure.what();
        } catch (const RunTimeError& error) {
            reason = "run-time error " + std::to_string(error.number);
        } catch (...) {
            reason = "something unknown";
        }
    }
    std::ofstream{folderOfQuestions() + "end.txt"} << reason;
    std::abort();
}

const std::terminate_handler formerHandler = std::set_terminate(noteEnd);

/// A timer of the thread, which belongs to no window and is served by every message loop.
const UINT_PTR lookTimer = [] {
    const faults::OwnCalls own;
    return SetTimer(nullptr, 0, lookEvery, look);
}();

}  // namespace

std::string folderOfQuestions() {
    std::array<char, MAX_PATH> path{};
    const DWORD length =
        GetEnvironmentVariableA("QXTERM_PROBE", path.data(), static_cast<DWORD>(path.size()));
    return length > 0 && length < path.size() ? std::string{path.data(), length} + '\\' : std::string{};
}

}  // namespace qxterm::probe
