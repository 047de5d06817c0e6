"""GNOME's shell as a session of `session.py`: without a screen, with a system bus and a login manager of
its own, and with Tessarok's engines as its input sources."""
import os
import shutil
import subprocess
import time

from waiting import wait_until

SYSTEM_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>system</type><listen>unix:path={socket}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>
"""
SETTINGS = """[org/gnome/desktop/input-sources]
sources={sources}
per-window=false

[org/gnome/shell]
welcome-dialog-last-shown-version='99'
enabled-extensions={extensions}

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/desktop/session]
idle-delay=uint32 0

[org/gnome/desktop/screensaver]
lock-enabled=false
"""
ENGINES = "[('ibus', 'tessarok:us'), ('ibus', 'tessarok:ru')]"
# GNOME 43 and 44, and later ones.
EXTENSIONS = ("tessarok-43@app.tessarok", "tessarok@app.tessarok")
OPTIONS = {
    "gnome": ["--headless", "--wayland", "--no-x11", "--virtual-monitor", "640x480"],
    "gnome-x11": ["--x11"],
}
ATTEMPTS = 6
KEY_ATTEMPTS = 4


def mock(session, name, bus, *service):
    session.start(name, ["/usr/bin/python3", "-m", "dbusmock", bus, *service])


def mock_display_manager(session):
    """Without one of a version that can unlock the shell has no lock screen."""
    name = "org.gnome.DisplayManager"
    path = "/org/gnome/DisplayManager/Manager"
    mock(session, "gdm", "--system", name, path, name + ".Manager")
    add = ["--method", "org.freedesktop.DBus.Mock.AddProperty", name + ".Manager", "Version", "<'46'>"]
    call = ["gdbus", "call", "--system", "--dest", name, "--object-path", path, *add]
    if not wait_until(lambda: session.ask(*call) == "()", 10):
        raise RuntimeError("there is no display manager")


def begin_gnome(session):
    environment = session.environment
    socket = os.path.join(environment["XDG_RUNTIME_DIR"], "system_bus")
    config = session.write("system.conf", SYSTEM_BUS.format(socket=socket))
    bus = session.start(
        "system-bus",
        ["dbus-daemon", "--config-file=" + config, "--nofork", "--print-address=1"],
        stdout=subprocess.PIPE,
    )
    bus.stdout.readline()
    environment["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=" + socket
    mock(session, "logind", "--system", "--template", "logind")
    manager = "org.gnome.SessionManager"
    mock(session, "manager", "--session", manager, "/org/gnome/SessionManager", manager)
    time.sleep(1.5)
    mock_display_manager(session)
    environment.update(
        {
            "GSETTINGS_BACKEND": "keyfile",
            "GNOME_SHELL_SESSION_MODE": "user",
            "XDG_SESSION_CLASS": "user",
            "XDG_SESSION_DESKTOP": "gnome",
            "XDG_SESSION_ID": "c1",
            # Not those of the system, in which another Tessarok may be.
            "IBUS_COMPONENT_PATH": os.path.join(session.room, "ibus"),
            "QT_IM_MODULE": "ibus",
        }
    )
    extensions = list(EXTENSIONS) if session.corrected and session.has_extension else "@as []"
    sources = ENGINES if session.corrected else "[('xkb', 'us')]"
    settings = SETTINGS.format(sources=sources, extensions=extensions)
    session.write("config/glib-2.0/settings/keyfile", settings)
    shutil.copytree(
        os.path.join(session.room, "shell-extension"),
        os.path.join(session.home, "data/gnome-shell/extensions"),
    )
    if session.compositor == "gnome-x11":
        start_x11(session)
    start_shell(session)
    leave_overview(session)


def start_x11(session):
    """An X server, and what a session of X11 has besides in its environment."""
    server = session.start(
        "x11", ["Xvfb", "-displayfd", "1", "-screen", "0", "800x600x24"], stdout=subprocess.PIPE
    )
    number = server.stdout.readline().decode().strip()
    session.environment.pop("WAYLAND_DISPLAY", None)
    session.environment.pop("MOZ_ENABLE_WAYLAND")
    session.environment.update(
        {
            "DISPLAY": ":" + number,
            "XDG_SESSION_TYPE": "x11",
            "GDK_BACKEND": "x11",
            "QT_QPA_PLATFORM": "xcb",
            "GTK_IM_MODULE": "ibus",
            "XMODIFIERS": "@im=ibus",
        }
    )


def start_shell(session):
    """It ends in some of its starts here, without a word of its own about it."""
    for _ in range(ATTEMPTS):
        shell = session.start("gnome", ["gnome-shell", *OPTIONS[session.compositor]])
        if session.compositor == "gnome":
            session.wait_for_socket()
        # A busy machine takes its time from the socket to the first key.
        for _ in range(KEY_ATTEMPTS):
            time.sleep(3)
            if shell.poll() is not None:
                break
            try:
                return session.start_keys("mutter-keys")
            except (OSError, RuntimeError):
                pass
        if shell.poll() is None:
            shell.kill()
            shell.wait()
        run = session.environment["XDG_RUNTIME_DIR"]
        for name in os.listdir(run):
            if name.startswith("wayland-"):
                os.remove(os.path.join(run, name))
    raise RuntimeError("GNOME's shell does not start:\n" + session.log("gnome")[-2000:])


def leave_overview(session):
    """The session begins in the overview, which takes all keys. The first key only makes a keyboard."""
    session.press_shift()
    # Before that the overview would come again.
    wait_until(lambda: "GNOME Shell started at" in session.log("gnome"), 30)
    time.sleep(1)
    session.ask(
        *["gdbus", "call", "--session", "--dest", "org.gnome.Shell"],
        *["--object-path", "/org/gnome/Shell"],
        *["--method", "org.freedesktop.DBus.Properties.Set"],
        *["org.gnome.Shell", "OverviewActive", "<false>"],
    )
    time.sleep(1)
