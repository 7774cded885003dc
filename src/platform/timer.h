#pragma once

#include <cstdint>

#include "platform/event.h"

namespace qxterm {

class Form;

/// A timer of a form. Ticks come from the event loop, also from nested ones, never in the middle of a
/// routine; a timer that is late ticks once. Unloading the form disables it; setting the interval starts the
/// period anew.
class Timer {
public:
    constexpr Timer(Form& form, const char* name) : form_{form}, name_{name} {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    /// Milliseconds, 1 to 65535; 0 stops the ticks.
    void setInterval(std::int32_t milliseconds);
    [[nodiscard]] std::int32_t interval() const { return interval_; }
    void setEnabled(bool enabled);
    [[nodiscard]] bool enabled() const { return enabled_; }
    [[nodiscard]] const char* name() const { return name_; }
    [[nodiscard]] Form& form() const { return form_; }

    Event<> onTimer;

private:
    void restart();
    Form& form_;
    const char* name_;
    std::int32_t interval_ = 0;
    bool enabled_ = false;
};

}  // namespace qxterm
