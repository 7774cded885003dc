#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/headless/recorder.h"
#include "platform/headless/reset.h"

namespace qxterm::test {

/// Records as lines a person can read: "box title=... text=...".
inline std::vector<std::string> lines;

inline void keepLine(const headless::Record& record) {
    std::string line = record.kind;
    for (const auto& [name, value] : record.fields) {
        line += ' ' + name + '=';
        if (const auto* text = std::get_if<std::string>(&value)) {
            line += *text;
        } else if (const auto* flag = std::get_if<bool>(&value)) {
            line += *flag ? "true" : "false";
        } else {
            line += std::to_string(std::get<std::int64_t>(value));
        }
    }
    lines.push_back(line);
}

/// The lines so far; the next call returns what has come since.
inline std::vector<std::string> taken() {
    std::vector<std::string> result;
    result.swap(lines);
    return result;
}

using Lines = std::vector<std::string>;

/// A platform in its start state whose records are kept.
class HeadlessTest : public testing::Test {
protected:
    void SetUp() override {
        headless::reset();
        lines.clear();
        headless::setSink(keepLine);
    }
    void TearDown() override { headless::reset(); }
};

}  // namespace qxterm::test
