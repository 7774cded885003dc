"""The two banks of function keys: what they send, and the labels on the terminal's buttons.

Bank 0 sends ESC O c to ESC O j, as the terminal does from the start; bank 1 sends ESC O 1 to ESC O 8, so that the
host can tell the banks apart.
"""

NAVIGATION, TOOLS = 0, 1

_labelWidth = 8
_labels = {
    NAVIGATION: ("Guide", "Agents", "Callback", "Report", "Refresh", "Menu", "Tools", "Log off"),
    TOOLS: ("Reverse", "Cursor", "Bell", "Pause", "Sort", "Repaint", "Go to", "Hide bar"),
}


def navigationString(key):
    """What the terminal sends for key 1 to 8 before anybody has programmed it."""
    return "\x1bO" + chr(ord("c") + key - 1)


def toolString(key):
    return "\x1bO" + str(key)


def programKey(key, bank, label, string):
    """The sequence that programs one key; label is 16 characters, two lines of eight on the button."""
    assert 1 <= key <= 8 and len(label) == 2 * _labelWidth
    return f"\x1b[{key};{len(string)};{bank}q{label}{string}"


def twoLineLabel(first, second):
    return first.center(_labelWidth)[:_labelWidth] + second.center(_labelWidth)[:_labelWidth]


def programBothBanks():
    """Programs both banks and leaves the navigation bank on the buttons."""
    out = []
    # Programming a key puts its bank on the buttons, so the bank to be seen comes last.
    for bank, stringOf in ((TOOLS, toolString), (NAVIGATION, navigationString)):
        for key in range(1, 9):
            label = twoLineLabel(f"F{key}", _labels[bank][key - 1])
            out.append(programKey(key, bank, label, stringOf(key)))
    out.append(showBank(NAVIGATION))
    return "".join(out)


def restoreDefaults():
    """Both banks as a terminal has them before sign-on, and the bar hidden."""
    out = []
    for bank in (TOOLS, NAVIGATION):
        for key in range(1, 9):
            out.append(programKey(key, bank, f"   F{key}".ljust(2 * _labelWidth), navigationString(key)))
    return "".join(out) + showBank(NAVIGATION) + hideBar()


def showBank(bank):
    return f"\x1b[{bank}p"


def hideBar():
    return "\x1b[2p"
