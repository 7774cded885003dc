"""The call report: several hundred lines, scrolled by the terminal itself."""

from zentora.callcentre import QUEUE_NAMES, callsOfTheDay, clockText
from zentora.chrome import LEFT, RIGHT
from zentora.pages.page import Page
from zentora.style import ALERT, FRAME, GOOD, HEADING, NORMAL, STRONG

_top, _bottom = 2, 22
_bodyTop, _bodyBottom = 5, 21
_bodyRows = _bodyBottom - _bodyTop + 1
_halfPage = _bodyRows // 2
_textColumn, _textWidth = 3, 74


def _timeOfDay(second):
    return f"{second // 3600:02d}:{second // 60 % 60:02d}:{second % 60:02d}"


def _callLine(call):
    outcome = "Answered" if call.talked else "Lost"
    talked = clockText(call.talked) if call.talked else "-"
    return (f"{_timeOfDay(call.second):<10}{call.queue:<10}{call.agent or '-':<15}{call.caller:<15}"
            f"{clockText(call.waited):>6}{talked:>8}  {outcome:<8}")


def _summary(name, calls):
    answered = [call for call in calls if call.talked]
    waited = sum(call.waited for call in calls) // len(calls) if calls else 0
    talked = sum(call.talked for call in answered) // len(answered) if answered else 0
    return (f"{name:<20}{len(calls):>5} calls{len(answered):>6} answered{len(calls) - len(answered):>5} lost"
            f"{clockText(waited):>8}{clockText(talked):>8}")


def reportLines(chance):
    """The report as pairs of text and style."""
    calls = callsOfTheDay(chance)
    lines = []
    for hour in range(8, 18):
        ofHour = [call for call in calls if call.second // 3600 == hour]
        lines.append((f"{hour:02d}:00 to {hour + 1:02d}:00", HEADING))
        lines += [(_callLine(call), NORMAL if call.talked else ALERT) for call in ofHour]
        lines.append((_summary("Hour", ofHour), GOOD))
        lines.append(("", NORMAL))
    lines.append(("The whole day", HEADING))
    lines += [(_summary(name, [call for call in calls if call.queue == name]), GOOD) for name in QUEUE_NAMES]
    lines.append((_summary("All queues", calls), STRONG))
    lines.append(("End of report", NORMAL))
    return [(text[:_textWidth], style) for text, style in lines]


class ReportPage(Page):
    title = "Call report"

    def __init__(self, session):
        super().__init__(session)
        self._lines = reportLines(session.clock.makeRandom())
        self._first = 0

    @property
    def _lastFirst(self):
        return len(self._lines) - _bodyRows

    def onKey(self, key):
        steps = {"down": 1, "up": -1, "enter": 1, " ": _bodyRows - 1, "b": 1 - _bodyRows, "d": _halfPage,
                 "u": -_halfPage, "g": -len(self._lines), "G": len(self._lines)}
        if key in ("escape", "q", "Q"):
            self.session.go("menu")
            return
        step = steps.get(key, steps.get(key.lower() if len(key) == 1 else key))
        if step is None:
            return
        first = min(self._lastFirst, max(0, self._first + step))
        if first == self._first:
            self.session.complain("The report ends here." if step > 0 else "The report begins here.")
            return
        self._move(first - self._first, abs(step) == _halfPage)
        self._first = first

    def _move(self, count, isHalfPage):
        """Lets the terminal move the rows that stay in view; draw() then fills in the new ones."""
        screen = self.session.screen
        if abs(count) >= _bodyRows:
            return
        if not isHalfPage:
            screen.scroll(_bodyTop, _bodyBottom, count)
        elif count > 0:
            screen.deleteLines(_bodyTop, _bodyBottom, count)
        else:
            screen.insertLines(_bodyTop, _bodyBottom, -count)

    def draw(self, screen):
        screen.box(_top, LEFT, _bottom, RIGHT, FRAME, "Calls of the day", STRONG)
        heading = (f"{'Time':<10}{'Queue':<10}{'Agent':<15}{'Caller':<15}{'Waited':>6}{'Talked':>8}  {'Outcome':<8}")
        screen.put(_top + 1, _textColumn, heading, HEADING)
        screen.rule(_top + 2, LEFT, RIGHT, FRAME)
        for offset in range(_bodyRows):
            text, style = self._lines[self._first + offset]
            screen.put(_bodyTop + offset, _textColumn, text, style)
        last = self._first + _bodyRows
        place = f" {self._first + 1} to {last} of {len(self._lines)} "
        screen.put(_bottom, RIGHT - 2 - len(place), place, STRONG)

    def hints(self):
        return [("Up/Down", "Line"), ("Space/B", "Page"), ("D/U", "Half"), ("g/G", "First/last"), ("Esc", "Menu")]

    def statusText(self):
        return f"{100 * (self._first + _bodyRows) // len(self._lines)} % of the report"
