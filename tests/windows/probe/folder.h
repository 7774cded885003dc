#pragma once

#include <string>

namespace qxterm::probe {

/// Where questions and answers stand, with a backslash behind it; empty when nobody asks.
[[nodiscard]] std::string folderOfQuestions();

}  // namespace qxterm::probe
