#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/recorder.h"
#include "platform/headless/reset.h"

namespace qxterm::test {

/// The records of the running test, in order.
inline std::vector<headless::Record> records;

/// One field of a record as text; numbers in decimal.
inline std::string fieldOf(const headless::Record& record, std::string_view name) {
    for (const auto& [key, value] : record.fields) {
        if (key != name) continue;
        if (const auto* text = std::get_if<std::string>(&value)) return *text;
        if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
        return std::to_string(std::get<std::int64_t>(value));
    }
    return {};
}

/// The field of every record of one kind, in order.
inline std::vector<std::string> recorded(std::string_view kind, std::string_view field) {
    std::vector<std::string> found;
    for (const headless::Record& record : records) {
        if (record.kind == kind) found.push_back(fieldOf(record, field));
    }
    return found;
}

/// How many records of one kind there are.
inline std::size_t countOf(std::string_view kind) { return recorded(kind, "").size(); }

/// A test that starts from an untouched platform and sees everything that the program does to the outside.
class RecordedTest : public ::testing::Test {
protected:
    void SetUp() override {
        headless::reset();
        watch();
    }
    void TearDown() override { headless::reset(); }

    /// Keeps the records from now on.
    static void watch() {
        records.clear();
        headless::setSink([](const headless::Record& record) { records.push_back(record); });
    }
};

}  // namespace qxterm::test
