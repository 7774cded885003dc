#include "platform/socket.h"

#include "platform/form.h"
#include "platform/headless/socket.h"
#include "platform/headless_fixture.h"

namespace qxterm::test::socket_test {
namespace {

constinit Form form{"frmSocket", FormKind::dialog, 1, ""};
constinit Socket link{form, "link"};

class SocketTest : public HeadlessTest {
protected:
    void SetUp() override {
        HeadlessTest::SetUp();
        link.onDataArrival.connect(
            "arrival", [](std::int32_t count) { lines.push_back("arrival " + std::to_string(count)); });
        link.onConnect.connect("connect", [] { lines.emplace_back("connect"); });
        link.onClose.connect("close", [] { lines.emplace_back("close"); });
    }
};

/// The error number that an operation raises, 0 for none.
template <class Operation>
int errorOf(Operation&& operation) {
    try {
        operation();
    } catch (const RunTimeError& error) {
        return error.number;
    }
    return 0;
}

TEST_F(SocketTest, ConnectsSendsAndCloses) {
    link.connect("host.example", 2323);
    EXPECT_FALSE(link.connected());
    headless::socketConnects(link);
    EXPECT_TRUE(link.connected());
    link.send("A\xff");
    const std::uint8_t bytes[] = {0, 255};
    link.send(bytes);
    link.close();
    link.close();
    EXPECT_FALSE(link.connected());
    EXPECT_EQ(taken(), (Lines{"socket op=connect host=host.example port=2323", "connect",
                              "send to=socket bytes=41ff", "send to=socket bytes=00ff", "socket op=close"}));
}

TEST_F(SocketTest, SendingNeedsAConnection) {
    EXPECT_EQ(errorOf([] { link.send("a"); }), 10057);
    link.connect("h", 23);
    EXPECT_EQ(errorOf([] { link.send("a"); }), 10057);
    headless::socketConnects(link);
    headless::socketCloses(link);
    EXPECT_EQ(errorOf([] { link.send("a"); }), 10054);
}

TEST_F(SocketTest, AfterThePeersCloseTheControlIsOpenUntilItIsClosed) {
    link.connect("h", 23);
    headless::socketConnects(link);
    headless::socketCloses(link);
    EXPECT_FALSE(link.connected());
    taken();
    link.close();
    EXPECT_EQ(taken(), (Lines{"socket op=close"}));
}

TEST_F(SocketTest, ANewConnectionClosesTheOneBefore) {
    link.connect("a", 1);
    link.connect("b", 2);
    EXPECT_EQ(taken(), (Lines{"socket op=connect host=a port=1", "socket op=close",
                              "socket op=connect host=b port=2"}));
}

TEST_F(SocketTest, AnnouncingStopsAfterTwoRunsThatReadNothing) {
    headless::socketReceives(link, "abc");
    EXPECT_EQ(taken(), (Lines{"arrival 3", "arrival 3"}));
    headless::socketReceives(link, "d");
    EXPECT_EQ(taken(), (Lines{"arrival 4", "arrival 4"}));
}

TEST_F(SocketTest, AnnouncingGoesOnWhileBytesAreReadAndLeft) {
    link.onDataArrival.connect("arrival", [](std::int32_t count) {
        lines.push_back("arrival " + std::to_string(count) + " " + link.getData(2));
    });
    headless::socketReceives(link, "abcde");
    EXPECT_EQ(taken(), (Lines{"arrival 5 ab", "arrival 3 cd", "arrival 1 e"}));
}

TEST_F(SocketTest, AnIdleRunIsForgottenOnceBytesAreRead) {
    static int run = 0;
    run = 0;
    link.onDataArrival.connect("arrival", [](std::int32_t count) {
        const bool reads = ++run % 2 == 0;
        lines.push_back("arrival " + std::to_string(count) + " " + link.getData(reads ? 1 : 0));
    });
    headless::socketReceives(link, "ab");
    EXPECT_EQ(taken(), (Lines{"arrival 2 ", "arrival 2 a", "arrival 1 ", "arrival 1 b"}));
}

TEST_F(SocketTest, ANestedArrivalIsAnnouncedWithTheNewBytesOnly) {
    static bool nested = false;
    nested = false;
    link.onDataArrival.connect("arrival", [](std::int32_t count) {
        lines.push_back("arrival " + std::to_string(count));
        if (nested) return;
        nested = true;
        headless::socketReceives(link, "xyz");
        lines.push_back("read " + link.getData(100));
    });
    headless::socketReceives(link, "ab");
    EXPECT_EQ(taken(), (Lines{"arrival 2", "arrival 3", "read abxyz"}));
}

TEST_F(SocketTest, ReadingTakesWhatIsThere) {
    link.onDataArrival.disconnect();
    headless::socketReceives(link, "abc");
    EXPECT_EQ(link.getData(-1), "");
    EXPECT_EQ(link.getData(2), "ab");
    EXPECT_EQ(link.getData(9), "c");
    EXPECT_EQ(link.getData(1), "");
}

TEST_F(SocketTest, ClosingDropsUnreadBytes) {
    link.onDataArrival.disconnect();
    headless::socketReceives(link, "abc");
    link.close();
    EXPECT_EQ(link.getData(9), "");
}

TEST_F(SocketTest, TheAddressFamilyIs4UntilItIsSet) {
    EXPECT_EQ(link.addressFamily("host"), 4);
    headless::setAddressFamily(6);
    EXPECT_EQ(link.addressFamily("host"), 6);
}

}  // namespace
}  // namespace qxterm::test::socket_test
