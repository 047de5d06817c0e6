"""Headless Chromium and Firefox, driven through their own input: the keys go the way of a person's,
not that of a script in the page. With nothing but what Python and the browsers bring: Chromium by the
DevTools protocol over a pipe, Firefox by Marionette over a socket.
"""

import base64
import json
import os
import shutil
import socket
import subprocess
import tempfile
import time

PATIENCE = 60  # seconds; the machine may have much else to do

# The keys of a US keyboard: what a key types, plain and with Shift, and its name.
_ROWS = [
    ("`1234567890-=", "~!@#$%^&*()_+", ["Backquote", *(f"Digit{d}" for d in "1234567890"), "Minus", "Equal"]),
    ("qwertyuiop[]\\", "QWERTYUIOP{}|", [*(f"Key{c}" for c in "QWERTYUIOP"), "BracketLeft", "BracketRight",
                                       "Backslash"]),
    ("asdfghjkl;'", "ASDFGHJKL:\"", [*(f"Key{c}" for c in "ASDFGHJKL"), "Semicolon", "Quote"]),
    ("zxcvbnm,./", "ZXCVBNM<>?", [*(f"Key{c}" for c in "ZXCVBNM"), "Comma", "Period", "Slash"]),
    (" ", " ", ["Space"]),
]
US_KEYS = {}
for _plain, _shifted, _names in _ROWS:
    for _i, _name in enumerate(_names):
        US_KEYS[_shifted[_i]] = (_name, True)
        US_KEYS[_plain[_i]] = (_name, False)

_VIRTUAL = {"Backquote": 192, "Minus": 189, "Equal": 187, "BracketLeft": 219, "BracketRight": 221,
            "Backslash": 220, "Semicolon": 186, "Quote": 222, "Comma": 188, "Period": 190, "Slash": 191,
            "Space": 32, "Backspace": 8, "Enter": 13, "Tab": 9, "Escape": 27, "ArrowLeft": 37,
            "ArrowRight": 39, "Home": 36, "End": 35, "Delete": 46}
_FIREFOX = {"Backspace": "\ue003", "Tab": "\ue004", "Enter": "\ue006", "Escape": "\ue00c", "End": "\ue010",
            "Home": "\ue011", "ArrowLeft": "\ue012", "ArrowRight": "\ue014", "Delete": "\ue017", "Space": " "}
_CONTROL = {"\b": "Backspace", "\n": "Enter", "\t": "Tab"}
_MODIFIERS = {"Alt": (1, "\ue00a"), "Control": (2, "\ue009"), "Meta": (4, "\ue03d"), "Shift": (8, "\ue008")}


def key_of(character):
    """The key that types a character of the US layout, and whether with Shift."""
    if character in _CONTROL:
        return _CONTROL[character], False
    return US_KEYS[character]


def character_of(name, shift=False):
    for character, key in US_KEYS.items():
        if key == (name, shift):
            return character
    return None


class BrowserError(Exception):
    pass


class Browser:
    """What both have in common. Everything is done when a call returns."""

    def __init__(self):
        self.profile = tempfile.mkdtemp(prefix="tessarok-page-")

    def wait_for(self, script, patience=PATIENCE):
        """Waits until an expression is true."""
        end = time.monotonic() + patience
        while True:
            value = self.evaluate(script)
            if value:
                return value
            if time.monotonic() > end:
                raise BrowserError(f"{self.name}: waited {patience} s for {script}")
            time.sleep(0.02)

    def remove_profile(self):
        shutil.rmtree(self.profile, ignore_errors=True)


