"""The live table of queues and agents."""

from zentora.callcentre import BREAK, READY, TALKING, WRAP_UP, clockText
from zentora.chrome import LEFT, RIGHT
from zentora.pages.page import Page
from zentora.style import (ALERT, FRAME, GOOD, HEADING, LABEL, MAGENTA, NORMAL, SELECTED, STRONG, WARN, Style,
                           levelStyle)

_stateStyles = {READY: GOOD, TALKING: LABEL, WRAP_UP: HEADING, BREAK: Style(MAGENTA)}
_stateOrder = (TALKING, WRAP_UP, READY, BREAK)
_orders = (
    ("name", lambda agent: agent.name),
    ("state", lambda agent: (_stateOrder.index(agent.state), agent.name)),
    ("calls", lambda agent: (-agent.calls, agent.name)),
    ("queue", lambda agent: (agent.queue, agent.name)),
)
_queueTop, _agentTop = 2, 10
_barLeft, _barWidth = 54, 16


class AgentsPage(Page):
    title = "Agents and queues"

    def __init__(self, session):
        super().__init__(session)
        self._order = 0
        self._chosen = 0

    def onKey(self, key):
        if key in ("up", "down"):
            last = len(self.session.centre.agents) - 1
            self._chosen = min(last, max(0, self._chosen + (1 if key == "down" else -1)))
        elif key == "enter":
            self._toggleBreak()
        elif key in ("s", "S", "t5"):
            self._order = (self._order + 1) % len(_orders)
            self.session.inform(f"Agents are sorted by {_orders[self._order][0]}.")
        elif key in ("p", "P"):
            self.session.pause()
        elif key in ("r", "R"):
            self.session.centre.step()
        elif key in ("escape", "q", "Q"):
            self.session.go("menu")

    def _sorted(self):
        return sorted(self.session.centre.agents, key=_orders[self._order][1])

    def _toggleBreak(self):
        agent = self._sorted()[self._chosen]
        if not self.session.centre.toggleBreak(agent):
            self.session.complain(f"{agent.name} is busy with a call.")
        elif agent.state == BREAK:
            self.session.inform(f"{agent.name} goes on a break.")
        else:
            self.session.inform(f"{agent.name} is called back from the break.")

    def draw(self, screen):
        self._drawQueues(screen)
        self._drawAgents(screen)

    def _drawQueues(self, screen):
        queues = self.session.centre.queues
        bottom = _queueTop + 3 + len(queues)
        screen.box(_queueTop, LEFT, bottom, RIGHT, FRAME, "Queues", STRONG)
        heading = f"{'Queue':<14}{'Waiting':>9}{'Longest':>10}{'Answered':>10}{'Lost':>6}"
        screen.put(_queueTop + 1, 3, heading, HEADING)
        screen.put(_queueTop + 1, _barLeft, "Answered in time", HEADING)
        screen.rule(_queueTop + 2, LEFT, RIGHT, FRAME)
        for offset, queue in enumerate(queues):
            row = _queueTop + 3 + offset
            waiting = len(queue.waiting)
            screen.put(row, 3, f"{queue.name:<14}")
            screen.put(row, 17, f"{waiting:>9}", WARN if waiting > 2 else NORMAL)
            screen.put(row, 26, f"{clockText(queue.longest):>10}", ALERT if queue.longest > 60 else NORMAL)
            screen.put(row, 36, f"{queue.answered:>10}{queue.lost:>6}")
            level = queue.serviceLevel
            style = levelStyle(level)
            filled = round(level * _barWidth / 100)
            screen.fill(row, _barLeft, filled, style._replace(reverse=True, bold=False))
            screen.lines(row, _barLeft + filled, "q" * (_barWidth - filled), style._replace(bold=False))
            screen.put(row, _barLeft + _barWidth, f"{level:>5}%", style)

    def _drawAgents(self, screen):
        agents = self._sorted()
        screen.box(_agentTop, LEFT, _agentTop + 3 + len(agents), RIGHT, FRAME, "Agents", STRONG)
        heading = f"{'Name':<17}{'Ext':>5}   {'State':<9}{'Since':>7}   {'Queue':<10}{'Calls':>7}{'Avg talk':>12}"
        screen.put(_agentTop + 1, 3, heading, HEADING)
        screen.rule(_agentTop + 2, LEFT, RIGHT, FRAME)
        for offset, agent in enumerate(agents):
            row = _agentTop + 3 + offset
            isChosen = offset == self._chosen
            if isChosen:
                screen.fill(row, LEFT + 1, RIGHT - LEFT - 1, SELECTED)
            style = SELECTED if isChosen else NORMAL
            screen.put(row, 3, f"{agent.name:<17}{agent.extension:>5}   ", style)
            screen.put(row, 28, f"{agent.state:<9}", SELECTED if isChosen else _stateStyles[agent.state])
            screen.put(row, 37, f"{clockText(agent.since):>7}   {agent.queue:<10}{agent.calls:>7}"
                                f"{clockText(agent.averageTalk):>12}", style)

    def hints(self):
        return [("Up/Down", "Choose"), ("Enter", "Break"), ("S", "Sort"), ("P", "Pause"), ("R", "Refresh"),
                ("Esc", "Menu")]

    def statusText(self):
        return f"Sorted by {_orders[self._order][0]}"
