"""The installer's windows: welcome, folder, progress, end; repair and remove for what is installed already.

Lengths are dialog units of the installer's font. Each routine returns rows of a table of the MSI.
"""

WIDTH, HEIGHT = 370, 270
LINE = HEIGHT - 36
BUTTON_Y, BUTTON_W, BUTTON_H = HEIGHT - 27, 60, 17
LEFT, TEXT_W = 20, WIDTH - 40

VISIBLE, ENABLED = 1, 2
SHOWN = VISIBLE | ENABLED
SUNKEN, TRANSPARENT, NO_PREFIX = 4, 0x10000, 0x20000
PROGRESS_95 = 0x10000
DRIVES = 0x10000 | 0x20000 | 0x40000  # removable, fixed, of the network
DIALOG = VISIBLE | 2  # modal
MINIMIZE = 4
KEEP_MODELESS = 0x10
TRACK_SPACE = 0x20
ERROR_DIALOG = 0x10000

BACK, NEXT, CANCEL = WIDTH - 3 * BUTTON_W - 20, WIDTH - 2 * BUTTON_W - 20, WIDTH - BUTTON_W - 12


# What the last window says of what was done; the property Outcome holds it.
INSTALLED = "The program is installed. It is in the start menu."
REPAIRED = "All is again as it was installed."
REMOVED = "The program has been removed. Users' profiles and settings are kept."


class Windows:
    """Collects the rows while the dialogs are described."""

    def __init__(self):
        self.dialogs, self.controls, self.events, self.mappings = [], [], [], []

    def dialog(self, name, first, default, cancel, width=WIDTH, height=HEIGHT, attributes=DIALOG | MINIMIZE):
        self.name = name
        self.dialogs.append(
            (name, 50, 50, width, height, attributes, "[ProductName] Setup", first, default, cancel))

    def control(self, name, kind, x, y, width, height, text="", attributes=SHOWN, prop="", follows=""):
        self.controls.append((self.name, name, kind, x, y, width, height, attributes, prop, text, follows, ""))

    def heading(self, title, text):
        self.control("Title", "Text", 15, 8, WIDTH - 30, 15, "{\\Heading}" + title, SHOWN | NO_PREFIX | TRANSPARENT)
        self.control("Under", "Text", 25, 24, WIDTH - 40, 16, text, SHOWN | NO_PREFIX | TRANSPARENT)
        self.control("TopLine", "Line", 0, 44, WIDTH, 0, attributes=VISIBLE)
        self.control("BottomLine", "Line", 0, LINE, WIDTH, 0, attributes=VISIBLE)

    def text(self, name, y, text, height=30):
        self.control(name, "Text", LEFT, y, TEXT_W, height, text, SHOWN | NO_PREFIX | TRANSPARENT)

    def button(self, name, x, caption, follows, *events, y=BUTTON_Y, enabled=True, width=BUTTON_W):
        """events: (event, argument) or (event, argument, condition)"""
        self.control(name, "PushButton", x, y, width, BUTTON_H, caption, SHOWN if enabled else VISIBLE, "", follows)
        self.on(name, *events)

    def on(self, control, *events):
        for order, event in enumerate(events, 1):
            condition = event[2] if len(event) > 2 else "1"
            self.events.append((self.name, control, event[0], event[1], condition, order))


