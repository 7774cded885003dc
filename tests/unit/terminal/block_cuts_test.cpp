#include <memory>
#include <string>
#include <vector>

#include "terminal/commands/function_keys.h"
#include "terminal/random_output.h"
#include "terminal/terminal_fixture.h"

namespace qxterm::block_cuts_test {
namespace {

/// All that the host's output leaves behind in the terminal's memory, as text, so that a difference can be
/// read.
class BlockCuts : public test::TerminalTest {
protected:
    static std::string describe(const ScreenLine& line) {
        std::string all{line.text.begin(), line.text.end()};
        for (std::size_t k = 1; k <= 80; ++k) {
            if (k == 1 || line.attrs[k] != line.attrs[k - 1]) {
                all += ' ' + std::to_string(k - 1) + ':' + std::to_string(line.attrs[k]);
            }
        }
        return all + " used " + std::to_string(line.usedLength);
    }

    static std::vector<std::string> memory() {
        std::vector<std::string> all;
        const auto list = [&](const char* name, std::initializer_list<int> values) {
            std::string text = name;
            for (const int value : values) text += ' ' + std::to_string(value);
            all.push_back(text);
        };
        list("cursor", {curCol, curRow});
        list("attribute", {curAttr, curFg, curBg});
        list("mode", {screenMode});
        list("region", {regionTop, regionBottom});
        list("saved", {savedCol, savedRow, savedAttr.flags, savedAttr.fg, savedAttr.bg, savedMode});
        list("bank", {fkeyBank});
        all.push_back("carried " + carryOver);
        all.push_back("last " + lastChar);
        all.push_back("pending " + std::to_string(pendingCount));
        for (std::int32_t row = 0; row < screenRows; ++row) {
            list("record", {row, rowMap[static_cast<std::size_t>(row)]});
            all.push_back(describe(lineOnRow(row)));
        }
        for (std::int32_t position = scrollbackTop; position <= scrollbackLines; ++position) {
            all.push_back(describe(virtualLine(position)));
        }
        for (std::size_t bank = 0; bank < labelBanks; ++bank) {
            for (std::size_t key = 0; key < functionKeyCount; ++key) {
                all.emplace_back(fkeyLabels[bank][key].begin(), fkeyLabels[bank][key].end());
                all.push_back(fkeyStrings[bank][key]);
            }
        }
        return all;
    }

    std::vector<std::string> memoryAfter(std::string_view bytes, std::size_t length) {
        TearDown();
        SetUp();
        hostInBlocks(bytes, length);
        return memory();
    }
};

TEST_F(BlockCuts, MemoryDoesNotDependOnThem) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        const std::string bytes = test::RandomOutput{seed}.bytes(6000);
        const auto whole = memoryAfter(bytes, bytes.size());
        for (const std::size_t length : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
            const auto cut = memoryAfter(bytes, length);
            ASSERT_EQ(cut.size(), whole.size()) << "seed " << seed << ", blocks of " << length;
            for (std::size_t at = 0; at < cut.size(); ++at) {
                ASSERT_EQ(cut[at], whole[at])
                    << "seed " << seed << ", blocks of " << length << ", item " << at;
            }
        }
    }
}

// The same in small: the shortest beginning of a text for which two blocks differ from one would be told.
TEST_F(BlockCuts, AnySingleCutOfAShortTextMakesNoDifference) {
    for (unsigned seed = 100; seed <= 130; ++seed) {
        const std::string bytes = test::RandomOutput{seed}.bytes(60);
        const auto whole = memoryAfter(bytes, bytes.size());
        for (std::size_t at = 1; at < bytes.size(); ++at) {
            TearDown();
            SetUp();
            host(std::string_view{bytes}.substr(0, at));
            host(std::string_view{bytes}.substr(at));
            ASSERT_EQ(memory(), whole) << "seed " << seed << " cut at " << at;
        }
    }
}

TEST_F(BlockCuts, InsertedTextThatWasNotDrawnYetCountsAsUsed) {
    for (const std::size_t length : {std::size_t{100}, std::size_t{1}, std::size_t{6}}) {
        TearDown();
        SetUp();
        hostInBlocks("\x1b[4hab\rcd", length);
        EXPECT_EQ(text(0), "cdab") << length;
        EXPECT_EQ(lineOnRow(0).usedLength, 3) << length;
        EXPECT_EQ(shown(0), "cdab") << length;
    }
}

TEST_F(BlockCuts, TextBeforeTheAlignmentFillIsCovered) {
    for (const std::size_t length : {std::size_t{100}, std::size_t{1}}) {
        TearDown();
        SetUp();
        hostInBlocks("ab\x1b#8", length);
        EXPECT_EQ(text(0), std::string(80, 'E')) << length;
        EXPECT_EQ(at(), (std::pair{2, 0})) << length;
    }
}

}  // namespace
}  // namespace qxterm::block_cuts_test
