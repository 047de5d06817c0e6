"""Types into a corrected terminal, waits until the program has been replaced, and types again.

usage: test-running.py READY GO

Makes READY when the first word has been put right; goes on when GO is there.
"""

import os
import pty
import select
import sys
import time

READER = ["python3", "-c", "import sys; [print('line:', s.strip() + '.') for s in sys.stdin]"]
PATIENCE = 30
ready, go = sys.argv[1:]

child, master = pty.fork()
if child == 0:
    os.execvpe("tessarok", ["tessarok", "terminal", "--", *READER],
               dict(os.environ, LC_ALL="C.UTF-8", TERM="xterm"))
screen = b""


def watch(seconds, text=None):
    global screen
    end = time.monotonic() + seconds
    while (left := end - time.monotonic()) > 0 and not (text and text in screen):
        if select.select([master], [], [], left)[0]:
            screen += os.read(master, 4096)


def expect(keys, line):
    global screen
    screen = b""
    for key in keys + "\r":
        os.write(master, key.encode())
        watch(0.2)
    wanted = f"line: {line}.\r\n".encode()
    watch(PATIENCE, wanted)
    assert wanted in screen, screen.decode()


def tessarok_of(parent):
    """The program itself, by its number, which is that of the process started here."""
    with open(f"/proc/{parent}/maps", encoding="utf-8") as maps:
        return [line.split(None, 5)[5].strip() for line in maps if "/share/tessarok/dict_" in line]


watch(3)
expect("ghbdtn vbh", "привет мир")
assert tessarok_of(child) and not any("deleted" in name for name in tessarok_of(child))
open(ready, "w").close()
end = time.monotonic() + 120
while not os.path.exists(go):
    assert time.monotonic() < end, "the newer version does not come"
    watch(0.1)
# Longer than the program takes to look at its files again.
watch(5)
assert all("deleted" in name for name in tessarok_of(child)), tessarok_of(child)
expect("ghbdtn vbh", "привет мир")
print("the program that ran meanwhile goes on, with the word data it has")
