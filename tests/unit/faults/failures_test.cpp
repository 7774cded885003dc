// Every call of the system that can fail does so, at every moment of ordinary use and in sessions of every
// type. The program reports it in the words it has for that, or copes without a word; it goes on where it
// can, and leaves nothing behind.

#include "platform/headless/failures.h"

#include <algorithm>
#include <map>
#include <set>

#include "app/program_fixture.h"
#include "connection/session.h"
#include "connection/ssh_helpers.h"
#include "connection/transport_controls.h"
#include "diag/report_error.h"
#include "faults/memory.h"
#include "faults/ordinary_use.h"
#include "platform/event_loop.h"
#include "platform/headless/forms.h"
#include "platform/headless/picture_box.h"
#include "platform/system_text.h"
#include "platform/timer.h"
#include "terminal/model/input_busy.h"

namespace qxterm::test::failures_test {
namespace {

using headless::FailurePlan;
using headless::Point;

constexpr const char* dropped = "The connection has been dropped";

/// What the user is told when a call fails.
struct Told {
    Point point;
    enum { not_at_all, perhaps, always } when;
    const char* text;  ///< the box's text begins with it
    const char* other = text;
};
const std::vector<Told> told{
    {Point::clipboardClear, Told::always, "An unexpected error 70 has occurred"},
    {Point::clipboardRead, Told::not_at_all, ""},
    {Point::clipboardSet, Told::always, "An unexpected error 70 has occurred"},
    {Point::helpShow, Told::always, "The help file cannot be found:"},
    // The names of the profiles are read anew when they are written.
    {Point::iniRead, Told::perhaps, "The profile copy exists, do you want to replace it?",
     "You must specify a hostname"},
    {Point::iniWrite, Told::not_at_all, ""},
    {Point::languageRead, Told::not_at_all, ""},
    {Point::boxShow, Told::not_at_all, ""},
    {Point::pictureLoad, Told::always, "An unexpected error 53 has occurred"},
    {Point::pictureMeasure, Told::not_at_all, ""},
    {Point::portsTcp, Told::not_at_all, ""},
    {Point::portsUdp, Told::not_at_all, ""},
    {Point::processPipe, Told::always, "Out of memory."},
    {Point::processReady, Told::not_at_all, ""},
    {Point::processStart, Told::not_at_all, ""},
    {Point::processTerminate, Told::not_at_all, ""},
    {Point::serialBreak, Told::not_at_all, ""},
    {Point::serialCarrier, Told::perhaps, dropped},
    {Point::serialOpen, Told::always, "Another application is using the serial port."},
    {Point::serialRead, Told::perhaps, dropped},
    {Point::serialSettings, Told::always, "An unexpected error 5 has occurred"},
    {Point::serialWrite, Told::perhaps, dropped},
    {Point::socketConnect, Told::not_at_all, ""},
    {Point::socketSend, Told::always, dropped},
    {Point::socketText, Told::not_at_all, ""},
    {Point::timerStart, Told::not_at_all, ""},
    {Point::traceWrite, Told::always, "An unexpected error 75 has occurred"},
    {Point::windowCreate, Told::always, "Out of memory."},
};

const Told& toldOf(Point point) { return told.at(static_cast<std::size_t>(point)); }

using Calls = std::map<Point, std::uint32_t>;

class Failures : public ProgramTest, public ::testing::WithParamInterface<const char*> {
protected:
    void TearDown() override { headless::resetAll(); }

    /// Ordinary use with these plans, up to the last disconnection.
    void use(const std::vector<std::pair<Point, FailurePlan>>& plans, bool userRetries = false) const {
        headless::resetAll();
        watch();
        use_.prepare();
        constexpr int retries = 40;
        for (int n = 0; userRetries && n < retries; ++n) headless::queueAnswer(Answer::retry);
        for (const auto& [point, plan] : plans) headless::planFailure(point, plan);
        use_.work();
        headless::resetAnswers();
    }

    static std::string_view nameOf(Point point) {
        return headless::points()[static_cast<std::size_t>(point)].name;
    }
    static std::size_t countOfBoxes(std::string_view beginning) {
        const auto seen = boxes();
        return static_cast<std::size_t>(std::count_if(
            seen.begin(), seen.end(), [&](const std::string& text) { return text.starts_with(beginning); }));
    }

    /// All is well again: the session shows what the host sends, and the program ends and leaves nothing.
    void expectAllIsWellAgain() const {
        EXPECT_EQ(windowsThatStayed, std::vector<std::string>{});
        EXPECT_TRUE(headless::modalForms().empty());
        EXPECT_EQ(inputBusy, 0);
        for (const headless::PointInfo& info : headless::points())
            headless::planFailure(info.point, {0, 0, 0});
        headless::advance(3000);
        use_.hostSays("all is well");
        EXPECT_EQ(storedRow(0), "all is well");
        EXPECT_EQ(drawnRow(0), "all is well");
        // A profile that could not be found in the file is not read again.
        const bool profileRead = use_.type != "none" && headless::failuresOf(Point::iniRead) == 0;
        EXPECT_TRUE(g_bConnectActive || !profileRead) << "no session any more";
        use_.leave();
        EXPECT_TRUE(eventLoop::ending()) << "the program does not end";
        expectNothingIsLeft();
    }

