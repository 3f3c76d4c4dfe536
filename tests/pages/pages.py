#!/usr/bin/env python3
"""Holds the pages to what they say: runs the commands printed in them, follows their links.

usage: pages.py [--slow] SOURCE_FOLDER BUILD_FOLDER [PAGE...]

Commands stand in blocks marked ```sh. They run in a copy of the sources, with the tool of the build
folder at build/release, and have to end with status 0, or with what a comment behind them says:
`# the exit status is 1`. Two words behind `sh` tell what is different:

    slow    builds something: runs with --slow alone
    manual  runs for too long or asks for a machine of its own: only its files have to be there

With --slow the slow blocks run, with the others of their pages, and the picture of findings is
held to what the tool prints.
"""

import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

PAGES = ("README.md", "CONTRIBUTING.md", "SECURITY.md", "CHANGELOG.md", "examples/README.md",
         "docs/*.md", "docs/*/*.md")
LANGUAGES = {"sh", "c", "cpp", "cmake", "json", "yaml", "text", "toml"}
NOT_COPIED = shutil.ignore_patterns(".git", "build*", "out", "node_modules", "__pycache__")
FENCE = re.compile(r"^```(\S*) *(\S*)$")
LINK = re.compile(r"!?\[[^\]]*\]\(([^)#]*)[^)]*\)", re.S)
EXPECTED = re.compile(r"# .*the exit status is (\d)")
# A minute of fuzzing is for people.
SHORTER = (re.compile(r"-max_total_time=\d+"), "-max_total_time=3")

# What has no place on this machine goes into a folder of the test: an installation, and the
# cache of libraries. Packages are looked at, not installed.
SUDO = """#!/bin/sh
command=$1
shift
case $command in
ldconfig) exec /sbin/ldconfig -C "$PAGES_ROOT/ld.so.cache" -n "$PAGES_ROOT/usr/local/lib" ;;
apt-get) exec apt-get --simulate "$@" ;;
*) DESTDIR=$PAGES_ROOT exec "$command" "$@" ;;
esac
"""


class Block:
    def __init__(self, page, line, language, mark):
        self.page, self.line, self.language, self.mark = page, line, language, mark
        self.lines = []

    def commands(self):
        """Pairs of line number and command, lines that end in a backslash joined."""
        command, begin = "", 0
        for number, line in enumerate(self.lines, self.line + 1):
            begin = begin if command else number
            command += line.rstrip()
            if command.endswith("\\"):
                command = command[:-1]
                continue
            if command.split("#")[0].strip():
                yield begin, command
            command = ""


def blocks_of(page, text, complain):
    block = None
    before = ""
    for number, line in enumerate(text.splitlines(), 1):
        fence = FENCE.match(line)
        if block is None and fence:
            if fence[1] not in LANGUAGES:
                complain(f"{page}:{number}: a block has to name its language: ```{fence[1]}")
            block = Block(page, number, fence[1], fence[2])
        elif block is not None and line == "```":
            yield block
            block = None
        elif block is not None:
            block.lines.append(line)
        # What is typed into Python is tested with its package.
        elif line.startswith("    ") and not line.startswith("    >>>") and not before.strip():
            complain(f"{page}:{number}: commands stand between ``` lines, so that a test runs them")
        before = line


def check_links(page, root, text, complain):
    prose = re.sub(r"^```.*?^```$", "", text, flags=re.S | re.M)
    for target in LINK.findall(prose):
        if target and "://" not in target and not (root / page).parent.joinpath(target).exists():
            complain(f"{page}: there is no {target}")
    for name in re.findall(r"`([\w./-]+\.md)`", LINK.sub("", prose)):
        complain(f"{page}: {name} is not a link")


def check_files(block, root, complain):
    for number, command in block.commands():
        for word in shlex.split(command, comments=True):
            if word.startswith(("tools/", "bench/", "./")) and not (root / word).exists():
                complain(f"{block.page}:{number}: there is no {word}")


def check_picture(root, build, complain):
    made = subprocess.run([root / "docs/images/make.py", build / "bin/tarnlet"], cwd=root,
                          stdout=subprocess.PIPE, encoding="utf-8", check=False).stdout
    if made != (root / "docs/images/check.svg").read_text():
        complain("docs/images/check.svg is not what the tool prints: run docs/images/make.py")


def write_script(script, blocks):
    # Each command for itself, so that a failure has its line and a later one its own verdict.
    with script.open("w") as out:
        for block in blocks:
            for number, command in block.commands():
                command = SHORTER[0].sub(SHORTER[1], command)
                expected = EXPECTED.search(command)
                out.write(f"""echo {shlex.quote(f"{block.page}:{number}: {command}")}
{command}
status=$?
[ $status = {expected[1] if expected else 0} ] || {{
    echo {shlex.quote(f"{block.page}:{number}")}": exit status $status"
    exit 1
}}
""")


def put_files(work, root):
    """What the pages take as there: descriptions of the reader, and the first program in C."""
    shutil.copy(root / "examples/demo.bsd", work / "device.bsd")
    shutil.copy(root / "examples/demo_1994.bsd", work / "old.bsd")
    shutil.copy(root / "examples/demo_1994.bsd", work / "new.bsd")
    (work / "parts").mkdir()
    for name in ("demo.bsd", "isc_2002.bsd", "aio_2003.bsd"):
        shutil.copy(root / "examples" / name, work / "parts")
    program = re.search(r"^```c\n(.*?)^```$", (root / "README.md").read_text(), re.S | re.M)
    (work / "host.c").write_text(program[1])


def main(arguments):
    slow = arguments[0] == "--slow"
    root, build = (pathlib.Path(name).resolve() for name in arguments[slow:slow + 2])
    pages = arguments[slow + 2:] or PAGES
    faults = []
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder, "tarnlet")
        shutil.copytree(root, work, ignore=NOT_COPIED, symlinks=True)
        (work / "build").mkdir()
        (work / "build/release").symlink_to(build)
        put_files(work, root)
        shims = pathlib.Path(folder, "bin")
        shims.mkdir()
        (shims / "sudo").write_text(SUDO)
        (shims / "sudo").chmod(0o755)
        installed = f"{folder}/root/usr/local"
        environment = dict(
            os.environ, PATH=f"{shims}:{build}/bin:{os.environ['PATH']}:/sbin",
            PAGES_ROOT=f"{folder}/root", PKG_CONFIG_PATH=f"{installed}/lib/pkgconfig",
            LD_LIBRARY_PATH=f"{installed}/lib", LC_ALL="C.UTF-8")
        if slow:
            check_picture(root, build, faults.append)
        for pattern in pages:
            for path in sorted(set(root.glob(pattern)) - {root / "docs/rules.md"}):
                page, text = path.relative_to(root), path.read_text()
                check_links(page, root, text, faults.append)
                blocks = [b for b in blocks_of(page, text, faults.append) if b.language == "sh"]
                for block in blocks:
                    if block.mark == "manual":
                        check_files(block, root, faults.append)
                marks = ("", "slow") if slow else ("",)
                blocks = [block for block in blocks if block.mark in marks]
                if slow and all(block.mark == "" for block in blocks):
                    continue
                script = pathlib.Path(folder, "script")
                write_script(script, blocks)
                log = subprocess.run(["bash", script], cwd=work, env=environment,
                                     stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                     stderr=subprocess.STDOUT, encoding="utf-8", errors="replace",
                                     check=False)
                if log.returncode:
                    faults.append(log.stdout)
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
