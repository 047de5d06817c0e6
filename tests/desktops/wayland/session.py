"""A session of a real Wayland compositor without a screen: keys are pressed below it, programs with a
text field run in it, and what stands in the field is read back. Everything runs as the user nobody
where the tests run as root, because compositors refuse root."""
import os
import shutil
import signal
import subprocess
import time

from gnome import begin_gnome
from waiting import wait_until

HERE = os.path.dirname(os.path.abspath(__file__))
SHIFT = 42
# Characters by their keys of a US keyboard, with whether Shift is held.
KEYS = {" ": (57, False), "\n": (28, False)}
for first, plain, shifted in (
    (2, "1234567890-=", "!@#$%^&*()_+"),
    (16, "qwertyuiop[]", "QWERTYUIOP{}"),
    (30, "asdfghjkl;'`", 'ASDFGHJKL:"~'),
    (43, "\\", "|"),
    (44, "zxcvbnm,./", "ZXCVBNM<>?"),
):
    for offset, (one, other) in enumerate(zip(plain, shifted)):
        KEYS[one] = (first + offset, False)
        KEYS[other] = (first + offset, True)

DESKTOPS = {"kwin": "KDE", "gnome": "GNOME", "gnome-x11": "GNOME"}
TERMINALS = {
    "foot": ["foot"],
    "konsole": ["konsole", "--nofork", "-e"],
    "gnome-terminal": ["gnome-terminal", "--wait", "--"],
    "kgx": ["kgx", "-e"],
}
# They take keys some time after their window is there.
SLOW_TO_START = ("chromium", "firefox", "writer")
FIREFOX_SETTINGS = """user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("browser.startup.homepage_override.mstone", "ignore");
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("browser.aboutwelcome.enabled", false);
user_pref("security.fileuri.strict_origin_policy", false);
"""


