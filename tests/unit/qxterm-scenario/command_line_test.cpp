#include "command_line.h"

#include <gmock/gmock.h>

namespace qxterm::test::command_line_test {
namespace {

using scenario::CommandLine;
using scenario::Lines;
using scenario::readCommandLine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Task = CommandLine::Task;

TEST(CommandLine, NamesFilesToPlay) {
    EXPECT_THAT(readCommandLine({}).files, IsEmpty());
    const CommandLine line = readCommandLine({"--lines", "a", "--replay"});
    EXPECT_EQ(line.task, Task::play);
    EXPECT_EQ(line.lines, Lines::told);
    EXPECT_THAT(line.files, ElementsAre("a", "--replay"));
}

TEST(CommandLine, NamesALogToReplay) {
    const CommandLine line = readCommandLine({"--replay", "output.txt"});
    EXPECT_EQ(line.task, Task::replay);
    EXPECT_EQ(line.order.log, "output.txt");
    EXPECT_EQ(line.order.pictures, "");
    EXPECT_EQ(line.complaint, "");
}

TEST(CommandLine, PicturesAreDrawingsUnlessTextIsAskedFor) {
    const CommandLine plain = readCommandLine({"--replay", "log", "--pictures", "folder"});
    EXPECT_TRUE(plain.order.formats.svg);
    EXPECT_FALSE(plain.order.formats.text);
    const CommandLine text = readCommandLine({"--replay", "log", "--format", "text", "--pictures", "folder"});
    EXPECT_FALSE(text.order.formats.svg);
    EXPECT_TRUE(text.order.formats.text);
    const CommandLine both = readCommandLine({"--replay", "log", "--pictures", "f", "--format", "text,svg"});
    EXPECT_TRUE(both.order.formats.svg && both.order.formats.text);
}

TEST(CommandLine, BlocksAreARange) {
    const auto range = [](const char* text) {
        const CommandLine line = readCommandLine({"--replay", "log", "--pictures", "f", "--blocks", text});
        EXPECT_EQ(line.complaint, "") << text;
        return std::pair{line.order.blocks.first, line.order.blocks.last};
    };
    EXPECT_EQ(range("3-5"), (std::pair<std::size_t, std::size_t>{3, 5}));
    EXPECT_EQ(range("3-"), (std::pair<std::size_t, std::size_t>{3, SIZE_MAX}));
    EXPECT_EQ(range("-5"), (std::pair<std::size_t, std::size_t>{1, 5}));
    EXPECT_EQ(range("4"), (std::pair<std::size_t, std::size_t>{4, 4}));
}

using Words = std::vector<std::string>;
class WrongCommandLine : public testing::TestWithParam<std::pair<Words, const char*>> {};

TEST_P(WrongCommandLine, IsComplainedOf) {
    EXPECT_THAT(readCommandLine(GetParam().first).complaint, HasSubstr(GetParam().second));
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, WrongCommandLine,
    testing::Values(std::pair{Words{"--replay"}, "name is missing"},
                    std::pair{Words{"--replay", ""}, "name is missing"},
                    std::pair{Words{"--replay", "log", "--pictures"}, "a value is missing"},
                    std::pair{Words{"--replay", "log", "--format", "svg"}, "belong to --pictures"},
                    std::pair{Words{"--replay", "log", "--pictures", "f", "--format", "png"}, "--format"},
                    std::pair{Words{"--replay", "log", "--pictures", "f", "--blocks", "5-3"}, "--blocks"},
                    std::pair{Words{"--replay", "log", "--pictures", "f", "--blocks", "0"}, "--blocks"},
                    std::pair{Words{"--replay", "log", "--pictures", "f", "--blocks", "-"}, "--blocks"},
                    std::pair{Words{"--replay", "log", "other", "x"}, "unknown option"}));

}  // namespace
}  // namespace qxterm::test::command_line_test
