"""What is sampled: the columns of the samples, and how far each may grow."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Figure:
    column: str
    title: str
    unit: str  # of the number in the samples
    grows: float  # how much it may grow in an hour, and in a shorter sitting; 0: by less than one in a whole sitting


MIB = 1024.0  # KiB

# At rest: connected, an ordinary page on the screen, no dialog. "elsewhere" is no column: samples.withElsewhere adds it.
WINDOW = (
    Figure("private", "private memory", "KiB", 3 * MIB),
    Figure("heap", "what the program has asked its heaps for", "KiB", 2 * MIB),
    Figure("elsewhere", "the same without what came in serial phases", "KiB", 0.5 * MIB),
    Figure("resident", "resident memory", "KiB", 4 * MIB),
    Figure("handles", "handles", "", 0),
    # Wine draws parts of controls into pictures, once, when the mouse first meets them.
    Figure("gdi", "GDI objects", "", 10),
    Figure("user", "USER objects (windows, menus, icons)", "", 0),
    Figure("registry", "timers of the registry", "", 0),
    Figure("timers", "timers of the system", "", 0),
    Figure("threads", "threads", "", 0),
    Figure("files", "Unix file descriptors", "", 0),
    Figure("helpers", "helper processes", "", 0),
    Figure("server", "memory of Wine's server", "KiB", 4 * MIB),
    Figure("display", "memory of the display", "KiB", 16 * MIB),
)
SCENARIO = (
    Figure("private", "private memory", "KiB", 0.064 * MIB),
    Figure("resident", "resident memory", "KiB", 0.064 * MIB),
    Figure("registry", "timers of the registry", "", 0),
    Figure("forms", "forms that are open", "", 0),
    Figure("sockets", "sockets open", "", 0),
    Figure("ports", "serial ports open", "", 0),
    Figure("helpers", "helper processes", "", 0),
    Figure("lines", "lines of the scrollback", "", 0),
    Figure("carried", "bytes carried to the next block", "", 0),
    Figure("files", "Unix file descriptors", "", 0),
)
ANSWER = 100.0  # milliseconds in which the window answers

# Beside the figures.
ABOUT = ("sitting", "seconds", "phase", "rest")
WINDOW_COLUMNS = (*ABOUT, *(one.column for one in WINDOW if one.column != "elsewhere"), "received", "typed", "sessions", "answer50", "answer99",
                  "idle50", "idle99", "load")
SCENARIO_COLUMNS = ("sitting", "seconds", "virtual", "events", "rest", *(one.column for one in SCENARIO))