    static void expectNothingIsLeft() {
        EXPECT_EQ(windowsThatStayed, std::vector<std::string>{});
        EXPECT_TRUE(headless::modalForms().empty());
        for (const Form* form : headless::loadedForms()) ADD_FAILURE() << form->name() << " is still loaded";
        EXPECT_EQ(headless::runningTimers(), 0U);
        EXPECT_FALSE(comnet2.connected());
        EXPECT_FALSE(comser.portOpen());
        EXPECT_FALSE(sshHelperRecorded());
    }

    /// Boxes that ordinary use has without any failure.
    std::set<std::string> usualBoxes() const {
        use({});
        const auto seen = boxes();
        return {seen.begin(), seen.end()};
    }
    Calls callsInUse() const {
        use({});
        Calls calls;
        for (const headless::PointInfo& point : headless::points())
            calls[point.point] = headless::callsOf(point.point);
        return calls;
    }

    Use use_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Each, Failures, ::testing::Values("net", "serial", "modem", "ssh", "loop", "none"),
                         [](const ::testing::TestParamInfo<const char*>& one) {
                             return std::string{one.param};
                         });

/// The moments at which a point is made to fail: each of its first calls, then some of the later ones.
std::vector<std::uint32_t> momentsOf(std::uint32_t calls) {
    std::vector<std::uint32_t> moments;
    constexpr std::uint32_t everyOne = 8;
    for (std::uint32_t call = 0; call < calls; call += call < everyOne ? 1 : 1 + call / 2)
        moments.push_back(call);
    return moments;
}

TEST_P(Failures, WithoutOneAllIsWell) {
    use({});
    EXPECT_EQ(countOf("failed"), 0U);
    expectAllIsWellAgain();
}

TEST_P(Failures, OfEveryCallAtEveryMoment) {
    const std::set<std::string> usual = usualBoxes();
    for (const auto& [point, calls] : callsInUse()) {
        const std::string name{nameOf(point)};
        std::vector<FailurePlan> plans;
        for (const std::uint32_t moment : momentsOf(calls)) plans.push_back({moment, 1, 0});
        if (calls > 1) plans.push_back({0, 2, 0});
        if (calls > 0) plans.push_back({0, FailurePlan::always, 0});
        for (const FailurePlan& plan : plans) {
            SCOPED_TRACE(name + ", call " + std::to_string(plan.after + 1) + ", " +
                         std::to_string(plan.times));
            use({{point, plan}});
            ASSERT_GT(headless::failuresOf(point), 0U);
            const Told& expected = toldOf(point);
            bool said = false;
            for (const std::string& box : boxes()) {
                const bool its = expected.when != Told::not_at_all &&
                                 (box.starts_with(expected.text) || box.starts_with(expected.other));
                said |= its;
                EXPECT_TRUE(its || usual.contains(box)) << box;
            }
            if (expected.when == Told::always) {
                EXPECT_TRUE(said) << "the user was not told";
            }
            const bool ended = eventLoop::ending();
            EXPECT_TRUE(!ended || point == Point::windowCreate) << "the program has ended";
            if (!ended) expectAllIsWellAgain();
        }
    }
}

TEST_P(Failures, OfOutOfMemoryThatTheUserTriesAgain) {
    for (const auto& [point, calls] : callsInUse()) {
        const headless::PointInfo& info = headless::points()[static_cast<std::size_t>(point)];
        if (info.error == 0 || point == Point::socketConnect) continue;
        for (const std::uint32_t moment : momentsOf(calls)) {
            SCOPED_TRACE(std::string{info.name} + ", call " + std::to_string(moment + 1));
            use({{point, {moment, 3, errors::outOfMemory}}}, true);
            ASSERT_GT(headless::failuresOf(point), 0U);
            EXPECT_NE(countOfBoxes("Out of memory."), 0U);
            if (!eventLoop::ending()) expectAllIsWellAgain();
        }
    }
}

TEST_P(Failures, OfTwoCallsForGood) {
    const Calls calls = callsInUse();
    for (const auto& [one, oneCalls] : calls) {
        for (const auto& [other, otherCalls] : calls) {
            if (oneCalls == 0 || otherCalls == 0 || other <= one) continue;
            SCOPED_TRACE(std::string{nameOf(one)} + " and " + std::string{nameOf(other)});
            use({{one, {0, FailurePlan::always, 0}}, {other, {1, FailurePlan::always, 0}}});
            if (!eventLoop::ending()) expectAllIsWellAgain();
        }
    }
}

TEST_P(Failures, WhileTheProgramEnds) {
    for (const headless::PointInfo& info : headless::points()) {
        SCOPED_TRACE(info.name);
        use({});
        use_.hostSays("before the end");
        headless::planFailure(info.point, {0, FailurePlan::always, 0});
        // Nobody can be asked whether the session is to end, so it goes on.
        const bool asked = g_bConnectActive;
        use_.leave();
        EXPECT_EQ(eventLoop::ending(), info.point != Point::boxShow || !asked);
        headless::clearFailures();
        use_.leave();
        expectNothingIsLeft();
    }
}

/// Each request for memory is refused, alone, with the hundred behind it, or with all behind it.
TEST_P(Failures, OfMemory) {
    const auto useWith = [&](std::uint64_t after, std::uint64_t count) {
        headless::resetAll();
        watch();
        use_.prepare();
        planShortage(after, count);
        use_.work();
        return endShortage();
    };
    (void)useWith(0, 0);  // what is kept from then on is not asked for again
    const std::uint64_t requests = useWith(0, 0);
    for (const std::uint64_t count : {1U, 100U, 100000U}) {
        for (std::uint64_t after = 0; after < requests; ++after) {
            SCOPED_TRACE("request " + std::to_string(after) + ", " + std::to_string(count) + " refused");
            (void)useWith(after, count);
            // What an earlier use has kept is not asked for again.
            ASSERT_TRUE(refusedRequests() > 0 || after + 5 >= requests);
            if (!eventLoop::ending()) expectAllIsWellAgain();
            if (HasFailure()) return;
        }
    }
}

/// What no type's use comes to would never fail in the tests above.
TEST(FailurePoints, AreAllMetInOrdinaryUse) {
    std::map<std::string_view, std::uint32_t> calls;
    for (const char* type : {"net", "serial", "modem", "ssh", "loop", "none"}) {
        headless::resetAll();
        const Use use{type};
        use.prepare();
        use.work();
        use.leave();
        for (const headless::PointInfo& info : headless::points())
            calls[info.name] += headless::callsOf(info.point);
    }
    headless::resetAll();
    // A description is asked for when a socket's error is reported, which is below.
    for (const auto& [name, count] : calls) EXPECT_EQ(count > 0, name != "socket.text") << name;
}

class FailurePlans : public RecordedTest {};

TEST_F(FailurePlans, FailTheCallsThatTheyName) {
    headless::planFailure(Point::clipboardSet, {2, 2, 0});
    std::string outcome;
    for (int call = 0; call < 6; ++call) outcome += headless::fails(Point::clipboardSet) ? 'x' : '.';
    EXPECT_EQ(outcome, "..xx..");
    EXPECT_EQ(headless::callsOf(Point::clipboardSet), 6U);
    EXPECT_EQ(headless::failuresOf(Point::clipboardSet), 2U);
    EXPECT_EQ(headless::callsOf(Point::clipboardClear), 0U);
    EXPECT_EQ(recorded("failed", "point"), (std::vector<std::string>{"clipboard.set", "clipboard.set"}));
}

TEST_F(FailurePlans, CarryTheirErrorOrThePoints) {
    headless::planFailure(Point::serialOpen, {});
    EXPECT_EQ(headless::failure(Point::serialOpen), errors::deviceUnavailable);
    EXPECT_EQ(headless::failure(Point::serialOpen), std::nullopt);
    headless::planFailure(Point::serialOpen, {0, 1, 7});
    EXPECT_THROW(headless::raiseIfPlanned(Point::serialOpen), RunTimeError);
}

TEST_F(FailurePlans, AreForgottenByAReset) {
    headless::planFailure(Point::timerStart, {0, FailurePlan::always, 0});
    headless::reset();
    EXPECT_FALSE(headless::fails(Point::timerStart));
}

TEST_F(FailurePlans, ARefusedTimerRunsOnceTheSystemHasOne) {
    static constinit Form form{"form", FormKind::dialog, 0, ""};
    static constinit Timer timer{form, "timer"};
    static int ticks = 0;
    ticks = 0;
    timer.onTimer.connect("tick", [] { ++ticks; });
    form.load();
    headless::planFailure(Point::timerStart, {0, 2, 0});
    timer.setInterval(100);
    timer.setEnabled(true);
    headless::advance(0);  // refused once more
    EXPECT_EQ(headless::failuresOf(Point::timerStart), 2U);
    headless::advance(100);
    EXPECT_EQ(ticks, 1);
    headless::advance(200);
    EXPECT_EQ(ticks, 3);
    form.unload();
    EXPECT_EQ(headless::runningTimers(), 0U);
}

TEST_F(FailurePlans, PointsStandAtTheirNumbers) {
    for (std::size_t n = 0; n < headless::points().size(); ++n) {
        EXPECT_EQ(static_cast<std::size_t>(headless::points()[n].point), n);
        EXPECT_EQ(static_cast<std::size_t>(told.at(n).point), n);
        EXPECT_EQ(headless::pointNamed(headless::points()[n].name), &headless::points()[n]);
    }
    EXPECT_EQ(told.size(), headless::points().size());
}

TEST_F(FailurePlans, ASocketErrorWithoutADescriptionIsToldByItsNumber) {
    headless::planFailure(Point::socketText, {});
    EXPECT_EQ(errorDescription(10055), "Socket error 10055");
    EXPECT_NE(errorDescription(10055), "Socket error 10055");
}

}  // namespace
}  // namespace qxterm::test::failures_test
