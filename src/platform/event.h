#pragma once

#include <new>

#include "platform/run_time_error.h"

namespace qxterm {

/// Called when a failure ends an event handler: the handler's name and the error number. Filled at start-up
/// with the error reporter; while it is empty such a failure is dropped.
inline void (*handlerFault)(const char* handler, std::int16_t number) = nullptr;

/// One event of a control: at most one handler, a free routine with the name it is reported under. A failure
/// that the handler lets through ends the handler alone: the session and the window go on.
template <class... A>
class Event {
public:
    using Handler = void (*)(A...);

    constexpr Event() = default;

    void connect(const char* name, Handler handler) {
        name_ = name;
        handler_ = handler;
    }
    void disconnect() { handler_ = nullptr; }
    [[nodiscard]] bool connected() const { return handler_ != nullptr; }

    /// Runs the handler. Called by the platform when the user, the clock or the system does something.
    void raise(A... args) const {
        if (handler_ == nullptr) return;
        try {
            handler_(args...);
        } catch (const RunTimeError& error) {
            report(error.number);
        } catch (const std::bad_alloc&) {
            report(errors::outOfMemory);
        }
    }

private:
    void report(std::int16_t number) const {
        if (handlerFault != nullptr) handlerFault(name_, number);
    }

    const char* name_ = "";
    Handler handler_ = nullptr;
};

}  // namespace qxterm
