#include "terminal/interpreter/sequence_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/run_time_error.h"

namespace qxterm::sequence_parser_test {
namespace {

/// What one sequence came to: parameters, private marker and final character, or the error and the place of
/// the byte that raised it.
struct Parsed {
    std::vector<std::int16_t> parameters;
    bool marker = false;
    char final = '\0';
    std::int16_t error = 0;
    std::size_t place = 0;
    friend bool operator==(const Parsed&, const Parsed&) = default;
};

/// Reads the bytes behind "[", handed over in pieces that end at the cuts.
Parsed parse(const std::string& bytes, const std::vector<std::size_t>& cuts) {
    SequenceParser parser;
    parser.start();
    std::size_t position = 0;
    std::vector<std::size_t> ends = cuts;
    ends.push_back(bytes.size());
    Parsed result;
    for (const std::size_t end : ends) {
        try {
            if (parser.read(std::string_view{bytes}.substr(0, end), position) == nullptr) {
                EXPECT_EQ(position, end);
                continue;
            }
            result.final = bytes[position - 1];
        } catch (const RunTimeError& error) {
            result.error = error.number;
        }
        break;
    }
    const auto values = parser.parameters().values();
    result.parameters.assign(values.begin(), values.end());
    result.marker = parser.parameters().privateMarker();
    result.place = position - 1;  // it stands behind
    return result;
}

Parsed parse(const std::string& bytes) { return parse(bytes, {}); }

using List = std::vector<std::int16_t>;

TEST(SequenceParser, ReadsParametersAndFinal) {
    EXPECT_EQ(parse("H"), (Parsed{{}, false, 'H', 0, 0}));
    EXPECT_EQ(parse("5;17H"), (Parsed{{5, 17}, false, 'H', 0, 4}));
    EXPECT_EQ(parse("007m"), (Parsed{{7}, false, 'm', 0, 3}));
    EXPECT_EQ(parse("0K"), (Parsed{{0}, false, 'K', 0, 1}));
}

TEST(SequenceParser, EmptyParametersAreNotStored) {
    EXPECT_EQ(parse(";5H").parameters, List{5});
    EXPECT_EQ(parse("5;;7r").parameters, (List{5, 7}));
    EXPECT_EQ(parse("5;H").parameters, List{5});
    EXPECT_EQ(parse(";;;;J").parameters, List{});
}

TEST(SequenceParser, MarkerStandsDirectlyBehindTheBracketOnly) {
    EXPECT_EQ(parse("?25l"), (Parsed{{25}, true, 'l', 0, 3}));
    EXPECT_EQ(parse("?;7h"), (Parsed{{7}, true, 'h', 0, 3}));
    EXPECT_EQ(parse("??25l"), (Parsed{{}, true, '?', 0, 1}));
    EXPECT_EQ(parse("2?5l"), (Parsed{{2}, false, '?', 0, 1}));
    EXPECT_EQ(parse(";?5l"), (Parsed{{}, false, '?', 0, 1}));
    EXPECT_EQ(parse(">5c"), (Parsed{{}, false, '>', 0, 0}));
}

TEST(SequenceParser, AnyOtherByteIsTheFinal) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        if ((c >= '0' && c <= '9') || c == ';') continue;
        EXPECT_EQ(parse(std::string{"3"} + c + "4H"), (Parsed{{3}, false, c, 0, 1})) << byte;
    }
}

TEST(SequenceParser, ValuesEndAt32767) {
    EXPECT_EQ(parse("32767A").parameters, List{32767});
    EXPECT_EQ(parse("00000000032767A").parameters, List{32767});
    // the digit that overflows is the fifth (32768) or the sixth (327670)
    EXPECT_EQ(parse("32768A"), (Parsed{{}, false, '\0', 6, 4}));
    EXPECT_EQ(parse("1;327670A"), (Parsed{{1}, false, '\0', 6, 7}));
    EXPECT_EQ(parse(std::string(10000, '9') + "A"), (Parsed{{}, false, '\0', 6, 4}));
}

TEST(SequenceParser, EveryCutGivesTheSame) {
    for (const std::string bytes : {"H", "?25l", "5;17H", ";;5;;7;r", "32767;32767;0@", "32768A",
                                    "1;2;3;4;5;6;7;8;9;10m", "?5;?h", "12\r", "0000000000000000000001;2K"}) {
        const Parsed whole = parse(bytes);
        for (std::size_t first = 0; first <= bytes.size(); ++first) {
            EXPECT_EQ(parse(bytes, {first}), whole) << bytes << " cut at " << first;
            for (std::size_t second = first; second <= bytes.size(); ++second) {
                EXPECT_EQ(parse(bytes, {first, second}), whole)
                    << bytes << " cut at " << first << ", " << second;
            }
        }
        std::vector<std::size_t> everywhere;
        for (std::size_t at = 1; at < bytes.size(); ++at) everywhere.push_back(at);
        EXPECT_EQ(parse(bytes, everywhere), whole) << bytes;
    }
}

TEST(SequenceParser, UnfinishedSequenceReportsNothing) {
    SequenceParser parser;
    parser.start();
    std::size_t position = 0;
    EXPECT_EQ(parser.read("?12;3", position), nullptr);
    EXPECT_EQ(position, 5U);
}

TEST(SequenceParser, NumberOfParametersHasNoLimit) {
    std::string bytes;
    for (int n = 0; n < 200000; ++n) bytes += "1;";
    EXPECT_EQ(parse(bytes + "m").parameters, List(200000, 1));
    // a new sequence starts from nothing
    EXPECT_EQ(parse("m").parameters, List{});
}

TEST(Parameters, HaveDefaults) {
    Parameters parameters;
    EXPECT_EQ(parameters.valueOr(1, 7), 7);
    parameters.add(0);
    EXPECT_EQ(parameters.valueOr(1, 7), 0);
    EXPECT_EQ(parameters.valueOr(2, 7), 7);
    for (std::int16_t value = 1; value <= 40; ++value) parameters.add(value);
    EXPECT_EQ(parameters.valueOr(1, 7), 0);
    EXPECT_EQ(parameters.valueOr(17, 7), 16);
    EXPECT_EQ(parameters.valueOr(41, 7), 40);
    EXPECT_EQ(parameters.valueOr(42, 7), 7);
    parameters.setPrivateMarker();
    parameters.clear();
    EXPECT_EQ(parameters.valueOr(1, 7), 7);
    EXPECT_FALSE(parameters.privateMarker());
}

// An unknown sequence is read again in front of the next block, from its final character on: its parameters
// stay the same.
TEST(SequenceParser, ReadingTheFinalAgainAddsNoParameter) {
    SequenceParser parser;
    parser.start();
    std::size_t position = 0;
    ASSERT_EQ(parser.read("1", position), nullptr);
    const std::string_view whole = "12z";
    for (int n = 0; n < 3; ++n) {
        const char* const final = parser.read(whole, position);
        ASSERT_NE(final, nullptr);
        EXPECT_EQ(*final, 'z');
        EXPECT_EQ(position, 3U);
        const auto values = parser.parameters().values();
        EXPECT_EQ(List(values.begin(), values.end()), List{12});
        position = 2;
    }
}

}  // namespace
}  // namespace qxterm::sequence_parser_test
