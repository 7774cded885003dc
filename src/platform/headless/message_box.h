#pragma once

#include <functional>

#include "platform/message_box.h"

namespace qxterm::headless {

/// Queues the answer of a message box to come. Each box takes one, also a box with OK alone; a box that has
/// no such button, or finds the queue empty, is answered OK when OK is alone, else Cancel when it has that,
/// else No. meanwhile: what happens while the box is open, before its answer; a box that opens then takes the
/// next answer.
void queueAnswer(Answer answer, std::function<void()> meanwhile = {});

void resetAnswers();

}  // namespace qxterm::headless
