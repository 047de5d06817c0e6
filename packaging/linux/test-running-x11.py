"""Types into a window of a corrected display, waits until the program has been replaced, looks for the
one line that says so, and types again.

usage: test-running-x11.py READY GO
"""

import os
import subprocess
import sys
import time

import desktop

ready, go = sys.argv[1:]
NEWS = "a new version is installed"
# The program looks every two minutes.
PATIENCE = 180

session = desktop.Desktop()
try:
    session.start_display()
    subprocess.run(["setxkbmap", "us,ru"], env=session.environment, check=True)
    session.open_entry()
    errors = os.path.join(session.home, "errors")
    session.start(["tessarok", "x11", "--autostart"], stderr=open(errors, "w"))
    desktop.wait_until(lambda: "correcting in every application" in open(errors).read(),
                       "the program does not start")
    session.type("ghbdtn ")
    session.expect("привет ")
    open(ready, "w").close()

    end = time.monotonic() + PATIENCE
    while not os.path.exists(go):
        assert time.monotonic() < end, "the newer version does not come"
        time.sleep(0.1)
    end = time.monotonic() + PATIENCE
    while NEWS not in open(errors).read():
        assert time.monotonic() < end, "nothing is said of the newer version: " + open(errors).read()
        time.sleep(0.5)
    # By now the layout is Russian.
    session.type("hello ")
    session.expect("привет hello ")
    assert open(errors).read().count(NEWS) == 1, open(errors).read()
    print("the program of the display goes on, and says once:", NEWS)
finally:
    session.end()
