#include "diag/error_trap.h"

#include <new>
#include <string>

#include "diag/format_msg.h"
#include "diag/recorded.h"
#include "platform/headless/message_box.h"

namespace qxterm::error_trap_test {
namespace {

using test::countOf;
using test::recorded;

class ErrorTrapTest : public test::RecordedTest {
protected:
    void SetUp() override {
        RecordedTest::SetUp();
        clearPlannedFaults();
        g_sCrLf = "\r\n";
        g_bVerboseErrors = true;
        g_bTrapErrors = false;
    }
    void TearDown() override {
        clearPlannedFaults();
        g_bVerboseErrors = false;
        g_bTrapErrors = false;
        RecordedTest::TearDown();
    }
};

std::string unexpected(int number, const std::string& routine, const std::string& description) {
    return "An unexpected error " + std::to_string(number) + " has occurred\r\nroutine: " + routine +
           "\r\nmessage: " + description;
}

TEST_F(ErrorTrapTest, BodyWithoutErrorRunsOnce) {
    int runs = 0;
    trapped("putBuf", [&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(countOf("box"), 0U);
}

TEST_F(ErrorTrapTest, ReportsUnderTheRoutinesNameAndLeavesIt) {
    std::string trace;
    trapped("putBuf", [&] {
        trace += 'a';
        if (!trace.empty()) throw RunTimeError{9};
        trace += 'b';
    });
    EXPECT_EQ(trace, "a");
    EXPECT_EQ(recorded("box", "text"), std::vector{unexpected(9, "putBuf", "Subscript out of range")});
}

TEST_F(ErrorTrapTest, OutOfMemoryOfTheLanguageIsErrorSeven) {
    trapped("processInput", [] { throw std::bad_alloc{}; });
    EXPECT_EQ(recorded("box", "text"),
              std::vector<std::string>{"Out of memory.  Please close other applications and try again"});
}

TEST_F(ErrorTrapTest, InnerTrapTakesTheErrorAndTheOuterRoutineGoesOn) {
    bool wentOn = false;
    trapped("lineFeed", [&] {
        trapped("putBuf", [] { throw RunTimeError{5}; });
        wentOn = true;
    });
    EXPECT_TRUE(wentOn);
    EXPECT_EQ(recorded("box", "text"),
              std::vector{unexpected(5, "putBuf", "Invalid procedure call or argument")});
}

// What a routine has already done is not done again: a body that failed outside of a step is left.
TEST_F(ErrorTrapTest, RetryDoesNotRepeatABodyThatHadTakenEffect) {
    headless::queueAnswer(Answer::retry);
    int runs = 0;
    trapped("putBuf", [&] {
        ++runs;
        throw RunTimeError{7};
    });
    EXPECT_EQ(runs, 1);
}

TEST_F(ErrorTrapTest, RetryRepeatsTheFailedStepOnly) {
    headless::queueAnswer(Answer::retry);
    headless::queueAnswer(Answer::retry);
    std::string trace;
    int failures = 2;
    ErrorTrap trap{"connectPort"};
    trap.run([&] {
        trace += 'a';
        trap.step([&] {
            trace += 's';
            if (failures-- > 0) throw RunTimeError{7};
        });
        trace += 'b';
    });
    EXPECT_EQ(trace, "asssb");
    EXPECT_EQ(countOf("box"), 2U);
}

TEST_F(ErrorTrapTest, StepAnsweredCancelLeavesTheRoutine) {
    headless::queueAnswer(Answer::retry);
    headless::queueAnswer(Answer::cancel);
    std::string trace;
    ErrorTrap trap{"connectPort"};
    trap.run([&] {
        trap.step([&] {
            trace += 's';
            throw RunTimeError{7};
        });
        trace += 'b';
    });
    EXPECT_EQ(trace, "ss");
    EXPECT_EQ(countOf("box"), 2U);
}

TEST_F(ErrorTrapTest, OnlyOutOfMemoryCanBeRepeated) {
    headless::queueAnswer(Answer::retry);  // a box with OK alone cannot take it
    int runs = 0;
    ErrorTrap trap{"connectPort"};
    trap.run([&] {
        trap.step([&] {
            ++runs;
            throw RunTimeError{70};
        });
    });
    EXPECT_EQ(runs, 1);
}

TEST_F(ErrorTrapTest, PlannedFaultMeetsTheNamedRoutineOnce) {
    planFault("flushBuf", 9);
    int other = 0;
    int named = 0;
    trapped("putBuf", [&] { ++other; });
    trapped("flushBuf", [&] { ++named; });
    trapped("flushBuf", [&] { ++named; });
    EXPECT_EQ(other, 1);
    EXPECT_EQ(named, 1);
    EXPECT_EQ(recorded("box", "text"), std::vector{unexpected(9, "flushBuf", "Subscript out of range")});
}

TEST_F(ErrorTrapTest, SeveralPlannedFaultsAreMetEachByItsRoutineInOrder) {
    planFault("flushBuf", 9);
    planFault("putBuf", 6);
    planFault("flushBuf", 5);
    int ran = 0;
    for (const char* routine : {"putBuf", "flushBuf", "flushBuf", "flushBuf", "putBuf"}) {
        trapped(routine, [&] { ++ran; });
    }
    EXPECT_EQ(ran, 2);
    EXPECT_EQ(
        recorded("box", "text"),
        (std::vector{unexpected(6, "putBuf", "Overflow"), unexpected(9, "flushBuf", "Subscript out of range"),
                     unexpected(5, "flushBuf", "Invalid procedure call or argument")}));
}

TEST_F(ErrorTrapTest, PlannedFaultIsMetBeforeTheFirstStep) {
    planFault("flushBuf", 7);
    headless::queueAnswer(Answer::cancel);
    bool ran = false;
    trapped("flushBuf", [&] { ran = true; });
    EXPECT_FALSE(ran);
}

TEST_F(ErrorTrapTest, PlannedFaultAnsweredRetryRunsTheBodyOnce) {
    planFault("flushBuf", 7);
    headless::queueAnswer(Answer::retry);
    int runs = 0;
    trapped("flushBuf", [&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(countOf("box"), 1U);
}

TEST_F(ErrorTrapTest, ClearedPlanIsForgotten) {
    planFault("flushBuf", 9);
    clearPlannedFaults();
    bool ran = false;
    trapped("flushBuf", [&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST_F(ErrorTrapTest, ClearedPlanDoesNotComeBackWithTheNext) {
    planFault("one", 5);
    clearPlannedFaults();
    planFault("two", 5);
    trapped("one", [] {});
    EXPECT_EQ(test::countOf("box"), 0U);
    trapped("two", [] {});
    EXPECT_EQ(test::countOf("box"), 1U);
}

TEST_F(ErrorTrapTest, UnarmedTrapLetsTheErrorThrough) {
    std::int16_t number = 0;
    try {
        trappedOnRequest("addTimer", [] { throw RunTimeError{6}; });
    } catch (const RunTimeError& error) {
        number = error.number;
    }
    EXPECT_EQ(number, 6);
    EXPECT_EQ(countOf("box"), 0U);
}

TEST_F(ErrorTrapTest, UnarmedTrapTurnsOutOfMemoryIntoErrorSeven) {
    std::int16_t number = 0;
    try {
        trappedOnRequest("addTimer", [] { throw std::bad_alloc{}; });
    } catch (const RunTimeError& error) {
        number = error.number;
    }
    EXPECT_EQ(number, 7);
}

TEST_F(ErrorTrapTest, UnarmedStepLetsTheErrorThroughWithoutARepeat) {
    headless::queueAnswer(Answer::retry);
    int runs = 0;
    ErrorTrap trap{"addTimer", Arm::onRequest};
    EXPECT_THROW(trap.run([&] {
        trap.step([&] {
            ++runs;
            throw RunTimeError{7};
        });
    }),
                 RunTimeError);
    EXPECT_EQ(runs, 1);
    EXPECT_EQ(countOf("box"), 0U);
}

TEST_F(ErrorTrapTest, UnarmedErrorIsTakenByTheCallersTrap) {
    bool wentOn = false;
    trapped("processInput", [&] {
        trappedOnRequest("addTimer", [] { throw RunTimeError{6}; });
        wentOn = true;
    });
    EXPECT_FALSE(wentOn);
    EXPECT_EQ(recorded("box", "text"), std::vector{unexpected(6, "processInput", "Overflow")});
}

TEST_F(ErrorTrapTest, SwitchArmsTheTrapsOnRequest) {
    g_bTrapErrors = true;
    trappedOnRequest("addTimer", [] { throw RunTimeError{6}; });
    EXPECT_EQ(recorded("box", "text"), std::vector{unexpected(6, "addTimer", "Overflow")});
}

bool beforeRan = false;

TEST_F(ErrorTrapTest, RunsWhatComesBeforeTheReport) {
    beforeRan = false;
    ErrorTrap trap{"processInput", Arm::always, [] { beforeRan = countOf("box") == 0; }};
    trap.run([] { throw RunTimeError{9}; });
    EXPECT_TRUE(beforeRan);
    EXPECT_EQ(countOf("box"), 1U);
}

}  // namespace
}  // namespace qxterm::error_trap_test
