#!/usr/bin/env python3
"""Each option and command that a program's --help names stands in its man page, and the man page names no other.
Usage: man_pages.py MAN_FOLDER PROGRAM..."""
import pathlib
import re
import subprocess
import sys

# Every command has them; the page tells of both once.
COMMON = {"--help", "--json"}
OPTION = re.compile(r"--[A-Za-z][A-Za-z-]*")

problems = []


def help_of(program, *words):
    return subprocess.run([program, *words, "--help"], text=True, capture_output=True, check=True).stdout


def options_of(text):
    """The options that begin a line: those that only a description mentions belong to other commands."""
    return {found.group(1) for found in re.finditer(r"^ +(?:-\w,)?(--[\w-]+)", text, re.M)}


def commands_of(program, *words):
    """(command, its options) of each command that takes no subcommand."""
    text = help_of(program, *words)
    _, _, below = text.partition("Subcommands:\n")
    names = re.findall(r"^  (\S+)", below, re.M)
    if not names:
        return [(" ".join(words), options_of(text) - COMMON)]
    return [entry for name in names for entry in commands_of(program, *words, name)]


def sections_of(page):
    """{heading: [(tag, text)]} of a page; text includes the tag."""
    text = re.sub(r"\\f.", "", page.read_text().replace("\\-", "-").replace('"', ""))
    result = {}
    for section in re.split(r"^\.SH ", text, flags=re.M)[1:]:
        heading, _, body = section.partition("\n")
        entries = re.split(r"^\.(?:TP|SS.*)\n", body, flags=re.M)[1:]
        words = [re.sub(r"\s+", " ", re.sub(r"^\.[A-Z]+ +", "", entry, flags=re.M)) for entry in entries]
        tags = [re.sub(r"^\.[A-Z]+ +", "", entry).split("\n")[0] for entry in entries]
        result[heading] = list(zip(tags, words))
    return result


def compare(page, what, helped, told):
    for name in sorted(helped - told):
        problems.append(f"{page.name}: {what} {name} is missing")
    for name in sorted(told - helped):
        problems.append(f"{page.name}: {what} {name} does not exist")


def check(program, page):
    sections = sections_of(page)
    if "COMMANDS" not in sections:
        told = set().union(*(OPTION.findall(tag) for tag, _ in sections["OPTIONS"]))
        compare(page, "option", options_of(help_of(program)), told)
        return
    commands = commands_of(program)
    entries = {re.match(r"[a-z -]*[a-z]", tag).group(0): text for tag, text in sections["COMMANDS"] if tag}
    told = {name: next((c for c, _ in commands if name == c or name.startswith(c + " ")), name) for name in entries}
    compare(page, "command", {name for name, _ in commands}, set(told.values()))
    for name, text in entries.items():
        options = dict(commands).get(told[name], set())
        compare(page, f"{told[name]}: option", options, set(OPTION.findall(text)) - COMMON)


for path in sys.argv[2:]:
    check(path, pathlib.Path(sys.argv[1], pathlib.Path(path).name + ".1"))
for problem in problems:
    print(problem, file=sys.stderr)
sys.exit(bool(problems) or len(sys.argv) < 3)
