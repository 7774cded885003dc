#include "platform/clipboard.h"

#include <optional>

#include "platform/headless/clipboard.h"
#include "platform/headless/failures.h"
#include "platform/headless/recorder.h"

namespace qxterm::headless {
namespace {

std::optional<std::string>& content() {
    static std::optional<std::string> text;
    return text;
}

}  // namespace

void putOnClipboard(std::string_view text) { content() = text; }

std::string clipboardText() { return content().value_or(std::string{}); }

void resetClipboard() { content().reset(); }

}  // namespace qxterm::headless

namespace qxterm::clipboard {

std::string text() {
    if (headless::fails(headless::Point::clipboardRead)) return {};
    return headless::clipboardText();
}

void setText(std::string_view text) {
    headless::raiseIfPlanned(headless::Point::clipboardSet);
    headless::content() = text;
    headless::record("clipboard", [&] { return headless::Fields{{"text", std::string{text}}}; });
}

void clear() {
    headless::raiseIfPlanned(headless::Point::clipboardClear);
    headless::content().reset();
    headless::record("clipboard", [&] { return headless::Fields{{"text", std::string{}}}; });
}

bool hasText() { return headless::content().has_value(); }

bool hasAnything() { return hasText(); }

}  // namespace qxterm::clipboard