class Chromium(Browser):
    name = "Chromium"

    def __init__(self, language="en-US"):
        super().__init__()
        here, browser_in = os.pipe()
        browser_out, there = os.pipe()

        def place():
            # The browser reads from 3 and writes to 4; first out of the way of these two.
            read, write = os.dup(here), os.dup(there)
            os.dup2(read, 3)
            os.dup2(write, 4)

        self._process = subprocess.Popen(
            ["chromium", "--headless=new", "--remote-debugging-pipe", "--no-sandbox", "--no-first-run",
             f"--user-data-dir={self.profile}", f"--lang={language}", f"--accept-lang={language}",
             "--disable-gpu", "--disable-dev-shm-usage", "--disable-background-networking",
             "--disable-component-update", "--force-color-profile=srgb", "--window-size=1100,900",
             "--hide-scrollbars", "about:blank"],
            preexec_fn=place, close_fds=False, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env={**os.environ, "LANGUAGE": language.replace("-", "_")})
        os.close(here)
        os.close(there)
        self._out = os.fdopen(browser_in, "wb", buffering=0)
        self._in = os.fdopen(browser_out, "rb")
        self._number = 0
        self._session = None
        self.requests = []
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self._session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        self.call("Page.enable")

    def call(self, method, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        self._out.write(json.dumps(message).encode() + b"\0")
        while True:
            answer = self._read()
            if answer.get("id") == self._number:
                if "error" in answer:
                    raise BrowserError(f"{method}: {answer['error']['message']}")
                return answer["result"]

    def _read(self):
        data = bytearray()
        while not data.endswith(b"\0"):
            byte = self._in.read1(65536) if False else self._in.read(1)
            if not byte:
                raise BrowserError("Chromium has ended")
            data += byte
        return json.loads(data[:-1])

    def open(self, url):
        self.call("Page.navigate", url=url)
        self.wait_for(f"location.href.startsWith({json.dumps(url)}) && document.readyState === 'complete'")

    def evaluate(self, expression):
        result = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True,
                           userGesture=True)
        if "exceptionDetails" in result:
            details = result["exceptionDetails"]
            raise BrowserError(details.get("exception", {}).get("description", details["text"]))
        return result["result"].get("value")

    def run_file(self, text):
        """Runs a script for the page's tests, past the page's policy."""
        self.evaluate(text + "\n;undefined")

    def key(self, name, *modifiers, repeat=False, release=True):
        mask = sum(_MODIFIERS[modifier][0] for modifier in modifiers)
        shift = "Shift" in modifiers
        text = {"Enter": "\r"}.get(name, character_of(name, shift) or "")
        key = text if text and name != "Enter" else name
        event = {"code": name, "key": key, "modifiers": mask,
                 "windowsVirtualKeyCode": _VIRTUAL.get(name) or ord(name[-1])}
        if text and not mask & 7:
            event["text"] = text
        self.call("Input.dispatchKeyEvent", type="keyDown", autoRepeat=repeat, **event)
        if release:
            event.pop("text", None)
            self.call("Input.dispatchKeyEvent", type="keyUp", **event)

    def type(self, keys):
        for character in keys:
            name, shift = key_of(character)
            self.key(name, *(["Shift"] if shift else []))

    def click(self, selector, count=1, offset=None):
        x, y = self.place_of(selector, offset)
        for kind in ("mousePressed", "mouseReleased"):
            for clicks in range(1, count + 1):
                self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=clicks)

    def place_of(self, selector, offset):
        box = self.evaluate(
            f"(() => {{ const e = document.querySelector({json.dumps(selector)}); e.scrollIntoView({{block: 'center'}});"
            " const b = e.getBoundingClientRect(); return [b.x, b.y, b.width, b.height]; })()")
        if offset:
            return box[0] + offset[0], box[1] + offset[1]
        return box[0] + box[2] / 2, box[1] + box[3] / 2

    def compose(self, steps, committed):
        """An input method shows each step and then commits."""
        for step in steps:
            self.call("Input.imeSetComposition", text=step, selectionStart=len(step), selectionEnd=len(step))
        self.call("Input.insertText", text=committed)

    def insert_text(self, text):
        """Text without keys, as from a phone."""
        self.call("Input.insertText", text=text)

    def memory(self):
        """Bytes that the page's renderer has for itself."""
        pids = [info["id"] for info in self.browser_call("SystemInfo.getProcessInfo")["processInfo"]
                if info["type"] == "renderer"]
        return max(private_memory(pid) for pid in pids)

    def browser_call(self, method):
        session, self._session = self._session, None
        try:
            return self.call(method)
        finally:
            self._session = session

    def picture(self, file, width, height, dark, scale=1):
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale,
                  mobile=False)
        time.sleep(0.3)
        data = self.call("Page.captureScreenshot", format="png")["data"]
        with open(file, "wb") as out:
            out.write(base64.b64decode(data))

    def set_appearance(self, dark):
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])

    def close(self):
        try:
            self.browser_call("Browser.close")
        except (BrowserError, OSError):
            pass
        end(self._process)
        self._out.close()
        self._in.close()
        self.remove_profile()


