"""The X display, asked directly: pixels through shared memory, keys, windows that appear. A look at the window costs well
under a millisecond, so that looking often does not disturb what is measured."""

import ctypes
import re
import subprocess
import time
from ctypes import POINTER, Structure, Union, byref, c_char_p, c_int, c_long, c_uint, c_ulong, c_void_p

from program import Failure, waitFor

PIXEL = 4  # bytes, at a depth of 24 bits
ZPIXMAP = 2
ALL_PLANES = c_ulong(-1).value
SUBSTRUCTURE_NOTIFY = 1 << 19
MAP_NOTIFY = 19
ANY_KIND = 0
RIGHT_BUTTON = 3
IPC_PRIVATE = 0
IPC_CREATE = 0o1000
IPC_REMOVE = 0
OWNER_ONLY = 0o600


class _Segment(Structure):
    _fields_ = [("shmseg", c_ulong), ("shmid", c_int), ("shmaddr", c_void_p), ("readOnly", c_int)]


class _Image(Structure):
    """The beginning of an XImage."""

    _fields_ = [("width", c_int), ("height", c_int), ("xoffset", c_int), ("format", c_int), ("data", c_void_p)]


class _MapEvent(Structure):
    _fields_ = [("type", c_int), ("serial", c_ulong), ("send_event", c_int), ("display", c_void_p), ("event", c_ulong),
                ("window", c_ulong), ("override_redirect", c_int)]


class _Event(Union):
    _fields_ = [("type", c_int), ("map", _MapEvent), ("room", c_long * 24)]


def _library(name, **results):
    """results: what a function returns, where that is no int."""
    library = ctypes.CDLL(name)
    for function, result in results.items():
        getattr(library, function).restype = result
    return library


_x = _library("libX11.so.6", XOpenDisplay=c_void_p, XDefaultRootWindow=c_ulong, XDefaultVisual=c_void_p,
              XInternAtom=c_ulong, XStringToKeysym=c_ulong)
_extensions = _library("libXext.so.6", XShmCreateImage=POINTER(_Image))
_test = _library("libXtst.so.6")
_c = _library("libc.so.6", shmat=c_void_p)
_c.memcmp.argtypes = [c_void_p, c_void_p, ctypes.c_size_t]


@ctypes.CFUNCTYPE(c_int, c_void_p, c_void_p)
def _ignored(_display, _error):
    """A window may be gone before it is asked about; that shall not end the process."""
    return 0


_x.XSetErrorHandler(_ignored)


class Display:
    """One connection to the display; one thread uses it. Use it in a with statement."""

    def __enter__(self):
        self.handle = c_void_p(_x.XOpenDisplay(None))
        if not self.handle:
            raise Failure("there is no display")
        self.root = c_ulong(_x.XDefaultRootWindow(self.handle))
        return self

    def __exit__(self, *_):
        _x.XCloseDisplay(self.handle)

    # --- windows -----------------------------------------------------------------------------------------------------

    def _property(self, window, name):
        """A property's numbers, or its bytes, of a window that may be gone."""
        atom = c_ulong(_x.XInternAtom(self.handle, c_char_p(name), 0))
        kind, form, count, left, data = c_ulong(), c_int(), c_ulong(), c_ulong(), c_void_p()
        _x.XGetWindowProperty(self.handle, window, atom, c_long(0), c_long(4096), 0, c_ulong(ANY_KIND), byref(kind),
                              byref(form), byref(count), byref(left), byref(data))
        if not data:
            return []
        # Numbers of 32 bits come as longs.
        item = c_ulong if form.value == 32 else ctypes.c_ubyte
        found = ctypes.cast(data, POINTER(item))[:count.value]
        _x.XFree(data)
        return found

    def windowOf(self, process, title):
        """The window of a process, one that the window manager knows, whose title fits a regular expression; or None."""
        for window in self._property(self.root, b"_NET_CLIENT_LIST"):
            name = bytes(self._property(c_ulong(window), b"WM_NAME")).decode("latin-1")
            if self._property(c_ulong(window), b"_NET_WM_PID") == [process] and re.search(title, name):
                return window
        return None

    def place(self, window):
        """Left, top, width and height of a window on the display."""
        parent, left, top = c_ulong(), c_int(), c_int()
        width, height, border, depth = c_uint(), c_uint(), c_uint(), c_uint()
        _x.XGetGeometry(self.handle, c_ulong(window), byref(parent), byref(left), byref(top), byref(width),
                        byref(height), byref(border), byref(depth))
        _x.XTranslateCoordinates(self.handle, c_ulong(window), self.root, 0, 0, byref(left), byref(top), byref(parent))
        return left.value, top.value, width.value, height.value

    def watchWindows(self):
        """From now on windowAppears sees the windows that no window manager frames, such as menus."""
        _x.XSelectInput(self.handle, self.root, c_long(SUBSTRUCTURE_NOTIFY))
        _x.XSync(self.handle, 1)

    def windowAppears(self, seconds):
        """Waits for such a window; the moment at which it came, or None."""
        event = _Event()
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            while _x.XPending(self.handle):
                _x.XNextEvent(self.handle, byref(event))
                if event.type == MAP_NOTIFY and event.map.override_redirect:
                    return time.monotonic()
            time.sleep(0.0005)
        return None

    # --- keyboard and mouse ------------------------------------------------------------------------------------------

    def key(self, *names):
        """Presses the keys in turn and releases them in the opposite order: ("Alt_L", "c"). The moment before."""
        codes = [_x.XKeysymToKeycode(self.handle, c_ulong(_x.XStringToKeysym(c_char_p(name.encode())))) for name in names]
        began = time.monotonic()
        for code in codes:
            _test.XTestFakeKeyEvent(self.handle, c_uint(code), 1, c_ulong(0))
        for code in reversed(codes):
            _test.XTestFakeKeyEvent(self.handle, c_uint(code), 0, c_ulong(0))
        _x.XFlush(self.handle)
        return began

    def rightClick(self, left, top):
        """At a place of the display. The moment before."""
        _test.XTestFakeMotionEvent(self.handle, -1, left, top, c_ulong(0))
        began = time.monotonic()
        for down in (1, 0):
            _test.XTestFakeButtonEvent(self.handle, c_uint(RIGHT_BUTTON), down, c_ulong(0))
        _x.XFlush(self.handle)
        return began


