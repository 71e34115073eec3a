#!/usr/bin/env python3
"""Checks that the manual page and the completions of bash and zsh name what a program's --help names, and nothing else:
each command, each option of each command, the kinds, the exit codes and the environment variables.

Usage: check_documents.py PROGRAM PACKAGING. Prints each difference and exits with 1 when there is one.
"""

import re
import subprocess
import sys
from pathlib import Path

OPTION = re.compile(r"(?<![\w-])(--[a-z][a-z-]*|-[a-zA-Z])(?![\w-])")

# Completes the last of the words that follow the script, as bash does, and prints what it would offer.
BASH = 'source "$0"; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); "_${1//-/_}"; printf "%s\\n" "${COMPREPLY[@]}"'

# Runs the completion with the functions of zsh replaced, and prints what it hands to them. $1 is the command.
ZSH = """
_arguments() { print -rl -- ${(M)@:#*\\[*}; state=argument; line=($wanted) }
_describe() { print -rl -- "${(@P)2}" }
_values() { print -rl -- "$@" }
wanted=$1; completion=$0; function=$2; set --
source $completion
if [[ -n $function ]]; then print '=='; $function; fi
"""


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def options_of(text):
    return set(OPTION.findall(text))


class Help:
    """What the program says of itself."""

    def __init__(self, program):
        self.text = output_of(program, "--help")
        own, title, common = self.text.rpartition("Options of all commands:\n")
        self.common = options_of(common)
        listed = re.search(r"^Commands:\n(.*?)\n\n", own, re.DOTALL | re.MULTILINE)
        self.commands = re.findall(r"^  ([a-z][a-z-]*)", listed[1], re.MULTILINE) if listed else []
        texts = {command: output_of(program, command, "--help").partition(title)[0] for command in self.commands}
        self.own = {command: options_of(text) - self.common for command, text in texts.items()}
        kinds = re.search(r"KINDS are separated by commas: ([a-z,]+)\.", "".join(texts.values()))
        self.kinds = set(kinds[1].split(",")) if kinds else set()
        self.codes = set(re.findall(r"(\d+) [a-z]", self.text.partition("Exit codes:")[2]))
        self.variables = set(re.findall(r"\$([A-Z_]+)", self.text))


class Manual:
    """The page's source, section by section."""

    def __init__(self, path):
        parts = re.split(r"^\.S[hs] (.+)$", path.read_text(encoding="utf-8"), flags=re.MULTILINE)
        self.sections = dict(zip(parts[1::2], parts[2::2]))
        self.commands = re.findall(r"^\.Ss (.+)$", path.read_text(encoding="utf-8").partition(".Sh COMMANDS")[2], re.MULTILINE)
        self.kinds = set(re.findall(r"\w+", re.search(r"Ar KINDS\n.*\n\.Cm (.*) \.", self.sections["Arguments"])[1])) \
            if "Arguments" in self.sections else set()
        self.codes = set(re.findall(r"^\.It (\d+)", self.sections["EXIT STATUS"], re.MULTILINE))
        self.variables = set(re.findall(r"[A-Z][A-Z_]+", self.sections["ENVIRONMENT"]))

    def options(self, section):
        items = re.findall(r"^\.It Fl (.*)$", self.sections[section], re.MULTILINE)
        return {"-" + name for item in items for name in re.findall(r"(?:^|Fl )(-?[a-zA-Z][a-z-]*)", item)}


class Differences:
    """Counts and prints what is missing and what is too much."""

    def __init__(self):
        self.count = 0

    def compare(self, where, told, expected):
        for name in sorted(set(expected) ^ set(told)):
            print(f"{where}: {name} is " + ("missing" if name in expected else "not in the help"))
            self.count += 1


def check_manual(differences, said, page):
    differences.compare("manual, commands", page.commands, said.commands)
    differences.compare("manual, options", page.options("OPTIONS"), said.common)
    for command in set(said.commands) & set(page.commands):
        differences.compare(f"manual, {command}", page.options(command), said.own[command])
    differences.compare("manual, kinds", page.kinds, said.kinds)
    # Wizards tell their exit codes and variables in the page only.
    if said.codes:
        differences.compare("manual, exit codes", page.codes, said.codes)
    differences.compare("manual, variables", page.variables & said.variables, said.variables)


def check_bash(differences, said, name, script):
    def offered(*words):
        return output_of("bash", "-c", BASH, script, name, *words).split()

    differences.compare("bash, options", offered("-"), said.common)
    if said.commands:
        differences.compare("bash, commands", offered(""), said.commands)
        differences.compare("bash, kinds", offered("--only", ""), said.kinds)
    for command, own in said.own.items():
        differences.compare(f"bash, {command}", offered(command, "-"), said.common | own)


def check_zsh(differences, said, script):
    def handed(command, function=""):
        return output_of("zsh", "-f", "-c", ZSH, script, command, function).rpartition("==\n")[2]

    # What a description says after the bracket names no option.
    def options(command):
        return options_of(re.sub(r"\[.*", "", handed(command), flags=re.MULTILINE))

    differences.compare("zsh, options", options(""), said.common)
    if said.commands:
        listed = handed("", "_phone_migrate_commands").splitlines()
        differences.compare("zsh, commands", [line.partition(":")[0] for line in listed], said.commands)
        differences.compare("zsh, kinds", handed("", "_phone_migrate_kinds").split()[3:], said.kinds)
    for command, own in said.own.items():
        differences.compare(f"zsh, {command}", options(command), said.common | own)


def main():
    program, packaging = sys.argv[1], Path(sys.argv[2])
    name = Path(program).name
    said = Help(program)
    differences = Differences()
    check_manual(differences, said, Manual(packaging / f"man/{name}.1"))
    check_bash(differences, said, name, str(packaging / f"completion/{name}.bash"))
    check_zsh(differences, said, str(packaging / f"completion/_{name}"))
    print(f"{len(said.commands)} commands, {len(said.common)} common options, {differences.count} differences")
    return 1 if differences.count or not said.common else 0


if __name__ == "__main__":
    sys.exit(main())