def describe():
    w = Windows()

    w.dialog("WelcomeDlg", "Next", "Next", "Cancel")
    w.heading("[ProductName] [ProductVersion]", "A character terminal for hosts")
    w.text("Text", 60, "It will be installed for all users of this computer. Each user has profiles and settings of "
           "his own.")
    w.text("Running", 95, "An older version is replaced, and may be running meanwhile: its sessions go on, and the new "
           "version counts from the next start.")
    w.button("Back", BACK, "< &Back", "Next", enabled=False)
    w.button("Next", NEXT, "&Next >", "Cancel", ("NewDialog", "FolderDlg"))
    w.button("Cancel", CANCEL, "Cancel", "Back", ("SpawnDialog", "CancelDlg"))

    w.dialog("FolderDlg", "Folder", "Next", "Cancel")
    w.heading("Folder", "Where the program's files go")
    w.text("Text", 60, "Install in this folder, or in another one that you name:", 12)
    w.control("Folder", "PathEdit", LEFT, 76, TEXT_W, 18, "", SHOWN | SUNKEN, "INSTALLFOLDER", "Browse")
    w.button("Browse", LEFT, "B&rowse...", "Next", ("SpawnDialog", "BrowseDlg"), y=100)
    w.button("Back", BACK, "< &Back", "Folder", ("NewDialog", "WelcomeDlg"))
    w.button("Next", NEXT, "&Install", "Cancel", ("SetTargetPath", "INSTALLFOLDER"), ("EndDialog", "Return"))
    w.button("Cancel", CANCEL, "Cancel", "Back", ("SpawnDialog", "CancelDlg"))

    w.dialog("BrowseDlg", "Combo", "OK", "Cancel", attributes=DIALOG | TRACK_SPACE)
    w.heading("Folder", "Choose the folder, or type its path below")
    w.control("Combo", "DirectoryCombo", LEFT, 54, TEXT_W - 60, 80, "", SHOWN | DRIVES, "INSTALLFOLDER", "Up")
    w.button("Up", LEFT + TEXT_W - 54, "&Up", "List", ("DirectoryListUp", "0"), y=53, width=26)
    w.button("New", LEFT + TEXT_W - 26, "&New", "Path", ("DirectoryListNew", "0"), y=53, width=26)
    w.control("List", "DirectoryList", LEFT, 76, TEXT_W, 112, "", SHOWN | SUNKEN, "INSTALLFOLDER", "New")
    w.control("Path", "PathEdit", LEFT, 198, TEXT_W, 18, "", SHOWN | SUNKEN, "INSTALLFOLDER", "OK")
    w.button("OK", NEXT, "OK", "Cancel", ("SetTargetPath", "INSTALLFOLDER"), ("EndDialog", "Return"))
    w.button("Cancel", CANCEL, "Cancel", "Combo", ("Reset", "0"), ("EndDialog", "Return"))

    w.dialog("MaintenanceDlg", "Repair", "Repair", "Cancel")
    w.heading("[ProductName] [ProductVersion]", "It is installed on this computer.")
    # Properties, as a command line would set them: no features are chosen here.
    w.button("Repair", LEFT, "&Repair", "Remove", ("[Outcome]", REPAIRED), ("[REINSTALLMODE]", "amus"),
             ("[REINSTALL]", "ALL"), ("EndDialog", "Return"), y=60, width=80)
    w.text("RepairText", 81, "Puts back files, registry entries and the entry in the start menu that are missing or "
           "damaged.", 24)
    w.button("Remove", LEFT, "R&emove", "Cancel", ("[Outcome]", REMOVED), ("[REMOVE]", "ALL"),
             ("EndDialog", "Return"), y=116, width=80)
    w.text("RemoveText", 137, "Takes the program off this computer. Users' profiles and settings stay.", 24)
    w.button("Cancel", CANCEL, "Cancel", "Repair", ("SpawnDialog", "CancelDlg"))

    w.dialog("ProgressDlg", "Cancel", "Cancel", "Cancel", attributes=VISIBLE | MINIMIZE | KEEP_MODELESS)
    w.heading("[ProductName] [ProductVersion]", "This takes a moment.")
    w.control("Action", "Text", LEFT, 100, TEXT_W, 12, "", SHOWN | NO_PREFIX | TRANSPARENT)
    w.control("Bar", "ProgressBar", LEFT, 116, TEXT_W, 12, "", PROGRESS_95 | VISIBLE)
    w.mappings += [("ProgressDlg", "Action", "ActionText", "Text"), ("ProgressDlg", "Bar", "SetProgress", "Progress")]
    w.button("Cancel", CANCEL, "Cancel", "", ("SpawnDialog", "CancelDlg"))

    for name, title, text, end in (
            ("ExitDlg", "Finished", "[Outcome]", "Return"),
            ("UserExitDlg", "Cancelled", "Nothing has been changed. You can start the installer again at any time.",
             "Exit"),
            ("FatalDlg", "Not done", "Something went wrong, and everything is as it was before. For the reason, start "
             "the installer with a log: msiexec /i PACKAGE /l*v setup.log", "Exit")):
        w.dialog(name, "Finish", "Finish", "Finish")
        w.heading(title, "[ProductName] [ProductVersion]")
        w.text("Text", 60, text, 60)
        w.button("Finish", CANCEL, "&Finish", "", ("EndDialog", end))
    w.dialog("CancelDlg", "No", "No", "No", 260, 85)
    w.control("Text", "Text", 20, 15, 220, 30, "Do you want to cancel? Nothing will be changed.", SHOWN | NO_PREFIX)
    w.button("Yes", 67, "&Yes", "No", ("EndDialog", "Exit"), y=57)
    w.button("No", 133, "&No", "Yes", ("EndDialog", "Return"), y=57)

    w.dialog("ErrorDlg", "ErrorText", "", "", 270, 105, attributes=DIALOG | ERROR_DIALOG)
    w.control("ErrorText", "Text", 15, 10, 240, 60, "", SHOWN | NO_PREFIX)
    for name, caption, x in (("A", "Cancel", 5), ("C", "Cancel", 70), ("I", "&Ignore", 135), ("N", "&No", 5),
                             ("O", "OK", 100), ("R", "&Retry", 200), ("Y", "&Yes", 70)):
        w.button(name, x, caption, "", ("EndDialog", {"A": "ErrorAbort", "C": "ErrorCancel", "I": "ErrorIgnore",
                                                       "N": "ErrorNo", "O": "ErrorOk", "R": "ErrorRetry",
                                                       "Y": "ErrorYes"}[name]), y=80)
    return w