class Area:
    """A part of the display that is looked at again and again. Use it in a with statement."""

    def __init__(self, display, left, top, width, height):
        self._display, self._left, self._top = display, left, top
        self._width, self._height = width, height

    def __enter__(self):
        self._size = self._width * self._height * PIXEL
        # Two pictures lie in shared memory: the last one, and the one before it to compare with.
        self._pictures = [self._picture(), self._picture()]
        self._take()
        return self

    def __exit__(self, *_):
        for segment, image in self._pictures:
            _extensions.XShmDetach(self._display.handle, byref(segment))
            _x.XSync(self._display.handle, 0)
            _x.XFree(image)
            _c.shmdt(c_void_p(segment.shmaddr))

    def _picture(self):
        handle, segment = self._display.handle, _Segment()
        visual = c_void_p(_x.XDefaultVisual(handle, 0))
        image = _extensions.XShmCreateImage(handle, visual, c_uint(24), ZPIXMAP, None, byref(segment),
                                            c_uint(self._width), c_uint(self._height))
        segment.shmid = _c.shmget(IPC_PRIVATE, ctypes.c_size_t(self._size), IPC_CREATE | OWNER_ONLY)
        segment.shmaddr = _c.shmat(segment.shmid, None, 0)
        image.contents.data = segment.shmaddr
        if not _extensions.XShmAttach(handle, byref(segment)):
            raise Failure("the display shares no memory")
        _x.XSync(handle, 0)
        # It goes away with the last of the two that have attached it.
        _c.shmctl(segment.shmid, IPC_REMOVE, None)
        return segment, image

    def _take(self):
        _, image = self._pictures[0]
        if not _extensions.XShmGetImage(self._display.handle, self._display.root, image, self._left, self._top,
                                        c_ulong(ALL_PLANES)):
            raise Failure("the display gives no picture")

    def part(self, left, top, width, height):
        """A part of it, as an area of its own."""
        return Area(self._display, self._left + left, self._top + top, width, height)

    def changedPart(self):
        """The rectangle (left, top, width, height) around all in which a new picture differs from the last one."""
        old = self.pixels()
        self.changed()
        new, line = self.pixels(), self._width * PIXEL
        places = [(row, at // PIXEL) for row in range(self._height)
                  if (a := old[row * line:(row + 1) * line]) != (b := new[row * line:(row + 1) * line])
                  for at in range(line) if a[at] != b[at]]
        if not places:
            raise Failure("nothing has changed in the window")
        rows, columns = [row for row, _ in places], [column for _, column in places]
        return min(columns), min(rows), max(columns) - min(columns) + 1, max(rows) - min(rows) + 1

    def changed(self):
        """Whether a new picture differs from the last one."""
        self._pictures.reverse()
        self._take()
        (new, _), (old, _) = self._pictures
        return _c.memcmp(new.shmaddr, old.shmaddr, self._size) != 0

    def pixels(self):
        """The last picture."""
        segment, _ = self._pictures[0]
        return ctypes.string_at(segment.shmaddr, self._size)


def moveWindow(window, left, top):
    subprocess.run(["xdotool", "windowmove", "--sync", str(window), str(left), str(top)], check=True)


def activate(window):
    """Gives a window the keyboard."""

    def focused():
        found = subprocess.run(["xdotool", "getwindowfocus"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        if found.stdout.strip() == str(window):
            return True
        # Asked for once, it may get lost while the program that has the keyboard is about to lose it.
        subprocess.run(["xdotool", "windowactivate", str(window)], stderr=subprocess.DEVNULL)
        return False

    waitFor(focused, "the window gets the keyboard", pause=0.1)