class Session:
    """`room` is a folder that nobody may read, with the parts that `check-desktops` lays there.
    `corrected`: with Tessarok, or as a control with Fcitx or IBus alone."""

    def __init__(self, room, compositor, corrected):
        self.room = room
        self.compositor = compositor
        self.corrected = corrected
        # In GNOME's shell, as far as it has one.
        self.has_extension = True
        self.home = os.path.join(room, "session")
        shutil.rmtree(self.home, ignore_errors=True)
        os.makedirs(os.path.join(self.home, "run"), 0o700)
        self.text_file = os.path.join(self.home, "text")
        self.processes = []
        self.environment = {
            "PATH": "/usr/bin:/bin:/usr/games",
            "HOME": self.home,
            "XDG_RUNTIME_DIR": os.path.join(self.home, "run"),
            "XDG_CONFIG_HOME": os.path.join(self.home, "config"),
            "XDG_DATA_HOME": os.path.join(self.home, "data"),
            "XDG_CACHE_HOME": os.path.join(self.home, "cache"),
            "XDG_SESSION_TYPE": "wayland",
            "XDG_CURRENT_DESKTOP": DESKTOPS.get(compositor, compositor),
            "LANG": "C.UTF-8",
            "NO_AT_BRIDGE": "1",
            "GTK_A11Y": "none",
            "LIBGL_ALWAYS_SOFTWARE": "1",
            "GDK_BACKEND": "wayland",
            "QT_QPA_PLATFORM": "wayland",
            "GSK_RENDERER": "cairo",
            "MOZ_ENABLE_WAYLAND": "1",
            "MOZ_DISABLE_CONTENT_SANDBOX": "1",
            "FCITX_DATA_DIRS": os.path.join(room, "fcitx") + ":/usr/share/fcitx5",
            "TESSAROK_RES": os.path.join(room, "words"),
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
        }
        groups = "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=keyboard-ru\n\n"
        for number, layout in enumerate(("keyboard-us", "keyboard-ru")):
            groups += f"[Groups/0/Items/{number}]\nName={layout}\nLayout=\n\n"
        self.write("config/fcitx5/profile", groups + "[GroupOrder]\n0=Default\n")

    # Files and processes.

    def write(self, name, text):
        path = os.path.join(self.home, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as out:
            out.write(text)
        return path

    def own(self):
        if os.getuid() == 0:
            subprocess.run(["chown", "-R", "nobody:nogroup", self.home], check=True)

    def start(self, name, command, environment=None, **pipes):
        self.own()
        if os.getuid() == 0:
            user = ["--reuid", "nobody", "--regid", "nogroup", "--clear-groups"]
            command = ["setpriv", *user, "--pdeathsig", "KILL", "--", *command]
        with open(os.path.join(self.home, name + ".log"), "ab") as log:
            process = subprocess.Popen(
                command,
                env={**self.environment, **(environment or {})},
                cwd=self.home,
                stdin=pipes.get("stdin", subprocess.DEVNULL),
                stdout=pipes.get("stdout", log),
                stderr=log,
                start_new_session=True,
            )
        self.processes.append(process)
        return process

    def ask(self, *command):
        """What a command of the session's person answers."""
        process = self.start("ask", command, stdout=subprocess.PIPE)
        try:
            answer = process.communicate(timeout=30)[0].decode()
        except subprocess.TimeoutExpired:
            process.kill()
            raise
        self.processes.remove(process)
        return answer.strip()

    def log(self, name):
        try:
            with open(os.path.join(self.home, name + ".log"), errors="replace") as log:
                return log.read()
        except OSError:
            return ""

    def stop(self):
        for number in (signal.SIGTERM, signal.SIGKILL):
            for process in reversed(self.processes):
                if process.poll() is None:
                    os.killpg(process.pid, number)
            time.sleep(0.3)
        for process in self.processes:
            process.wait()

    # The session.

    def begin(self):
        bus = self.start(
            "bus",
            ["dbus-daemon", "--session", "--nofork", "--print-address=1"],
            stdout=subprocess.PIPE,
        )
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        if self.compositor.startswith("gnome"):
            return begin_gnome(self)
        getattr(self, "begin_" + self.compositor)()
        # Some programs are started by the bus, which is older than the compositor.
        self.ask("dbus-update-activation-environment", "WAYLAND_DISPLAY")
        self.start_keys("keys")
        # The first key makes a keyboard known to the input method.
        time.sleep(2)
        self.press_shift()

    def press_shift(self):
        self.key(SHIFT, 1)
        self.key(SHIFT, 0)
        self.flush()

    def start_keys(self, program):
        self.keys = self.start(
            "keys",
            [os.path.join(self.room, program)],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
        )
        self.flush()

    def fcitx(self):
        return ["fcitx5"] + ([] if self.corrected else ["--disable=tessarok"])

    def begin_kwin(self):
        method = self.write("fcitx", "#!/bin/sh\nexec " + " ".join(self.fcitx()) + "\n")
        os.chmod(method, 0o755)
        # Decorations are of no interest here, and one of them ended KWin in a session like this.
        self.write("config/kwinrc", "[org.kde.kdecoration2]\nNoPlugin=true\n")
        self.start(
            "kwin",
            [os.path.join(self.room, "kwin_wayland"), "--virtual", "--no-lockscreen"]
            + ["--no-global-shortcuts", "--no-kactivities", "--width", "1024", "--height", "768"]
            + ["--socket", "wayland-0", "--inputmethod", method],
            {"KWIN_WAYLAND_NO_PERMISSION_CHECKS": "1", "QT_QPA_PLATFORM": ""},
        )
        self.wait_for_socket()

    def begin_sway(self):
        config = self.write(
            "sway.conf",
            "output * resolution 1024x768\ndefault_border none\nxwayland disable\n",
        )
        self.environment.update(
            {
                "WLR_BACKENDS": "headless",
                "WLR_LIBINPUT_NO_DEVICES": "1",
                "WLR_RENDERER": "pixman",
                "QT_IM_MODULE": "fcitx",
            }
        )
        self.start("sway", ["sway", "-c", config])
        self.wait_for_socket()
        self.start("fcitx5", self.fcitx())

    def wait_for_socket(self):
        run = self.environment["XDG_RUNTIME_DIR"]

        def find():
            for name in os.listdir(run):
                if name.startswith("wayland-") and not name.endswith(".lock"):
                    self.environment["WAYLAND_DISPLAY"] = name
                    return True
            return False

        if not wait_until(find, 30):
            raise RuntimeError(self.compositor + " does not start:\n" + self.log(self.compositor))

    # Programs.

    def open(self, program):
        """Opens a program, whose text goes into the text file. With `+fcitx` behind its name it uses Fcitx's
        part of its toolkit, not the compositor's protocol."""
        program, _, module = program.partition("+")
        if module:
            self.environment.update({"GTK_IM_MODULE": module, "QT_IM_MODULE": module})
        if program in ("gtk3", "gtk4"):
            entry = os.path.join(self.room, "gtk-entry")
            self.start(program, [entry, program[-1], self.text_file])
        elif program in ("qt5", "qt6"):
            self.start(program, [os.path.join(self.room, "qt-entry"), self.text_file, program[-1]])
        elif program == "writer":
            profile = os.path.join(self.home, "writer")
            command = [os.path.join(self.room, "writer"), self.text_file, profile]
            self.start(program, command, {"SAL_USE_VCLPLUGIN": "gtk3"})
        elif program in TERMINALS:
            script = self.write("cat", f"#!/bin/sh\nexec cat > {self.text_file}\n")
            os.chmod(script, 0o755)
            self.start(program, TERMINALS[program] + [script])
        else:
            self.open_browser(program)
        if not wait_until(lambda: os.path.exists(self.text_file), 120):
            raise RuntimeError(program + " does not open:\n" + self.log(program)[-2000:])
        time.sleep(4 if program in SLOW_TO_START else 1.5)

    def open_browser(self, program):
        page = os.path.join(self.home, "page.html")
        self.start("page", [os.path.join(self.room, "browser-page"), self.home])
        if not wait_until(lambda: os.path.exists(page), 30):
            raise RuntimeError("there is no page:\n" + self.log("page"))
        if program == "chromium":
            self.start(
                program,
                ["chromium", "--user-data-dir=" + os.path.join(self.home, "chromium")]
                + ["--no-first-run", "--password-store=basic", "--disable-gpu", "--no-sandbox"]
                + ["--disable-background-networking", "--ozone-platform=wayland"]
                + ["--app=file://" + page],
            )
            return
        profile = os.path.dirname(self.write("firefox/user.js", FIREFOX_SETTINGS))
        self.start(
            program, ["firefox-esr", "--no-remote", "--profile", profile, "--kiosk", "file://" + page]
        )

    def text(self):
        try:
            with open(self.text_file, encoding="utf-8", errors="replace") as file:
                return file.read()
        except OSError:
            return ""

    # Keys.

    def key(self, code, is_down):
        self.keys.stdin.write(b"k %d %d\n" % (code, is_down))

    def flush(self):
        self.keys.stdin.write(b"f\n")
        self.keys.stdin.flush()
        if self.keys.stdout.readline() != b"ok\n":
            raise RuntimeError("no keys can be pressed: " + self.log("keys"))

    def type(self, text, milliseconds):
        """Types keys so far apart; Shift goes down and up as far from its key."""
        due = time.monotonic()

        def pause():
            nonlocal due
            self.flush()
            due = max(due + milliseconds / 1000, time.monotonic())
            time.sleep(max(0, due - time.monotonic()))

        for character in text:
            code, shift = KEYS[character]
            if shift:
                self.key(SHIFT, 1)
                pause()
            self.key(code, 1)
            self.key(code, 0)
            if shift:
                pause()
                self.key(SHIFT, 0)
            pause()

    def until_corrected(self):
        """Programs and Fcitx find each other in their own time."""
        for _ in range(10):
            before = self.text()
            self.type("ghbdtn\n", 15)
            endings = (before + "привет\n", before + "ghbdtn\n")
            wait_until(lambda: self.text() in endings, 3)
            if self.text() == endings[0] or not self.corrected and self.text() == endings[1]:
                time.sleep(0.3)
                return
        raise RuntimeError("nothing comes out as it should: " + repr(self.text()))
