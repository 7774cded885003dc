#include "timers/timer_registry.h"

#include <string>

#include "diag/error_trap.h"
#include "diag/recorded.h"

namespace qxterm::timer_registry_test {
namespace {

using test::countOf;
using test::recorded;

/// The actions that ran, in order.
std::string ran;
/// Called by action 1, when set.
void (*inAction)() = nullptr;

class TimerRegistry : public test::RecordedTest {
protected:
    void SetUp() override {
        RecordedTest::SetUp();
        saved_ = timerActions;
        ran.clear();
        inAction = nullptr;
        timerActions = {nullptr,
                        [] {
                            ran += '1';
                            if (inAction != nullptr) inAction();
                        },
                        [] { ran += '2'; },
                        [] { ran += '3'; },
                        [] { ran += '4'; },
                        [] { ran += '5'; }};
        clearTimers();
        tmrGen.setInterval(250);
    }
    void TearDown() override {
        clearTimers();
        tmrGen.setInterval(0);
        timerActions = saved_;
        RecordedTest::TearDown();
    }

    /// Numbers of the active slots in list order.
    static std::string active() {
        std::string list;
        for (std::int16_t number = timerHead; number != 0; number = timerTable[std::size_t(number)].next) {
            list += static_cast<char>('0' + number);
            if (list.size() > 5) return list + " circle";
        }
        return list;
    }
    /// A letter for each slot, "f" for free.
    static std::string slots() {
        std::string all;
        for (std::size_t number = 1; number <= 5; ++number) all += timerTable[number].free ? 'f' : 'u';
        return all;
    }
    /// Runs ticks; the actions of each, divided by "|".
    static std::string ticks(int count) {
        std::string all;
        for (int n = 0; n < count; ++n) {
            ran.clear();
            tmrGen_Timer();
            all += ran + '|';
        }
        return all;
    }

private:
    decltype(timerActions) saved_{};
};

TEST_F(TimerRegistry, StartsEmpty) {
    EXPECT_EQ(active(), "");
    EXPECT_EQ(slots(), "fffff");
    EXPECT_EQ(ticks(2), "||");
}

TEST_F(TimerRegistry, NewTimersTakeTheFirstFreeSlotAndGoToTheFront) {
    addTimer(2, 2, 250);
    addTimer(2, 3, 500);
    addTimer(1, 1, 1000);
    EXPECT_EQ(slots(), "uuuff");
    EXPECT_EQ(active(), "321");
    const TimerSlot& third = timerTable[3];
    EXPECT_EQ(third.remaining, 1000);
    EXPECT_EQ(third.next, 2);
    EXPECT_EQ(third.action, 1);
    EXPECT_EQ(third.kind, 1);
    EXPECT_EQ(third.period, 1000);
}

TEST_F(TimerRegistry, SameTripleTwiceIsOneTimer) {
    addTimer(2, 2, 250);
    addTimer(2, 2, 250);
    EXPECT_EQ(active(), "1");
    EXPECT_EQ(countOf("box"), 0U);
}

TEST_F(TimerRegistry, TimersThatDifferInOneFieldAreDifferent) {
    addTimer(2, 2, 250);
    addTimer(1, 2, 250);
    addTimer(2, 3, 250);
    addTimer(2, 2, 251);
    EXPECT_EQ(active(), "4321");
}

TEST_F(TimerRegistry, SixthTimerIsRefusedAndChangesNothing) {
    for (std::int16_t period = 1; period <= 5; ++period) addTimer(2, 2, period);
    addTimer(2, 2, 6);
    EXPECT_EQ(active(), "54321");
    EXPECT_EQ(recorded("box", "title"), std::vector<std::string>{"Zentora Terminal Emulator"});
    EXPECT_EQ(recorded("box", "text"), std::vector<std::string>{"Out of Windows timer resources"});
    EXPECT_EQ(recorded("box", "buttons"), std::vector<std::string>{"OK"});
}

TEST_F(TimerRegistry, KnownTripleIsNoSixthTimer) {
    for (std::int16_t period = 1; period <= 5; ++period) addTimer(2, 2, period);
    addTimer(2, 2, 5);
    EXPECT_EQ(countOf("box"), 0U);
}

TEST_F(TimerRegistry, OneShotTimerRunsOnceAndFreesItsSlot) {
    addTimer(1, 1, 250);
    EXPECT_EQ(ticks(3), "1|||");
    EXPECT_EQ(slots(), "fffff");
    EXPECT_EQ(active(), "");
    addTimer(2, 3, 500);
    EXPECT_EQ(active(), "1");
}

TEST_F(TimerRegistry, RepeatingTimerGoesOn) {
    addTimer(2, 2, 250);
    EXPECT_EQ(ticks(3), "2|2|2|");
    EXPECT_EQ(timerTable[1].remaining, 250);
}

TEST_F(TimerRegistry, AnyKindButOneRepeats) {
    addTimer(0, 3, 250);
    addTimer(-1, 4, 250);
    EXPECT_EQ(ticks(2), "43|43|");
}

TEST_F(TimerRegistry, PeriodsAreRoundedUpToWholeTicks) {
    addTimer(2, 1, 100);
    addTimer(2, 2, 251);
    addTimer(2, 3, 300);
    addTimer(2, 4, 500);
    addTimer(2, 5, 501);
    // 100 at every tick; 251, 300 and 500 at every second; 501 at every third
    EXPECT_EQ(ticks(6), "1|4321|51|4321|1|54321|");
}

TEST_F(TimerRegistry, ZeroAndNegativePeriodsRunAtEveryTick) {
    addTimer(2, 2, 0);
    addTimer(2, 3, -1);
    EXPECT_EQ(ticks(2), "32|32|");
}

TEST_F(TimerRegistry, TimersOfOneTickRunMostRecentFirst) {
    addTimer(2, 2, 250);
    addTimer(2, 5, 250);
    addTimer(2, 3, 250);
    EXPECT_EQ(ticks(1), "352|");
}

TEST_F(TimerRegistry, DeletingAnUnknownTripleChangesNothing) {
    addTimer(2, 2, 250);
    delTimer(2, 2, 251);
    delTimer(1, 2, 250);
    delTimer(2, 3, 250);
    EXPECT_EQ(active(), "1");
    clearTimers();
    delTimer(2, 2, 250);
    EXPECT_EQ(active(), "");
}

TEST_F(TimerRegistry, DeletingUnlinksHeadMiddleAndTail) {
    for (std::int16_t action = 1; action <= 4; ++action) addTimer(2, action, 250);
    ASSERT_EQ(active(), "4321");
    delTimer(2, 3, 250);
    EXPECT_EQ(active(), "421");
    delTimer(2, 1, 250);
    EXPECT_EQ(active(), "42");
    delTimer(2, 4, 250);
    EXPECT_EQ(active(), "2");
    EXPECT_EQ(slots(), "fufff");
    EXPECT_EQ(ticks(1), "2|");
}

TEST_F(TimerRegistry, FreedFirstSlotIsTakenNext) {
    for (std::int16_t action = 1; action <= 3; ++action) addTimer(2, action, 250);
    delTimer(2, 1, 250);
    addTimer(2, 4, 250);
    EXPECT_EQ(timerTable[1].action, 4);
    EXPECT_EQ(active(), "132");
}

// Only slots before the first free one are searched for the triple.
TEST_F(TimerRegistry, DuplicateBehindAFreeSlotIsRegisteredTwice) {
    addTimer(2, 1, 250);
    addTimer(2, 2, 250);
    delTimer(2, 1, 250);
    addTimer(2, 2, 250);
    EXPECT_EQ(active(), "12");
    EXPECT_EQ(ticks(1), "22|");
    delTimer(2, 2, 250);
    EXPECT_EQ(active(), "2");
}

TEST_F(TimerRegistry, ActionMayDeleteItsOwnTimer) {
    addTimer(2, 2, 250);
    addTimer(2, 1, 250);
    addTimer(2, 3, 250);
    inAction = [] { delTimer(2, 1, 250); };
    EXPECT_EQ(ticks(2), "312|32|");
    EXPECT_EQ(slots(), "ufuff");
}

TEST_F(TimerRegistry, ActionMayDeleteTheNextTimer) {
    addTimer(2, 2, 250);
    addTimer(2, 1, 250);
    inAction = [] { delTimer(2, 2, 250); };
    EXPECT_EQ(ticks(1), "1|");
    EXPECT_EQ(active(), "2");
}

TEST_F(TimerRegistry, TimerAddedByAnActionWaitsForTheNextTick) {
    addTimer(1, 1, 250);
    inAction = [] { addTimer(2, 2, 250); };
    EXPECT_EQ(ticks(3), "1|2|2|");
}

// While its action runs, a one-shot timer still stands in the registry: the same triple is known already.
TEST_F(TimerRegistry, OneShotCannotAddItselfFromItsAction) {
    addTimer(1, 1, 250);
    inAction = [] { addTimer(1, 1, 250); };
    EXPECT_EQ(ticks(2), "1||");
}

TEST_F(TimerRegistry, ElapsedTimeIsTheTimersCurrentInterval) {
    addTimer(2, 2, 500);
    tmrGen.setInterval(100);
    EXPECT_EQ(ticks(5), "||||2|");
    tmrGen.setInterval(500);
    EXPECT_EQ(ticks(2), "2|2|");
}

// -32768 - 250 leaves 16 bits. The tick's trap is not armed: the error passes on to the event loop.
TEST_F(TimerRegistry, CountBelow16BitsIsAnErrorOfTheTick) {
    addTimer(2, 2, -32768);
    EXPECT_THROW(tmrGen_Timer(), RunTimeError);
    EXPECT_EQ(countOf("box"), 0U);
    g_bTrapErrors = true;
    g_bVerboseErrors = false;
    tmrGen_Timer();
    g_bTrapErrors = false;
    EXPECT_EQ(recorded("box", "text"), std::vector<std::string>{"An unexpected error 6 has occurred"});
}

TEST_F(TimerRegistry, ActionWithoutAPlaceIsASubscriptError) {
    addTimer(1, 6, 250);
    try {
        tmrGen_Timer();
        FAIL() << "no error";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number, 9);
    }
}

}  // namespace
}  // namespace qxterm::timer_registry_test
