"""The figures of a run as Markdown: ratios, times, memory, speeds of the machine."""

from __future__ import annotations

import pathlib
import re

import targets

BEGIN = "<!-- figures: written by bench/run --document -->"
END = "<!-- end of figures -->"


def markdown(results: dict) -> str:
    cells = results["cells"]
    datasets = [shape for shape in cells if shape.count("x") == 2]
    groups = [shape for shape in cells if shape.count("x") == 3]
    parts = [_heading(results)]
    for title, shapes in [("Ratios, datasets", datasets), ("Ratios, groups", groups)]:
        parts.append(_section(title, _ratios(results["rows"], shapes)))
    parts.append(_section("Other figures", _figures(results["figures"])))
    parts.append(_section("Speed of the machine, GB of the dataset a second",
                          _speeds(cells, datasets)))  # fmt: skip
    for title, shapes in [("Times, ms", datasets), ("Times of groups, ms", groups)]:
        parts.append(_section(title, _values(cells, shapes, _milliseconds)))
    for title, shapes in [
        ("Peak memory beyond what was there before, MiB", datasets),
        ("The same of groups, MiB", groups),
    ]:
        parts.append(_section(title, _values(cells, shapes, _mebibytes)))
    return "\n".join(part for part in parts if part)


def document(results: dict, path: pathlib.Path) -> None:
    """Replaces the block of figures of a document."""
    text = path.read_text(encoding="utf-8")
    block = re.compile(f"{re.escape(BEGIN)}.*{re.escape(END)}", re.DOTALL)
    if not block.search(text):
        raise ValueError(f"{path} has no block of figures")
    image = "![Cost against size](images/performance.png)\n"
    new = f"{BEGIN}\n\n{image}\n{markdown(results)}\n{END}"
    path.write_text(block.sub(lambda _: new, text), encoding="utf-8")


def _heading(results: dict) -> str:
    machine = results["machine"]
    kind = "A short trial, no measure." if results["quick"] else "Medians."
    return (
        f"{kind} Rounds: {results['rounds']}, minutes: {results['minutes']:.0f}. "
        f"{machine['processor']}, {machine['cores']} cores, {machine['passes']}; "
        f"{machine['system']}, {machine['compiler']}; {machine['peers']}.\n"
    )


def _section(title: str, table: str) -> str:
    return f"### {title}\n\n{table}" if table else ""


def _table(head: list[str], rows: list[list[str]]) -> str:
    if not rows:
        return ""
    lines = [head, ["---"] * len(head), *rows]
    return "".join(f"| {' | '.join(line)} |\n" for line in lines)


def _ratios(rows: list[dict], shapes: list[str]) -> str:
    """One line per comparison; a ratio beyond its target is bold."""
    lines = []
    for row in targets.ROWS:
        held = {
            found["shape"]: found
            for found in rows
            if (found["operation"], found["against"]) == (row.operation, row.against)
        }
        if not held.keys() & set(shapes):
            continue
        texts = []
        for shape in shapes:
            text = _digits(held[shape]["ratio"]) if shape in held else ""
            texts.append(text if not text or held[shape]["met"] else f"**{text}**")
        lines.append([row.operation, _name(row.against), _target(row), *texts])
    return _table(["operation", "beside", "target", *map(_extents, shapes)], lines)


def _target(row: targets.Row) -> str:
    several = row.single not in ("target", row.target)
    texts = [_digits(row.target) if row.target else "\u2013"]
    if several:
        texts.append(f"{_digits(row.single) if row.single else chr(0x2013)} for one slice")
    return "; ".join(texts)


def _figures(figures: list[dict]) -> str:
    lines = []
    for figure in figures:
        value = f"{figure['value']:,.0f}" if figure["value"] > 1000 else _digits(figure["value"])
        met = figure["value"] <= figure["target"]
        lines.append([
            figure["name"], _extents(figure["shape"]), value if met else f"**{value}**",
            f"{figure['target']:,}",
        ])  # fmt: skip
    return _table(["figure", "shape", "value", "target"], lines)


def _speeds(cells: dict, shapes: list[str]) -> str:
    lines = []
    for name in targets.SPEEDS:
        if any(name in cells[shape] for shape in shapes):
            lines.append([_name(name).removeprefix("limit: "), *(
                _digits(values_of(shape) * 8 / cells[shape][name]["median"] / 1e6)
                if name in cells[shape] else "" for shape in shapes
            )])  # fmt: skip
    return _table(["limit", *map(_extents, shapes)], lines)


def _values(cells: dict, shapes: list[str], text) -> str:
    """One line for each name; those without a figure worth a digit are left out."""
    names = dict.fromkeys(name for shape in shapes for name in cells[shape])
    lines = []
    for name in names:
        texts = [text(cells[shape][name]) if name in cells[shape] else "" for shape in shapes]
        if any(float(said or 0) for said in texts):
            lines.append([_name(name), *texts])
    return _table(["measured", *map(_extents, shapes)], lines)


def values_of(shape: str) -> int:
    """Values of a dataset or of all datasets of a group."""
    product = 1
    for extent in shape.split("x"):
        product *= int(extent)
    return product


def _milliseconds(cell: dict) -> str:
    return _digits(cell["median"])


def _mebibytes(cell: dict) -> str:
    return f"{cell['peak'] / (1 << 20):.1f}"


def _digits(value: float) -> str:
    """Three digits, as far as they count."""
    if value >= 100:
        return f"{value:.0f}"
    return f"{value:#.3g}"


def _name(cell: str) -> str:
    who, what = cell.split("/", 1)
    return f"{who}: {what}"


def _extents(shape: str) -> str:
    parts = shape.split("x")
    text = " x ".join(parts[-3:])
    return f"{parts[0]} of {text}" if len(parts) == 4 else text
