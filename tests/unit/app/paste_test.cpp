// Pasting what nobody would paste on purpose: a megabyte, sequences, control characters, nothing.

#include <string>

#include "app/edit_menu.h"
#include "app/menus.h"
#include "app/program_fixture.h"
#include "connection/connection_manager.h"
#include "connection/keyboard.h"
#include "connection/session.h"
#include "connection/transport_controls.h"
#include "platform/headless/clipboard.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/serial.h"
#include "platform/headless/socket.h"
#include "platform/hex_text.h"
#include "platform/main_form.h"
#include "terminal/commands/function_keys.h"
#include "terminal/model/input_busy.h"
#include "terminal/model/output_state.h"
#include "terminal/model/screen_store.h"
#include "terminal/view/selection.h"

namespace qxterm::test::paste_test {
namespace {

using Lines = std::vector<std::string>;

class Paste : public ProgramTest {
protected:
    void TearDown() override {
        headless::yieldHook = nullptr;
        ProgramTest::TearDown();
    }
    static void connectAs(const char* word) {
        putSettings({{"Profiles", "lab "}});
        putProfile("lab", {{"connect", word}, {"host", "h"}});
        if (word == std::string_view{"net"}) then([] { headless::socketConnects(comnet2); });
        thenWait(1500);
        start("lab");
        records.clear();
    }
    static bool choosePaste() { return headless::chooseMenu(mnueditItem, 1); }
    static Lines sent() { return recorded("send", "bytes"); }
    static std::string row(std::int32_t number) {
        const ScreenLine& line = lineOnRow(number);
        std::string text{line.text.begin(), line.text.end()};
        return text.erase(text.find_last_not_of(' ') + 1);
    }
    static std::pair<int, int> at() { return {curCol, curRow}; }
    static std::string numbered(std::size_t line) {
        const std::string number = std::to_string(line);
        return std::string(6 - number.size(), '0') + number + std::string(56, '.');
    }
    /// A mebibyte of lines of 64 bytes, line end included.
    static std::string lines() {
        std::string text;
        for (std::size_t n = 0; n < lineCount; ++n) text += numbered(n) + "\r\n";
        return text;
    }
    static constexpr std::size_t lineCount = 16384;
};

TEST_F(Paste, AMegabyteIntoTheLoopIsShownToTheEnd) {
    connectAs("loop");
    headless::putOnClipboard(lines());
    ASSERT_TRUE(choosePaste());
    // The last line's end leaves row 23 empty; the 500 lines above the page stand in the scrollback.
    EXPECT_EQ(row(23), "");
    for (std::int32_t n = 0; n < 23; ++n) {
        ASSERT_EQ(row(n), numbered(lineCount - 23 + static_cast<std::size_t>(n)));
    }
    EXPECT_EQ(at(), (std::pair{0, 23}));
    EXPECT_EQ(scrollbackTop, 1);
    const ScreenLine& oldest = virtualLine(1);
    EXPECT_EQ(std::string(oldest.text.begin(), oldest.text.begin() + 62), numbered(lineCount - 23 - 500));
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(inputBusy, 0);
}

TEST_F(Paste, KeysTypedWhileAMegabyteIsPastedComeBehindIt) {
    connectAs("loop");
    headless::putOnClipboard(lines());
    static int yields;
    yields = 0;
    headless::yieldHook = [] {
        if (++yields <= 3) Form_KeyPress(static_cast<std::int16_t>('w' + yields));
    };
    ASSERT_TRUE(choosePaste());
    EXPECT_EQ(yields, 16384);
    EXPECT_EQ(row(22), numbered(lineCount - 1));
    EXPECT_EQ(row(23), "xyz");
}

TEST_F(Paste, AnotherPasteInsideAPasteWaitsItsTurn) {
    connectAs("loop");
    headless::putOnClipboard("one\r\ntwo\r\n");
    static bool again;
    again = true;
    headless::yieldHook = [] {
        if (!again) return;
        again = false;
        (void)choosePaste();
    };
    ASSERT_TRUE(choosePaste());
    EXPECT_EQ((Lines{row(0), row(1), row(2), row(3), row(4)}), (Lines{"one", "two", "one", "two", ""}));
}

TEST_F(Paste, DisconnectInsideAPasteLeavesACleanScreenForTheNextSession) {
    connectAs("loop");
    headless::putOnClipboard(lines());
    static int yields;
    yields = 0;
    headless::yieldHook = [] {
        if (++yields == 1000) mnuconnitem_Click(connectionItem::disconnect);
    };
    ASSERT_TRUE(choosePaste());
    headless::yieldHook = nullptr;
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_TRUE(boxes().empty());
    EXPECT_EQ(inputBusy, 0);
    EXPECT_FALSE(choosePaste());
    thenWait(1500);
    mnuconnitem_Click(connectionItem::connect);
    headless::putOnClipboard(
        "\x1b"
        "cback");
    ASSERT_TRUE(choosePaste());
    EXPECT_EQ(row(0), "back");
    EXPECT_EQ(row(1), "");
}

// Moves, erases, programs keys, rings and switches, about a megabyte of it.
TEST_F(Paste, AMegabyteOfSequencesIntoTheLoop) {
    connectAs("loop");
    std::string text;
    const std::string piece =
        "\x1b[9;9H\x1b[2J\x1b[1;4;0q12345678abcdefghkey\r\x1b[5;20r\x1b[?6h\x1b[31;1m#\a\x1b[3@"
        "\x1b[?6l\x1b[r\x1b[m\x1b[?13h";
    const std::string repainting = "\x1b[?5h\x1b[3L\x1b[?5l\x1b[M";
    for (int n = 0; text.size() < 1000000; ++n) text += n % 20 == 0 ? repainting + piece : piece;
    text += "\x1b[2J\x1b[12;40Hmiddle";
    headless::putOnClipboard(text);
    ASSERT_TRUE(choosePaste());
    EXPECT_TRUE(boxes().empty());
    for (std::int32_t n = 0; n < screenRows; ++n) {
        EXPECT_EQ(row(n), n == 11 ? std::string(39, ' ') + "middle" : "") << n;
    }
    EXPECT_EQ(at(), (std::pair{45, 11}));
    EXPECT_EQ((std::pair<int, int>{regionTop, regionBottom}), (std::pair{0, 23}));
    EXPECT_EQ(screenMode, 0);
    EXPECT_EQ(fkeyStrings[0][0], "key\r");
    EXPECT_EQ(fkeyStrings[0][1], "\x1bOd");
    // The key just programmed types into the loop: behind "middle", and back to the line's beginning.
    Form_KeyDown(112, 0);
    EXPECT_EQ(row(11), std::string(39, ' ') + "middlekey");
    EXPECT_EQ(at(), (std::pair{0, 11}));
    EXPECT_TRUE(sent().empty());
}

TEST_F(Paste, AMegabyteGoesToTheHostAsItStands) {
    const std::string text = lines();
    connectAs("net");
    headless::putOnClipboard(text);
    ASSERT_TRUE(choosePaste());
    EXPECT_EQ(sent(), Lines{hexText(text)});
    EXPECT_EQ(row(0), "");
    EXPECT_TRUE(boxes().empty());
}

TEST_F(Paste, AMegabyteGoesToTheLineAsItStands) {
    const std::string text = lines();
    connectAs("serial");
    headless::putOnClipboard(text);
    ASSERT_TRUE(choosePaste());
    EXPECT_EQ(sent(), Lines{hexText(text)});
}

TEST_F(Paste, EveryCharacterGoesToTheHostUntranslated) {
    std::string text;
    for (int c = 1; c < 256; ++c) text += static_cast<char>(c);
    connectAs("net");
    headless::putOnClipboard(text + "\r\n\n\r");
    ASSERT_TRUE(choosePaste());
    EXPECT_EQ(sent(), Lines{hexText(text + "\r\n\n\r")});
}

TEST_F(Paste, NothingOnTheClipboardCannotBePasted) {
    connectAs("net");
    EXPECT_FALSE(choosePaste());
    mnueditItem_Click(1);  // it went between the menu's opening and the choice
    std::string all;
    for (const std::string& bytes : sent()) all += bytes;
    EXPECT_EQ(all, "");
    EXPECT_TRUE(boxes().empty());
}

}  // namespace
}  // namespace qxterm::test::paste_test
