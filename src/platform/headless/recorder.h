#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// The platform in memory: no screen, no network, no clock but the one that its user moves. Everything that
/// the program does to the outside world is a record, in the order in which it happens.
namespace qxterm::headless {

using Value = std::variant<std::int64_t, bool, std::string>;
using Fields = std::vector<std::pair<std::string, Value>>;

/// One thing that the program did: "window", "send", "box" ... and what belongs to it, in a fixed order.
struct Record {
    std::string kind;
    Fields fields;
};

using Sink = void (*)(const Record&);

/// Where records go from now on; null drops them.
void setSink(Sink sink);
[[nodiscard]] Sink sink();

/// Switches one kind of record on or off. All kinds are on at first but "draw".
void setRecording(std::string_view kind, bool on);
[[nodiscard]] bool recording(std::string_view kind);

/// While one lives, memory is asked for by what the platform in memory does for itself, not by the program.
/// The tests that refuse memory to the program ask here.
class OwnMemory {
public:
    OwnMemory() { ++living; }
    OwnMemory(const OwnMemory&) = delete;
    OwnMemory& operator=(const OwnMemory&) = delete;
    ~OwnMemory() { --living; }
    [[nodiscard]] static bool asked() { return living > 0; }

private:
    static inline int living = 0;
};

/// Hands a record to the sink when its kind is on. Called by the platform.
void record(std::string_view kind, Fields fields = {});
/// The same with the fields that `fields()` returns.
template <class MakeFields>
requires std::is_invocable_r_v<Fields, MakeFields>
void record(std::string_view kind, MakeFields&& fields) {
    const OwnMemory own;
    record(kind, Fields(fields()));
}

/// True while drawing calls have to be recorded: asked before a draw record is put together.
[[nodiscard]] bool recordsDrawing();
/// Called when that may have changed; set by whoever watches drawing, else null.
extern void (*recordsDrawingChanged)();

/// No sink, all kinds as at first.
void resetRecorder();

}  // namespace qxterm::headless
