"""The command blocks of a document, run as a reader would run them.

A fence of a language in PROGRAMS is a block. One with a name after the language, as in
"python look.py", is saved under that name and not run. A fence "text" shows what the blocks
above it have printed, from the last text or line between fences on; "..." stands for any lines.
"""

import os
import re
import shutil
import subprocess
import sys
from dataclasses import dataclass

PROGRAMS = {
    "sh": ["bash", "-euo", "pipefail", "-c"],
    "python": [sys.executable, "-c"],
    "matlab": ["octave-cli", "--no-gui", "--norc", "--eval"],
    "r": ["Rscript", "-e"],
}
# Files that a reader is told of, in commands or between backticks.
_FILE = re.compile(
    r"[\w./-]*\w\.(?:cxc|cxcpkg|cxcgrp|fif|png|pdf|svg|html|nc|mat|npy|npz|csv|txt|graphml|md|py)\b"
)


@dataclass
class Block:
    """A fence."""

    language: str
    name: str  # of the file, or empty
    text: str
    line: int  # in the document, from 1
    section: str  # heading of the second level above it
    joined: bool  # another fence ends in the line before


def blocks_of(document: str) -> list[Block]:
    """The fences of a document in their order."""
    found: list[Block] = []
    section, inside, end = "", None, 0
    for number, line in enumerate(document.splitlines(), 1):
        fence = re.match(r"```(\w*) *(.*)", line)
        if fence and inside is None:
            inside = Block(fence[1], fence[2], "", number, section, end == number - 1)
        elif fence:
            found.append(inside)
            inside, end = None, number
        elif inside is not None:
            inside.text += line + "\n"
        elif line.startswith("## "):
            section = line[3:]
    assert inside is None, f"the fence of line {inside.line} has no end"
    return found


def files_of(document: str) -> set[str]:
    """Files that commands or text between backticks name; not those made up by a loop."""
    plain = re.sub(r"(?ms)^```.*?^```$", "", document)
    texts = re.findall(r"`([^`\n]+)`", plain)
    texts += [block.text for block in blocks_of(document) if block.language == "sh"]
    words = [word.strip("\"';,()") for text in texts for word in text.split()]
    return {word for word in words if _FILE.fullmatch(word)}


def missing_programs(blocks: list[Block]) -> list[str]:
    """Programs of these blocks that are not installed."""
    wanted = {PROGRAMS[block.language][0] for block in blocks if block.language in PROGRAMS}
    return sorted(program for program in wanted if shutil.which(program) is None)


def environment(folder) -> dict[str, str]:
    """In which `cxc` is the native program, and `python3` is this Python."""
    programs = folder / "programs"
    programs.mkdir()
    for name, target in (("cxc", os.environ["CXC_TOOL"]), ("python3", sys.executable)):
        (programs / name).write_text(f'#!/bin/sh\nexec "{target}" "$@"\n')
        (programs / name).chmod(0o755)
    return {**os.environ, "PATH": f"{programs}:{os.environ['PATH']}", "MPLBACKEND": "Agg"}


def run(blocks: list[Block], folder, variables: dict[str, str]) -> None:
    """Runs the blocks in the folder; AssertionError with the line of the one that went wrong."""
    printed = ""
    for block in blocks:
        where = f"line {block.line}"
        if not block.joined:
            printed = ""
        if block.language == "text":
            assert _agrees(block.text, printed), f"{where}: shown is not what came:\n{printed}"
            printed = ""
        elif block.name:
            (folder / block.name).write_text(block.text, encoding="utf-8")
        else:
            assert block.language in PROGRAMS, f"{where}: cannot run '{block.language}'"
            done = subprocess.run(
                [*PROGRAMS[block.language], block.text], cwd=folder, env=variables,
                capture_output=True, encoding="utf-8", timeout=300,
            )  # fmt: skip
            said = f"{where}:\n{block.text}\n{done.stdout}{done.stderr}"
            assert done.returncode == 0, f"ended with {done.returncode}, {said}"
            # Octave has remarks of its own at its end.
            assert done.stderr == "" or block.language == "matlab", f"complained, {said}"
            printed += done.stdout


def _agrees(shown: str, printed: str) -> bool:
    lines = shown.splitlines()
    patterns = ["(?:.*\n)*" if line == "..." else re.escape(line) + "\n" for line in lines]
    return re.fullmatch("".join(patterns), printed) is not None
