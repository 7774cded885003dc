#include "platform/headless/message_box.h"

#include <deque>
#include <string>
#include <utility>

#include "platform/event_loop.h"
#include "platform/headless/failures.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {
namespace {

struct Queued {
    Answer answer;
    std::function<void()> meanwhile;
};

std::deque<Queued>& answers() {
    static std::deque<Queued> queue;
    return queue;
}

bool hasButton(Buttons buttons, Answer answer) {
    switch (buttons) {
        case Buttons::ok: return answer == Answer::ok;
        case Buttons::okCancel: return answer == Answer::ok || answer == Answer::cancel;
        case Buttons::yesNo: return answer == Answer::yes || answer == Answer::no;
        case Buttons::yesNoCancel:
            return answer == Answer::yes || answer == Answer::no || answer == Answer::cancel;
        case Buttons::retryCancel: return answer == Answer::retry || answer == Answer::cancel;
    }
    return false;
}

Answer usualAnswer(Buttons buttons) {
    if (buttons == Buttons::ok) return Answer::ok;
    return hasButton(buttons, Answer::cancel) ? Answer::cancel : Answer::no;
}

const char* nameOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::ok: return "OK";
        case Buttons::okCancel: return "OKCancel";
        case Buttons::yesNo: return "YesNo";
        case Buttons::yesNoCancel: return "YesNoCancel";
        case Buttons::retryCancel: return "RetryCancel";
    }
    return "";
}

const char* nameOf(Icon icon) {
    switch (icon) {
        case Icon::none: return "none";
        case Icon::critical: return "critical";
        case Icon::question: return "question";
        case Icon::information: return "information";
    }
    return "";
}

const char* nameOf(Answer answer) {
    switch (answer) {
        case Answer::ok: return "OK";
        case Answer::cancel: return "Cancel";
        case Answer::retry: return "Retry";
        case Answer::yes: return "Yes";
        case Answer::no: return "No";
    }
    return "";
}

Queued nextAnswer(Buttons buttons) {
    if (answers().empty()) return {usualAnswer(buttons), {}};
    Queued queued = std::move(answers().front());
    answers().pop_front();
    if (!hasButton(buttons, queued.answer)) queued.answer = usualAnswer(buttons);
    return queued;
}

}  // namespace

void queueAnswer(Answer answer, std::function<void()> meanwhile) {
    answers().push_back({answer, std::move(meanwhile)});
}

void resetAnswers() { answers().clear(); }

}  // namespace qxterm::headless

namespace qxterm {

Answer messageBox(std::string_view text, std::string_view title, Buttons buttons, Icon icon) {
    if (eventLoop::ending() || headless::fails(headless::Point::boxShow))
        return headless::usualAnswer(buttons);
    const headless::Queued next = headless::nextAnswer(buttons);
    headless::record("box", [&] {
        return headless::Fields{{"title", std::string{title}},
                                {"text", std::string{text}},
                                {"buttons", headless::nameOf(buttons)},
                                {"icon", headless::nameOf(icon)},
                                {"answer", headless::nameOf(next.answer)}};
    });
    if (next.meanwhile) next.meanwhile();
    return next.answer;
}

}  // namespace qxterm
