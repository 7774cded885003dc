#include "connection/transport.h"

#include <gtest/gtest.h>

#include <array>

#include "config/profile_record.h"
#include "config/user_profile.h"
#include "connection/session.h"
#include "diag/recorded.h"

namespace qxterm::test::transport_test {
namespace {

TEST(Transport, EachTypeFindsItsRow) {
    for (const Transport* row : transports) EXPECT_EQ(&transportOf(row->type), row) << row->type;
}

TEST(Transport, EachRowHasAWordInTheFile) {
    for (const Transport* row : transports) {
        const char* const word = connectType::wordOf(row->type);
        ASSERT_NE(word, nullptr) << row->type;
        EXPECT_EQ(connectType::ofWord(word), row->type);
    }
}

TEST(Transport, EveryOtherNumberHasTheRowThatDoesNothing) {
    constexpr std::array<std::int16_t, 4> others{-1, connectType::unknown, 6, INT16_MAX};
    for (const std::int16_t type : others) {
        EXPECT_EQ(&transportOf(type), &noTransport) << type;
    }
    noTransport.stop();
    noTransport.send("text");
    noTransport.sendBreak();
    noTransport.carrierLost();
    EXPECT_EQ(noTransport.waitingText(), "");
    EXPECT_EQ(noTransport.patience(), 0);
}

class Session : public RecordedTest {
protected:
    void SetUp() override {
        RecordedTest::SetUp();
        forgetSession();
        setCurrentProfile(ProfileRecord{});
    }
    void TearDown() override {
        forgetSession();
        setCurrentProfile(ProfileRecord{});
        RecordedTest::TearDown();
    }
    static void chooseType(std::int16_t type) { CurrentProfile.connectType = type; }
};

TEST_F(Session, WithoutOneTheTypeIsTheProfiles) {
    chooseType(connectType::modem);
    EXPECT_EQ(g_iConnectType(), connectType::modem);
    EXPECT_FALSE(sessionStarted());
}

TEST_F(Session, OneThatWasStartedKeepsItsRowUntilItHasEnded) {
    chooseType(connectType::loop);
    startSession(loopTransport);
    chooseType(connectType::net);
    EXPECT_EQ(g_iConnectType(), connectType::loop);
    sessionIsUp();
    EXPECT_TRUE(g_bConnectActive);
    endSession();
    EXPECT_FALSE(g_bConnectActive);
    EXPECT_FALSE(sessionStarted());
    EXPECT_EQ(g_iConnectType(), connectType::net);
}

TEST_F(Session, OneThatComesUpBeforeItsStartIsToldIsTheProfiles) {
    chooseType(connectType::modem);
    sessionIsUp();
    chooseType(connectType::net);
    EXPECT_EQ(&sessionTransport(), &modemTransport);
}

}  // namespace
}  // namespace qxterm::test::transport_test