class Firefox(Browser):
    name = "Firefox"

    def __init__(self, language="en-US"):
        super().__init__()
        settings = {
            "marionette.port": 0,
            "intl.accept_languages": language,
            "browser.shell.checkDefaultBrowser": False,
            "datareporting.policy.dataSubmissionEnabled": False,
            "toolkit.telemetry.reportingpolicy.firstRun": False,
            "browser.startup.homepage_override.mstone": "ignore",
            "browser.aboutwelcome.enabled": False,
            "app.update.disabledForTesting": True,
            "privacy.reduceTimerPrecision": False,
        }
        with open(os.path.join(self.profile, "user.js"), "w", encoding="utf-8") as file:
            for name, value in settings.items():
                file.write(f"user_pref({json.dumps(name)}, {json.dumps(value)});\n")
        self._process = subprocess.Popen(
            ["firefox-esr", "--headless", "--marionette", "--remote-allow-system-access", "--no-remote",
             "--profile", self.profile, "--width", "1100", "--height", "900"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env={**os.environ, "MOZ_HEADLESS": "1", "HOME": self.profile})
        self._socket = self._connect()
        self._file = self._socket.makefile("rb")
        self._number = 0
        self._read()
        self.call("WebDriver:NewSession", capabilities={})

    def _connect(self):
        port_file = os.path.join(self.profile, "MarionetteActivePort")
        stop = time.monotonic() + PATIENCE
        while time.monotonic() < stop:
            try:
                with open(port_file, encoding="ascii") as file:
                    return socket.create_connection(("127.0.0.1", int(file.read())))
            except (OSError, ValueError):
                time.sleep(0.1)
        raise BrowserError("Firefox does not listen")

    def _read(self):
        length = bytearray()
        while not length.endswith(b":"):
            byte = self._file.read(1)
            if not byte:
                raise BrowserError("Firefox has ended")
            length += byte
        return json.loads(self._file.read(int(length[:-1])))

    def call(self, method, **parameters):
        self._number += 1
        data = json.dumps([0, self._number, method, parameters]).encode()
        self._socket.sendall(str(len(data)).encode() + b":" + data)
        while True:
            kind, number, error, result = self._read()
            if kind == 1 and number == self._number:
                if error:
                    raise BrowserError(f"{method}: {error['message']}")
                return result

    def open(self, url):
        self.call("WebDriver:Navigate", url=url)

    def evaluate(self, expression):
        script = ("const done = arguments[0]; Promise.resolve().then(() => (0, eval)(" + json.dumps(expression) +
                  ")).then((value) => done([value === undefined ? null : value]), (error) => done(String(error)));")
        value = self.call("WebDriver:ExecuteAsyncScript", script=script, args=[], sandbox=None)["value"]
        if isinstance(value, str):
            raise BrowserError(value)
        return value[0]

    def run_file(self, text):
        self.evaluate(text + "\n;undefined")

    def perform(self, actions):
        self.call("WebDriver:PerformActions", actions=[{"type": "key", "id": "keyboard", "actions": actions}])

    @staticmethod
    def _value(name, shift=False):
        return _FIREFOX.get(name) or character_of(name, shift)

    def key(self, name, *modifiers, repeat=False, release=True):
        values = [_MODIFIERS[modifier][1] for modifier in modifiers]
        value = self._value(name, "Shift" in modifiers)
        actions = [{"type": "keyDown", "value": modifier} for modifier in values]
        actions.append({"type": "keyDown", "value": value})
        if release:
            actions.append({"type": "keyUp", "value": value})
        actions += [{"type": "keyUp", "value": modifier} for modifier in reversed(values)]
        self.perform(actions)

    def type(self, keys):
        actions = []
        for character in keys:
            name, shift = key_of(character)
            value = self._value(name, shift)
            if shift:
                actions.append({"type": "keyDown", "value": "\ue008"})
            actions += [{"type": "keyDown", "value": value}, {"type": "keyUp", "value": value}]
            if shift:
                actions.append({"type": "keyUp", "value": "\ue008"})
        self.perform(actions)

    def click(self, selector, count=1, offset=None):
        self.evaluate(f"document.querySelector({json.dumps(selector)}).scrollIntoView({{block: 'center'}})")
        found = self.call("WebDriver:FindElement", using="css selector", value=selector)["value"]
        size = self.call("WebDriver:GetElementRect", id=next(iter(found.values())))
        # Counted from the middle.
        x, y = (offset[0] - size["width"] / 2, offset[1] - size["height"] / 2) if offset else (0, 0)
        actions = [{"type": "pointerMove", "x": round(x), "y": round(y), "origin": found}]
        actions += [{"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0}] * count
        self.call("WebDriver:PerformActions",
                  actions=[{"type": "pointer", "id": "mouse", "parameters": {"pointerType": "mouse"},
                            "actions": actions}])

    def compose(self, steps, committed):
        self._compose([*steps, committed])

    def _compose(self, steps):
        self.call("Marionette:SetContext", value="chrome")
        try:
            self.call("WebDriver:ExecuteScript", args=[steps], script="""
                const tip = Cc["@mozilla.org/text-input-processor;1"].createInstance(Ci.nsITextInputProcessor);
                tip.beginInputTransactionForTests(window);
                for (const step of arguments[0]) {
                  tip.setPendingCompositionString(step);
                  tip.appendClauseToPendingComposition(step.length, tip.ATTR_RAW_CLAUSE);
                  tip.setCaretInPendingComposition(step.length);
                  tip.flushPendingComposition();
                }
                tip.commitComposition();""")
        finally:
            self.call("Marionette:SetContext", value="content")

    def insert_text(self, text):
        """Text without keys, which an input method commits at once."""
        self._compose([text])

    def memory(self):
        """Bytes that the page's process has for itself."""
        self.call("Marionette:SetContext", value="chrome")
        try:
            pid = self.call("WebDriver:ExecuteScript", args=[],
                            script="return gBrowser.selectedBrowser.frameLoader.remoteTab.osPid;")["value"]
        finally:
            self.call("Marionette:SetContext", value="content")
        return private_memory(pid)

    def picture(self, file, width, height, dark, scale=1):
        self.set_appearance(dark)
        self.call("WebDriver:SetWindowRect", width=width, height=height)
        time.sleep(0.3)
        data = self.call("WebDriver:TakeScreenshot", full=False)["value"]
        with open(file, "wb") as out:
            out.write(base64.b64decode(data))

    def set_appearance(self, dark):
        self.call("Marionette:SetContext", value="chrome")
        try:
            self.call("WebDriver:ExecuteScript", args=[0 if dark else 1], script="""
                Services.prefs.setIntPref("layout.css.prefers-color-scheme.content-override", arguments[0]);""")
        finally:
            self.call("Marionette:SetContext", value="content")

    def close(self):
        try:
            self.call("Marionette:Quit", flags=["eForceQuit"])
        except (BrowserError, OSError):
            pass
        end(self._process)
        self._socket.close()
        self.remove_profile()


def private_memory(pid):
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as lines:
        return sum(int(line.split()[1]) * 1024 for line in lines if line.startswith("Private_"))


def end(process):
    try:
        process.wait(10)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
