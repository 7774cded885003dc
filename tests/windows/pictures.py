"""Pictures of everything that the program shows, at the resolution given in dots per inch; see pictures.sh."""

import os
import subprocess
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent / "lib"))
from desk import Desk, setColours, silentHost  # noqa: E402
from peers import DemonstrationHost  # noqa: E402
from program import ROOT, netProfile, waitFor, writeIni, writeProfiles  # noqa: E402

DPI = int(sys.argv[1])
SCHEME = os.environ.get("QXTERM_COLOURS", "")
FOLDER = ROOT / "build" / "shots" / "desk" / (f"{DPI}-{SCHEME}" if SCHEME else str(DPI))
# What Wine's window manager puts around a window.
BORDER, CAPTION = 4, 26


def setResolution():
    for key in (r"HKCU\Control Panel\Desktop", r"HKCU\Software\Wine\Fonts",
                r"HKLM\System\CurrentControlSet\Hardware Profiles\Current\Software\Fonts"):
        subprocess.run([os.environ["WINE"], "reg", "add", key, "/v", "LogPixels", "/t", "REG_DWORD", "/d", str(DPI),
                        "/f"], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def settled(crop):
    """The picture of a part of the display once two in a row are alike, but for what blinks."""
    last = None
    end = time.monotonic() + 2
    while True:
        now = subprocess.run(["import", "-silent", "-window", "root", "-crop", crop, "+repage", "png:-"], check=True,
                             capture_output=True).stdout
        if now == last or time.monotonic() > end:
            return now
        last = now
        time.sleep(0.15)


def keep(name, left, top, width, height):
    left, top = max(left - BORDER, 0), max(top - CAPTION, 0)
    (FOLDER / f"{name}.png").write_bytes(settled(f"{width + 2 * BORDER}x{height + CAPTION + BORDER}+{left}+{top}"))


def shootForm(desk, form, name):
    desk.dialog(form)
    keep(name, *desk.ask("places")[form]["place"])


def shootMain(desk, name):
    keep(name, *desk.ask("places")["frmterm"]["place"])


def shootBox(desk, text, name, button="OK"):
    box = desk.messageBox(text)
    keep(name, *box["place"])
    if button == "OK":
        desk.key("Return")
    else:
        desk.clickButton(box, button)
    waitFor(lambda: text not in "".join(desk.boxes()), f"the box {text!r} is gone")


def splash():
    writeIni({"Settings": {}})
    with Desk(waiting=False) as desk:
        def shown():
            done = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "qxterm-probe"],
                                  capture_output=True, text=True)
            return done.stdout.split()

        window = waitFor(shown, "the splash is shown", 60)[-1]
        time.sleep(1)
        done = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window], check=True, capture_output=True,
                              text=True)
        place = dict(line.split("=") for line in done.stdout.split())
        keep("splash", *(int(place[key]) for key in ("X", "Y", "WIDTH", "HEIGHT")))
        desk.waitStart()
        shootMain(desk, "main")
        for letter, name in zip("pech", ("profile-empty", "edit", "connection", "help")):
            desk.openMenu(letter)
            shootMain(desk, f"menu-{name}")
            desk.closeMenu()
        desk.menu("h", "a")
        shootForm(desk, "frmSplash", "about")
        desk.key("Return")
        desk.gone("frmSplash")
        desk.menu("p", "o")
        shootForm(desk, "frmprof", "open-empty")
        desk.key("Escape")


def options(desk):
    for letter, name in (("n", "network"), ("h", "ssh"), ("s", "serial"), ("m", "modem")):
        desk.menu("c", "o")
        desk.dialog("frmOptions")
        desk.key("alt+" + letter)
        shootForm(desk, "frmOptions", f"options-{name}")
        desk.key("Escape")
        desk.gone("frmOptions")
    desk.menu("c", "o")
    desk.dialog("frmOptions")
    for name in ("modem-commands", "time-out", "font-sizes"):
        desk.key("ctrl+Tab")
        shootForm(desk, "frmOptions", f"options-{name}")
    desk.key("ctrl+Tab")
    for letter, size in zip("sl", ("small", "large")):
        desk.key("ctrl+shift+Tab", "alt+" + letter)
        shootForm(desk, "frmOptions", f"options-font-sizes-{size}")
        desk.key("ctrl+Tab")
    desk.key("ctrl+Tab", "ctrl+Tab")
    desk.key("alt+c")
    desk.fill("0")
    desk.key("Return")
    shootBox(desk, "Connection timeout must", "box-time-out")
    desk.fill("45")
    desk.key("ctrl+shift+Tab", "ctrl+shift+Tab", "alt+e")
    desk.fill("65536")
    desk.key("Return")
    desk.waitBoxTitle("Bad Network Port")
    keep("box-port", *next(w["place"] for w in desk.ask("windows") if w["title"] == "Bad Network Port"))
    desk.key("Return")
    desk.dialog("frmOptions")
    desk.key("Escape")
    desk.gone("frmOptions")


def dialogs(host, silent):
    names = ["demo", "office", "laboratory", "warehouse2", "nobody"]
    writeProfiles({"demo": netProfile(host), "office": netProfile(host), "laboratory": netProfile(host),
                   "warehouse2": netProfile(silent), "nobody": {"connect": "net"}},
                  Order="demo laboratory office warehouse2 ", timeout=30)
    with Desk() as desk:
        desk.openMenu("p")
        shootMain(desk, "menu-profile")
        desk.closeMenu()
        desk.menu("p", "o")
        desk.dialog("frmprof")
        shootForm(desk, "frmprof", "open")
        desk.key("Down")
        shootForm(desk, "frmprof", "open-chosen")
        desk.key("Escape")
        desk.gone("frmprof")
        desk.menu("p", "a")
        shootForm(desk, "frmprof", "save-as")
        desk.type(names[1])
        desk.key("Return")
        shootBox(desk, "exists", "box-replace", "No")
        desk.key("Escape")
        desk.gone("frmprof")
        options(desk)
        # A status dialog that stays.
        desk.menu("p", "4")
        shootForm(desk, "frmConn", "status")
        desk.key("Escape")
        desk.gone("frmConn")
        desk.menu("c", "o")
        desk.dialog("frmOptions")
        desk.key("alt+a")
        desk.fill("a.host.with.a.very.long.name.that.does.not.fit.into.the.dialog.of.the.terminal.emulator.example.com")
        desk.key("Return")
        desk.gone("frmOptions")
        desk.menu("c", "c")
        shootForm(desk, "frmConn", "status-long")
        desk.key("Escape")
        desk.gone("frmConn")
        desk.menu("p", "2")
        shootBox(desk, "Save changes", "box-save", "No")
        desk.waitText("name")
        desk.gone("frmConn")
        shootMain(desk, "session")
        desk.openMenu("c")
        shootMain(desk, "session-menu")
        desk.closeMenu()
        desk.drag((10, 3), (40, 8))
        shootMain(desk, "session-selection")
        desk.close()
        shootBox(desk, "A connection is active", "box-exit", "No")
        desk.menu("c", "d")
        desk.waitState("g_bConnectActive", False)


def failure():
    writeIni({"Settings": {"Window": "nonsense"}})
    with Desk(waiting=False) as desk:
        box = desk.messageBox("readIniFile", 60)
        keep("box-error", *box["place"])


FOLDER.mkdir(parents=True, exist_ok=True)
setResolution()
if SCHEME:
    setColours(SCHEME)
splash()
with DemonstrationHost() as host, silentHost() as silent:
    dialogs(host.port, silent)
failure()
