"""A display without a screen, a window to type into, and hands."""

import ctypes
import os
import subprocess
import sys
import tempfile
import time

PATIENCE = 60
# Keys by their place, as XKB numbers them.
KEYCODES = dict(zip("qwertyuiop", range(24, 34)))
KEYCODES.update(zip("asdfghjkl", range(38, 47)))
KEYCODES.update(zip("zxcvbnm", range(52, 59)))
KEYCODES[" "] = 65
ENTRY = """
import gi, sys
gi.require_version("Gtk", "3.0")
gi.require_version("GdkX11", "3.0")
from gi.repository import GdkX11, Gtk
window, entry = Gtk.Window(), Gtk.Entry()
window.add(entry)
entry.connect("changed", lambda entry: print("text", entry.get_text(), flush=True))
window.show_all()
entry.grab_focus()
print("window", window.get_window().get_xid(), flush=True)
Gtk.main()
"""


class DeviceInfo(ctypes.Structure):
    """What the X library tells of an input device."""

    _fields_ = [("id", ctypes.c_ulong), ("type", ctypes.c_ulong), ("name", ctypes.c_char_p),
                ("classes", ctypes.c_int), ("use", ctypes.c_int), ("class_info", ctypes.c_void_p)]


def wait_until(is_so, what):
    end = time.monotonic() + PATIENCE
    while not is_so():
        assert time.monotonic() < end, what
        time.sleep(0.05)


class Desktop:
    def __init__(self, home=None):
        """`home` is that of a session before."""
        self.home = home or tempfile.mkdtemp(dir=os.environ.get("AUTOPKGTEST_TMP"))
        runtime = os.path.join(self.home, "run")
        os.makedirs(runtime, 0o700, exist_ok=True)
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("XDG_", "WAYLAND_", "TESSAROK_"))}
        self.environment.update(HOME=self.home, XDG_RUNTIME_DIR=runtime, LC_ALL="C.UTF-8",
                                GDK_BACKEND="x11", NO_AT_BRIDGE="1")
        self.programs = []

    def start(self, command, **options):
        program = subprocess.Popen(command, env=self.environment, **options)
        self.programs.append(program)
        return program

    def start_display(self):
        reading, writing = os.pipe()
        self.start(["Xvfb", "-displayfd", str(writing), "-screen", "0", "800x600x24"],
                   pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        self.environment["DISPLAY"] = ":" + os.fdopen(reading).readline().strip()
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.xtest = ctypes.CDLL("libXtst.so.6")
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(
            self.x11.XOpenDisplay(self.environment["DISPLAY"].encode()))
        assert self.display, "the display cannot be opened"
        self.keyboard = self.open_keyboard("Xvfb keyboard")

    def start_bus(self):
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address"],
                         stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()

    def is_named(self, name):
        """Whether somebody on the bus has the name."""
        answer = subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
             "org.freedesktop.DBus.NameHasOwner", "string:" + name],
            env=self.environment, capture_output=True, text=True, check=True)
        return "true" in answer.stdout

    def open_keyboard(self, name):
        """A real one: keys of the server's test keyboard are those of programs, which a corrector
        leaves alone."""
        xi = ctypes.CDLL("libXi.so.6")
        xi.XListInputDevices.restype = ctypes.POINTER(DeviceInfo)
        xi.XOpenDevice.restype = ctypes.c_void_p
        count = ctypes.c_int()
        devices = xi.XListInputDevices(self.display, ctypes.byref(count))
        found = [devices[i].id for i in range(count.value) if devices[i].name == name.encode()]
        assert len(found) == 1, f"the display has {len(found)} keyboards named {name}"
        return ctypes.c_void_p(xi.XOpenDevice(self.display, ctypes.c_ulong(found[0])))

    def open_entry(self):
        self.log = os.path.join(self.home, "entry")
        self.start([sys.executable, "-c", ENTRY], stdout=open(self.log, "w"))
        wait_until(lambda: self.said("window"), "no window appears")
        window = ctypes.c_ulong(int(self.said("window")))
        time.sleep(1)
        revert_to_parent, now = 2, 0
        self.x11.XSetInputFocus(self.display, window, revert_to_parent, now)
        self.x11.XSync(self.display, 0)
        time.sleep(1)

    def said(self, what):
        """The last that the window has said of its number or its text."""
        with open(self.log, encoding="utf-8") as log:
            lines = [line.rstrip("\n") for line in log if line.startswith(what + " ")]
        return lines[-1][len(what) + 1:] if lines else ""

    def type(self, keys):
        for key in keys:
            for is_press in (1, 0):
                self.xtest.XTestFakeDeviceKeyEvent(self.display, self.keyboard, KEYCODES[key],
                                                   is_press, None, 0, ctypes.c_ulong(0))
                self.x11.XSync(self.display, 0)
                time.sleep(0.05)

    def expect(self, text):
        try:
            wait_until(lambda: self.said("text") == text, "")
        except AssertionError:
            raise AssertionError(f"{self.said('text')!r}, and not {text!r}") from None
        print("in the window:", repr(text))

    def end(self):
        for program in reversed(self.programs):
            program.terminate()
        for program in reversed(self.programs):
            program.wait()
