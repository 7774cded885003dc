#include "platform/headless/clock.h"
#include "platform/event_loop.h"
#include "platform/form.h"
#include "platform/headless_fixture.h"
#include "platform/timer.h"

namespace qxterm::test::clock_test {
namespace {

constinit Form form{"frmClock", FormKind::dialog, 1, ""};
constinit Timer first{form, "tmrFirst"};
constinit Timer second{form, "tmrSecond"};
constinit Timer general{form, "tmrGen"};

void tick(const char* name) { lines.push_back(name + std::string{" at "} + std::to_string(headless::now())); }

void start(Timer& timer, std::int32_t interval) {
    timer.setInterval(interval);
    timer.setEnabled(true);
}

class ClockTest : public HeadlessTest {
protected:
    void SetUp() override {
        HeadlessTest::SetUp();
        first.onTimer.connect("first", [] { tick("first"); });
        second.onTimer.connect("second", [] { tick("second"); });
        general.onTimer.connect("general", [] { tick("general"); });
        headless::setRecording("window", false);
        form.load();
    }
};

TEST_F(ClockTest, FiresAtDueTimesInOrderAndTheLastInstantCounts) {
    start(first, 100);
    start(second, 250);
    headless::advance(300);
    EXPECT_EQ(taken(), (Lines{"first at 100", "first at 200", "second at 250", "first at 300"}));
    EXPECT_EQ(headless::now(), 300);
}

TEST_F(ClockTest, TheGeneralTimerGoesFirstAtTheSameInstant) {
    start(first, 50);
    start(general, 50);
    headless::advance(50);
    EXPECT_EQ(taken(), (Lines{"general at 50", "first at 50"}));
}

TEST_F(ClockTest, OthersGoInTheOrderInWhichTheyWereArmed) {
    start(second, 50);
    start(first, 50);
    headless::advance(50);
    EXPECT_EQ(taken(), (Lines{"second at 50", "first at 50"}));
}

TEST_F(ClockTest, SettingTheIntervalStartsThePeriodAnew) {
    start(first, 100);
    headless::advance(90);
    first.setInterval(100);
    headless::advance(99);
    EXPECT_TRUE(taken().empty());
    headless::advance(1);
    EXPECT_EQ(taken(), (Lines{"first at 190"}));
}

TEST_F(ClockTest, APeriodChangedInsideTheTickCountsFromThatTick) {
    first.onTimer.connect("first", [] {
        tick("first");
        first.setInterval(30);
    });
    start(first, 100);
    headless::advance(160);
    EXPECT_EQ(taken(), (Lines{"first at 100", "first at 130", "first at 160"}));
}

TEST_F(ClockTest, SleepFiresNothingAndALateTimerTicksOnceAtTheNextWait) {
    start(first, 100);
    eventLoop::sleep(350);
    EXPECT_TRUE(taken().empty());
    EXPECT_EQ(headless::now(), 350);
    headless::advance(0);
    EXPECT_EQ(taken(), (Lines{"first at 350"}));
    headless::advance(100);
    EXPECT_EQ(taken(), (Lines{"first at 450"}));
}

TEST_F(ClockTest, SleepInsideATickDelaysTheOthers) {
    first.onTimer.connect("first", [] {
        tick("first");
        first.setEnabled(false);
        eventLoop::sleep(500);
    });
    start(first, 100);
    start(second, 150);
    headless::advance(200);
    EXPECT_EQ(taken(), (Lines{"first at 100", "second at 600"}));
    EXPECT_EQ(headless::now(), 600);
}

TEST_F(ClockTest, ADisabledTimerAndIntervalZeroDoNotTick) {
    start(first, 100);
    first.setEnabled(false);
    start(second, 0);
    headless::advance(1000);
    EXPECT_TRUE(taken().empty());
}

TEST_F(ClockTest, UnloadingTheFormDisablesItsTimers) {
    start(first, 100);
    form.unload();
    EXPECT_FALSE(first.enabled());
    form.load();
    headless::advance(1000);
    EXPECT_TRUE(taken().empty());
}

TEST_F(ClockTest, ATimerOfAnUnloadedFormWaitsForTheFormsLoad) {
    form.unload();
    start(first, 100);
    headless::advance(150);
    EXPECT_TRUE(taken().empty());
    form.load();
    headless::advance(100);
    EXPECT_EQ(taken(), (Lines{"first at 250"}));
}

}  // namespace
}  // namespace qxterm::test::clock_test
