#!/usr/bin/env python3
"""Measures the library, its peers and the limits of the machine in one run; bench/run builds first.

Every round goes through all shapes; on each, ours and the limits are measured by cxc_bench and the
peers by peers.py, one right after the other. A figure is the median over all rounds. Leaves
results.json, table.md and cost.png in the output folder.
"""

from __future__ import annotations

import argparse
import json
import os
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time

import report
import targets

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent
ONCE = 20e3  # what takes longer [ms] is measured in the first round only


def parsed() -> argparse.Namespace:
    parser = argparse.ArgumentParser(prog="bench/run", description=__doc__.split("\n")[0])
    parser.add_argument("--quick", action="store_true", help="a short trial: one round, few shapes")
    parser.add_argument(
        "--document", action="store_true", help="put the figures into docs/performance.md, too"
    )
    parser.add_argument("--shapes", nargs="+", help="as 64x64x100, or 10x64x64x100 for a group")
    parser.add_argument(
        "--only", default="", metavar="REGEX",
        help="names to measure, such as '/(open|arrays made)'; a name is who/what",
    )  # fmt: skip
    parser.add_argument("--rounds", type=int, help="default 3, with --quick 1")
    parser.add_argument("--build", default=str(ROOT / "build/linux-bench"), help="what is measured")
    parser.add_argument("--out", default=str(ROOT / "build/bench"), help="folder of the results")
    options = parser.parse_args()
    if options.document and (options.quick or options.shapes or options.only):
        parser.error("--document is for a full run")
    quick = (*targets.QUICK_SHAPES, *targets.QUICK_GROUPS)
    options.shapes = options.shapes or (
        quick if options.quick else (*targets.SHAPES, *targets.GROUPS)
    )
    options.rounds = options.rounds or (1 if options.quick else 3)
    return options


def call(command: list[str], files: str, build: str) -> None:
    environment = {
        **os.environ, "TMPDIR": files, "PYTHONPATH": f"{build}/python",
        "CXC_TOOL": f"{build}/bin/cxc",
    }  # fmt: skip
    done = subprocess.run(command, capture_output=True, text=True, env=environment)
    if done.returncode != 0:
        sys.exit(f"bench: {' '.join(command)}\n{done.stdout}{done.stderr}")


def of_benchmark(path: str, shape: str) -> dict:
    """What cxc_bench wrote, in the form of cells.py."""
    with open(path, encoding="utf-8") as file:
        told = json.load(file)
    cells: dict[str, dict] = {}
    figures = []
    for run in told["benchmarks"]:
        if run["run_type"] != "iteration":
            continue
        name = re.split(r"/(?:min_time|iterations):", run["name"])[0]
        cell = cells.setdefault(name, {"ms": [], "peak": run["peak"]})
        cell["ms"].append(run["real_time"])
        if name == "ours/open" and len(cell["ms"]) == 1:
            beyond = run["allocated"] - float(told["context"]["dataset_bytes"])
            figures.append({
                "name": "bytes allocated by open beyond the dataset", "shape": shape,
                "target": targets.OPEN_BEYOND, "value": beyond,
            })  # fmt: skip
    return {"cells": cells, "figures": figures}


def measure(shape: str, options: argparse.Namespace, only: str, files: str) -> dict:
    """Cells and figures of one shape in one round."""
    out = str(pathlib.Path(files, "out.json"))
    choice = [f"--only={only}", f"--repetitions={1 if options.quick else 3}"]
    program = f"{options.build}/bin/cxc_bench"
    call([program, shape, *choice, f"--benchmark_out={out}"], files, options.build)
    told = of_benchmark(out, shape)
    scripts = ["peers.py", "command_line.py"] if shape.count("x") == 3 else ["peers.py"]
    for script in scripts:
        call([sys.executable, str(HERE / script), shape, out, *choice], files, options.build)
        with open(out, encoding="utf-8") as file:
            more = json.load(file)
        told["cells"].update(more["cells"])
        told["figures"] += more["figures"]
    return told


