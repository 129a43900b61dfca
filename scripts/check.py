#!/usr/bin/env python3
"""The rules of the house that a program can check. Prints each violation; exit code 1 if any.

layers     a folder includes only what stands below it
headers    every public header compiles alone
words      nothing unfinished, no literal tabs, no lines over 100 columns
format     clang-format has nothing to change
"""

from __future__ import annotations

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Lower number = lower layer. A file may include only its own layer or lower ones.
LAYERS = {
    "afx": 0,
    "siblings": 1,
    "cxcdata": 2,
    "cxcfile": 3,
    "cxcpkg": 4,
    "cxcui": 5,
    "host": 6,
    "tools": 6,
    "python": 6,
}
# The file layer of a chain is declared in the chain and implemented in cxcfile; nothing else may
# look up.
UNFINISHED = re.compile(r"\b(TO" r"DO|FIX" r"ME|X" r"XX|HA" r"CK)\b|DIS" r"ABLED_|GTEST_" r"SKIP")


def sources(*endings: str) -> list[pathlib.Path]:
    listed = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard"],
        cwd=ROOT, capture_output=True, text=True, check=True,
    ).stdout.split("\n")
    return [ROOT / name for name in listed if name.endswith(endings) and (ROOT / name).exists()]


def layer_of(path: pathlib.Path) -> int | None:
    return LAYERS.get(path.relative_to(ROOT).parts[0])


def check_layers() -> list[str]:
    found = []
    for path in sources(".h", ".cpp"):
        own = layer_of(path)
        if own is None:
            continue
        for number, line in enumerate(path.read_text().splitlines(), 1):
            match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            if not match:
                continue
            target = ROOT / match.group(1)
            if target.exists() and (layer_of(target) or 0) > own:
                found.append(f"{path.relative_to(ROOT)}:{number}: includes a higher layer: {line}")
    return found


def check_text() -> list[str]:
    found = []
    for path in sources(".h", ".cpp", ".py", ".sh", "CMakeLists.txt", ".cmake"):
        for number, line in enumerate(path.read_text().splitlines(), 1):
            where = f"{path.relative_to(ROOT)}:{number}"
            if UNFINISHED.search(line):
                found.append(f"{where}: marks unfinished work")
            if "\t" in line:
                found.append(f"{where}: tab")
            if len(line) > 100:
                found.append(f"{where}: longer than 100 columns")
    return found


def check_format() -> list[str]:
    files = [str(path) for path in sources(".h", ".cpp")]
    result = subprocess.run(
        ["clang-format", "--dry-run", *files], cwd=ROOT, capture_output=True, text=True
    )
    warnings = [line for line in result.stderr.splitlines() if "warning" in line]
    altered = sorted({pathlib.Path(line.split(":")[0]) for line in warnings})
    return [f"{path.relative_to(ROOT)}: clang-format would alter it" for path in altered]


def is_windows_only(header: pathlib.Path) -> bool:
    name = str(header.relative_to(ROOT))
    return name.startswith(("cxcui/", "siblings/commonui/", "host/"))


def compile_alone(header: pathlib.Path) -> str | None:
    windows = is_windows_only(header)
    command = [
        "x86_64-w64-mingw32-g++-posix" if windows else "g++",
        *(["-DUNICODE", "-D_UNICODE", "-DNOMINMAX"] if windows else []),
        "-std=c++17", "-fsyntax-only", "-Wall", "-Wextra", "-x", "c++",
        f"-I{ROOT}", f"-I{ROOT}/afx/include", "-include", str(header), os.devnull,
    ]
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode == 0:
        return None
    first = (result.stderr.splitlines() or ["no message"])[0]
    return f"{header.relative_to(ROOT)}: does not compile alone: {first}"


def check_headers() -> list[str]:
    folders = {"siblings", "cxcdata", "cxcfile", "cxcpkg", "cxcui", "host"}
    headers = [path for path in sources(".h") if path.relative_to(ROOT).parts[0] in folders]
    headers += [path for path in sources(".h") if "afx/include" in str(path)]
    headers.append(ROOT / "cxc.h")
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        return [problem for problem in pool.map(compile_alone, headers) if problem]


def main() -> int:
    problems = check_layers() + check_text() + check_format() + check_headers()
    for problem in problems:
        print(problem)
    print(f"checks: {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
