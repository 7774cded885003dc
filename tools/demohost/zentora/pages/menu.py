"""The main menu, with the day's figures beside it."""

from zentora.callcentre import BREAK, READY, TALKING, WRAP_UP, clockText
from zentora.chrome import LEFT, RIGHT
from zentora.pages.page import Page
from zentora.style import ALERT, FRAME, GOOD, HEADING, LABEL, NORMAL, SELECTED, STRONG, WARN, levelStyle

# Title, function key, page to go to, what it is about.
_entries = (
    ("Agents and queues", "F2", "agents", ("Who is talking, who is ready, who waits for how long.",
                                           "The figures move every second; sort them, stop them,",
                                           "send agents on a break and call them back.")),
    ("Call-back request", "F3", "callback", ("Note down whom to call back, when and why.",
                                             "The fields can be edited in insert or overtype mode",
                                             "and are checked before the request is saved.")),
    ("Call report", "F4", "report", ("Every call of the day, hour by hour, with totals.",
                                     "Page through it, or scroll line by line.")),
    ("Display guide", "F1", "guide", ("What this terminal can show: attributes, colours,",
                                      "line-drawing characters and the reverse screen.")),
    ("Log off", "F8", None, ("End the session and give the line back.",)),
)
_middle = 40


class MenuPage(Page):
    title = "Main menu"

    def __init__(self, session):
        super().__init__(session)
        self._chosen = 0

    def onKey(self, key):
        if key in ("up", "down"):
            self._chosen = (self._chosen + (1 if key == "down" else -1)) % len(_entries)
        elif key == "enter":
            self._open(self._chosen)
        elif key in ("1", "2", "3", "4", "5"):
            self._open(int(key) - 1)
        elif len(key) == 1 and key.lower() == "r":
            self.session.centre.step()
        else:
            self.session.complain("Choose with the arrow keys and Enter, or type a number from 1 to 5.")

    def _open(self, index):
        page = _entries[index][2]
        if page:
            self.session.go(page)
        else:
            self.session.logOff("You have logged off.")

    def draw(self, screen):
        self._drawEntries(screen)
        self._drawFigures(screen)
        screen.box(16, LEFT, 21, RIGHT, FRAME, _entries[self._chosen][0], STRONG)
        for offset, line in enumerate(_entries[self._chosen][3]):
            screen.put(17 + offset, LEFT + 3, line)

    def _drawEntries(self, screen):
        screen.box(2, LEFT, 14, _middle - 2, FRAME, "Menu", STRONG)
        for index, (text, key, _, _) in enumerate(_entries):
            row = 4 + 2 * index
            isChosen = index == self._chosen
            if isChosen:
                screen.fill(row, LEFT + 2, _middle - 2 - LEFT - 3, SELECTED)
            screen.put(row, LEFT + 4, str(index + 1), SELECTED if isChosen else HEADING)
            screen.put(row, LEFT + 8, text, SELECTED if isChosen else NORMAL)
            screen.put(row, _middle - 6, key, SELECTED if isChosen else LABEL)

    def _drawFigures(self, screen):
        centre = self.session.centre
        left, top = _middle + 1, 2
        screen.box(top, left, 14, RIGHT, FRAME, "Right now", STRONG)
        screen.put(top + 1, left + 3, "Queue", HEADING)
        screen.put(top + 1, left + 14, "Waiting", HEADING)
        screen.put(top + 1, left + 24, "In target", HEADING)
        for offset, queue in enumerate(centre.queues):
            row = top + 2 + offset
            level = queue.serviceLevel
            screen.put(row, left + 3, queue.name)
            screen.put(row, left + 14, f"{len(queue.waiting):>7}", WARN if len(queue.waiting) > 2 else NORMAL)
            screen.put(row, left + 24, f"{level:>7} %", levelStyle(level))
        screen.rule(top + 6, left, RIGHT, FRAME)
        for offset, (state, style) in enumerate(((READY, GOOD), (TALKING, LABEL), (WRAP_UP, HEADING),
                                                 (BREAK, NORMAL))):
            count = sum(agent.state == state for agent in centre.agents)
            screen.put(top + 7 + offset, left + 3, f"Agents {state.lower()}")
            screen.put(top + 7 + offset, left + 19, f"{count:>2}", style)
            screen.fill(top + 7 + offset, left + 23, count, style._replace(reverse=True))
        longest = max(queue.longest for queue in centre.queues)
        screen.put(top + 11, left + 3, "Longest wait")
        screen.put(top + 11, left + 16, f"{clockText(longest):>5}", ALERT if longest > 60 else NORMAL)

    def hints(self):
        return [("Up/Down", "Choose"), ("Enter", "Open"), ("1-5", "Open at once"), ("F7", "Tools keys"),
                ("F8", "Log off")]

    def statusText(self):
        return "Ready"
