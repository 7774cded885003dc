#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace qxterm {

/// What a helper gets as its standard input, output and error.
enum class StandardHandles : std::uint8_t {
    none,   ///< nothing of the program's
    pipes,  ///< the ends of two pipes, whose other ends the program keeps until close
};

/// A value that a helper finds in its environment. The program itself does not have it.
struct EnvironmentValue {
    const char* name;
    std::string value;
};

/// One helper program. It is started without a shell, without a window of its own and with normal priority,
/// and it never outlives the program: when that ends, in whatever way, the system ends the helper too.
class HelperProcess {
public:
    /// name: of the program file, without its extension. readyVariable: the environment variable in which the
    /// helper finds the number of an inherited event handle, to be set when it is ready to serve; without one
    /// it never is.
    constexpr explicit HelperProcess(const char* name, const char* readyVariable = nullptr)
        : name_{name}, readyVariable_{readyVariable} {}
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    /// Starts the program file of that name in the program's own folder, which also becomes its working
    /// folder. The command line begins with the helper's name. False when it cannot be started (missing,
    /// blocked), or when the system cannot promise to end it with the program. Error 7 when the system has no
    /// pipes left. A process that is recorded has to be closed first.
    [[nodiscard]] bool start(std::string_view commandLine, StandardHandles handles,
                             std::span<const EnvironmentValue> environment = {});
    /// True from a successful start to close, also when the process has ended meanwhile.
    [[nodiscard]] bool recorded() const { return native != nullptr; }
    /// True when a recorded process has ended, and when none is recorded.
    [[nodiscard]] bool ended() const;
    /// True once the recorded process has told that it is ready to serve.
    [[nodiscard]] bool ready() const;
    /// Runs the program's events until the process has ended or the time is over. Events can close this
    /// process, or start it anew.
    void waitRunningEvents(std::int32_t milliseconds);
    /// Asks the system to end the process. 0, or the system's error number (5 when it has ended before).
    [[nodiscard]] std::uint32_t terminate();
    /// Waits, without events, until the process has ended; false when the time is over.
    bool wait(std::int32_t milliseconds);
    /// The exit code of a process that has ended.
    [[nodiscard]] std::uint32_t exitCode() const;
    /// Releases the process's handles and the program's ends of its pipes; leaves the process alone.
    void close();
    [[nodiscard]] const char* name() const { return name_; }

    struct Native;
    Native* native = nullptr;

private:
    const char* name_;
    const char* readyVariable_;
};

}  // namespace qxterm
