"""A small call centre that never existed: queues, agents, and the calls of a day.

The figures hang together: a call that waits is taken by an agent of its queue, or lost; step() lets one second pass.
"""

from dataclasses import dataclass, field

QUEUE_NAMES = ("Sales", "Service", "Billing", "Support")
# Seconds within which a call should be answered.
SERVICE_TARGET = 30
# Seconds after which agents of other queues help out.
HELP_AFTER = 20

_staff = (
    ("Anna Holm", 4101, "Sales"), ("Ben Okafor", 4102, "Sales"), ("Carla Reyes", 4107, "Service"),
    ("David Stern", 4110, "Service"), ("Elif Kaya", 4111, "Service"), ("Fiona Byrne", 4115, "Billing"),
    ("Goran Ilic", 4116, "Billing"), ("Hana Sato", 4120, "Support"), ("Ivo Lund", 4121, "Support"),
)
_arrivalChance = {"Sales": 0.0080, "Service": 0.0190, "Billing": 0.0080, "Support": 0.0130}

READY, TALKING, WRAP_UP, BREAK = "Ready", "Talking", "Wrap-up", "Break"


@dataclass
class Queue:
    name: str
    waiting: list = field(default_factory=list)  # seconds that each call has waited, the oldest first
    answered: int = 0
    inTime: int = 0
    lost: int = 0

    @property
    def longest(self):
        return self.waiting[0] if self.waiting else 0

    @property
    def serviceLevel(self):
        """Calls answered within the target, in per cent of all calls that ended waiting."""
        ended = self.answered + self.lost
        return 100 if not ended else round(100 * self.inTime / ended)


@dataclass
class Agent:
    name: str
    extension: int
    queue: str
    state: str = READY
    since: int = 0
    remaining: int = 0
    calls: int = 0
    talkSeconds: int = 0

    @property
    def averageTalk(self):
        return self.talkSeconds // self.calls if self.calls else 0

    def enter(self, state, remaining=0):
        self.state, self.since, self.remaining = state, 0, remaining


class CallCentre:
    def __init__(self, chance, warmUp=5400):
        """chance is a random.Random; warmUp seconds have passed before anybody looks."""
        self._chance = chance
        self.queues = [Queue(name) for name in QUEUE_NAMES]
        self.agents = [Agent(*entry) for entry in _staff]
        for _ in range(warmUp):
            self.step()

    def step(self):
        for queue in self.queues:
            self._ageCalls(queue)
        for agent in self.agents:
            self._workOn(agent)

    def toggleBreak(self, agent):
        """Sends a ready agent on a break, or calls one back; True when that was possible."""
        if agent.state == BREAK:
            agent.enter(READY)
        elif agent.state == READY:
            agent.enter(BREAK, 600)
        else:
            return False
        return True

    def _ageCalls(self, queue):
        queue.waiting = [age + 1 for age in queue.waiting]
        if queue.waiting and queue.longest > 75 and self._chance.random() < 0.04:
            queue.waiting.pop(0)
            queue.lost += 1
        if self._chance.random() < _arrivalChance[queue.name]:
            queue.waiting.append(0)

    def _workOn(self, agent):
        agent.since += 1
        if agent.state == READY:
            queue = self._queueFor(agent)
            if queue:
                waited = queue.waiting.pop(0)
                queue.answered += 1
                queue.inTime += waited <= SERVICE_TARGET
                agent.calls += 1
                agent.enter(TALKING, self._chance.randint(45, 200))
            elif agent.since > 30 and self._chance.random() < 0.006:
                agent.enter(BREAK, self._chance.randint(120, 420))
            return
        if agent.state == TALKING:
            agent.talkSeconds += 1
        agent.remaining -= 1
        if agent.remaining <= 0:
            if agent.state == TALKING:
                agent.enter(WRAP_UP, self._chance.randint(10, 35))
            else:
                agent.enter(READY)

    def _queueFor(self, agent):
        """The queue whose oldest call the agent takes: the own one first, others when a call has waited long."""
        own = next(queue for queue in self.queues if queue.name == agent.queue)
        if own.waiting:
            return own
        longest = max(self.queues, key=lambda queue: queue.longest)
        return longest if longest.longest > HELP_AFTER else None


def clockText(seconds):
    """Minutes and seconds, as 3:07."""
    return f"{seconds // 60}:{seconds % 60:02d}"


@dataclass
class CallRecord:
    second: int  # of the day
    queue: str
    agent: str
    caller: str
    waited: int
    talked: int  # 0 when the caller gave up


def callsOfTheDay(chance, count=360):
    """The calls of one day between 08:00 and 18:00, in order of time."""
    calls = []
    for second in sorted(chance.randrange(8 * 3600, 18 * 3600) for _ in range(count)):
        name, _, queue = chance.choice(_staff)
        isLost = chance.random() < 0.08
        waited = chance.randint(40, 180) if isLost else int(chance.expovariate(1 / 14))
        caller = f"020 7946 0{chance.randrange(1000):03d}"
        talked = 0 if isLost else chance.randint(35, 420)
        calls.append(CallRecord(second, queue, "" if isLost else name, caller, waited, talked))
    return calls