def gather(options: argparse.Namespace, files: str) -> tuple[dict, list]:
    """Cells by shape and name, and figures."""
    cells: dict[str, dict] = {shape: {} for shape in options.shapes}
    figures: dict[tuple[str, str], dict] = {}
    for number in range(options.rounds):
        for shape in options.shapes:
            begin = time.monotonic()
            slow = [re.escape(n) for n, cell in cells[shape].items() if max(cell["ms"]) > ONCE]
            # A negative look ahead: nothing that was slow, and what is asked for.
            without = f"^(?!(?:{'|'.join(slow)})$)" if slow else ""
            only = f"{without}.*(?:{options.only})" if slow else options.only
            told = measure(shape, options, only, files)
            for name, cell in told["cells"].items():
                held = cells[shape].setdefault(name, {"ms": [], "peak": 0})
                held["ms"] += cell["ms"]
                held["peak"] = max(held["peak"], cell["peak"])
            for figure in told["figures"]:
                figures[figure["shape"], figure["name"]] = figure
            taken = time.monotonic() - begin
            print(f"bench: round {number + 1} of {options.rounds}, {shape}: {taken:.0f} s")
    for of_shape in cells.values():
        for cell in of_shape.values():
            cell["median"] = statistics.median(cell["ms"])
    return cells, list(figures.values())


def machine() -> dict[str, str]:
    """What the figures depend on."""
    text = pathlib.Path("/proc/cpuinfo").read_text(encoding="ascii")
    model = re.search(r"^model name\s*:\s*(.*)$", text, re.MULTILINE)
    flags = text.split()
    widest = "AVX-512" if "avx512f" in flags else "AVX2" if "avx2" in flags else "SSE2"
    system = platform.freedesktop_os_release()["PRETTY_NAME"]
    versions = {}
    for module in ("numpy", "h5py", "xarray", "netCDF4", "pandas"):
        # Debian's xarray does not tell its version by itself.
        told = subprocess.run(
            ["dpkg-query", "-W", "-f=${Version}", f"python3-{module.lower()}"],
            capture_output=True, text=True,
        )  # fmt: skip
        versions[module] = re.sub(r"^\d+:|[-+].*$", "", told.stdout) or "?"
    compiler = subprocess.run(["g++", "-dumpfullversion"], capture_output=True, text=True)
    return {
        "processor": model[1] if model else platform.machine(),
        "cores": str(os.cpu_count()),
        "passes": widest,
        "system": system,
        "compiler": f"g++ {compiler.stdout.strip()}",
        "peers": ", ".join(f"{name} {version}" for name, version in versions.items()),
    }


def compared(cells: dict) -> list[dict]:
    """The rows of the table that have figures, on each shape."""
    found = []
    for row in targets.ROWS:
        for shape, of_shape in cells.items():
            ours, other = of_shape.get("ours/" + row.operation), of_shape.get(row.against)
            if ours is None or other is None:
                continue
            ratio, target = ours["median"] / other["median"], row.target_on(shape)
            found.append({
                "operation": row.operation, "against": row.against, "shape": shape,
                "ratio": ratio, "target": target, "met": target is None or ratio <= target,
            })  # fmt: skip
    return found


def main() -> int:
    options = parsed()
    out = pathlib.Path(options.out)
    out.mkdir(parents=True, exist_ok=True)
    begin = time.monotonic()
    with tempfile.TemporaryDirectory(dir=out) as files:
        cells, figures = gather(options, files)
    results = {
        "quick": options.quick,
        "rounds": options.rounds,
        "minutes": (time.monotonic() - begin) / 60,
        "machine": machine(),
        "cells": cells,
        "rows": compared(cells),
        "figures": figures,
    }
    (out / "results.json").write_text(json.dumps(results, indent=1) + "\n")
    (out / "table.md").write_text(report.markdown(results))
    import picture  # of what has been built by now

    picture.draw(results, str(out / "cost.png"))
    if options.document:
        report.document(results, ROOT / "docs/performance.md")
        picture.draw(results, str(ROOT / "docs/images/performance.png"))
    missed = sum(not row["met"] for row in results["rows"])
    print(f"bench: {len(results['rows'])} ratios, {missed} beyond their target; "
          f"{out}/table.md, results.json, cost.png")
    return 0


if __name__ == "__main__":
    sys.exit(main())
