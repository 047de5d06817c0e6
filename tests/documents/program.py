"""What the program says of itself: its commands, their options and the settings that it knows."""

import functools
import os
import re
import subprocess


@functools.lru_cache(maxsize=None)
def help_of(program, *command):
    run = subprocess.run([program, *command, "--help"], capture_output=True, text=True, check=True,
                         env=dict(os.environ, LC_ALL="C.UTF-8", LANGUAGE=""))
    return run.stdout


def names_in(text, heading):
    """The names that stand first in the lines of a section of a help text."""
    section = re.search(rf"^{heading}:\n((?:[ \t]+.*\n)+)", text, re.M)
    lines = section[1].splitlines() if section else []
    return [line.split()[0] for line in lines if re.match(r"  \S", line)]


def commands_of(program):
    """Every command, one of another's as both names: ["type", …, "learned forget"]."""
    commands = []
    for name in names_in(help_of(program), "Commands"):
        commands.append(name)
        commands += [f"{name} {below}" for below in names_in(help_of(program, name), "Commands")]
    if not commands:
        raise SystemExit(f"{program} --help lists no command")
    return commands


def options_of(program, command=""):
    """Every option of a command, or of the program itself, in all its forms."""
    names = names_in(help_of(program, *command.split()), "Options")
    return [form for name in names for form in name.split(",")]


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def sources(root):
    for folder, _, names in sorted(os.walk(os.path.join(root, "src"))):
        for name in sorted(names):
            if name.endswith((".h", ".cpp")):
                yield read(os.path.join(folder, name))


def settings_of(root):
    """Every setting that the code knows, with the texts that it may have; none for switches."""
    code = "\n".join(sources(root))
    settings = {name: set() for name in re.findall(
        r'(?:kSetting = |settings_\(|wants\(|k\w+Key = )"(\w+)"', code)}
    settings |= {f"pack.{name}": set() for name in re.findall(r'"pack_(\w+)", (?:true|false)\}', code)}
    for name, values in re.findall(r'kSetting = "(\w+)";\s*static constexpr const char\* kValues =\s*"(.*)";', code):
        settings[name] |= set(re.findall(r'\\"([\w-]+)\\"', values))
    for name, value in re.findall(r'settings_\("(\w+)"\) == "([\w-]+)"', code):
        settings[name].add(value)
    return settings


def variables_of(root):
    """Every variable of the environment of the program's own."""
    return {name for code in sources(root) for name in re.findall(r'"(TESSAROK_[A-Z_]+)"', code)}
