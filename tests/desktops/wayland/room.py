"""The folder with the parts of a session, which `Session` starts as the user nobody."""
import os
import re
import shutil
import tempfile

from session import HERE


def lay_ibus(room, build):
    """The components of IBus, with Tessarok's engines from the build."""
    for name in ("simple.xml", "dconf.xml", "gtkpanel.xml"):
        if os.path.exists(f"/usr/share/ibus/component/{name}"):
            shutil.copy(f"/usr/share/ibus/component/{name}", os.path.join(room, "ibus"))
    with open(f"{build}/ibus/component/tessarok.xml", encoding="utf-8") as component:
        text = component.read()
    # Wherever the build directory was when it was configured.
    text = re.sub("<exec>.*/tessarok-ibus", f"<exec>{room}/tessarok-ibus", text)
    with open(os.path.join(room, "ibus/tessarok.xml"), "w", encoding="utf-8") as out:
        out.write(text)


def lay_fcitx(room, build):
    """The entry of the addon, which names the library in the folder."""
    if not os.path.exists(f"{build}/fcitx5"):
        return
    with open(f"{build}/fcitx5/data/addon/tessarok.conf", encoding="utf-8") as entry:
        lines = entry.read().split("\n")
    library = "Library=" + os.path.join(room, "tessarok")
    with open(os.path.join(room, "fcitx/addon/tessarok.conf"), "w", encoding="utf-8") as out:
        out.write("\n".join(library if line.startswith("Library=") else line for line in lines))


def prepare(build, data):
    """A folder that nobody may read, with all that a session needs. The system's own KWin has a file
    capability that containers refuse."""
    room = tempfile.mkdtemp(prefix="tessarok-desktops-", dir="/tmp")
    os.chmod(room, 0o755)
    for folder in ("fcitx/addon", "ibus", "words"):
        os.makedirs(os.path.join(room, folder))
    shutil.copytree(
        f"{HERE}/../../../src/desktops/ibus/shell-extension", os.path.join(room, "shell-extension")
    )
    for source, name in (
        (f"{build}/tessarok", "tessarok"),
        (f"{build}/tessarok-ibus", "tessarok-ibus"),
        (f"{HERE}/mutter-keys", "mutter-keys"),
        (f"{build}/fcitx5/lib/tessarok.so", "tessarok.so"),
        (f"{build}/tests/desktops/wayland/tessarok_wayland_keys", "keys"),
        (f"{HERE}/gtk-entry", "gtk-entry"),
        (f"{HERE}/writer", "writer"),
        (f"{HERE}/../x11/qt-entry", "qt-entry"),
        (f"{HERE}/../x11/browser-page", "browser-page"),
        ("/usr/bin/kwin_wayland", "kwin_wayland"),
    ):
        # A system without KWin, say, may still check the others.
        if os.path.exists(source):
            shutil.copy(source, os.path.join(room, name))
    for name in os.listdir(data):
        if name.endswith(".txt"):
            shutil.copy(os.path.join(data, name), os.path.join(room, "words"))
    lay_ibus(room, build)
    lay_fcitx(room, build)
    return room
