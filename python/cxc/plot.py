"""Pictures of datasets, packages and groups: one call each, a Matplotlib figure, a file.

>>> from cxc import plot
>>> plot.heatmap(dataset, "alpha.png")
>>> plot.head(package, "alpha.pdf", lines=30, positions=raw.info)
>>> plot.course(group, "alpha.svg", pairs=[("O1", "O2")])

A dataset gives one panel, a package one each for Active, Control and Act-Ctl, a group one for each
dataset but its own averages and summaries. Panels share one colour scale, except that Act-Ctl has
one of its own; values of both signs get diverging colours with zero in the middle. An array, row x
column sensors, is drawn as a dataset of one slice; its labels may stand before the path:
heatmap(values, labels, "a.png").

Arguments that all of them know:

    path: .png, .pdf or .svg; written whole or not at all. The figure is returned in any case.
    labels: names of the sensors; those that the dataset knows when None. Of the row sensors alone
        where the columns are others, as after `Dataset.select(rows=..., columns=...)`.
    slices, time: which slices to take: an index from 0, a Python slice or several indices, or
        those with a latency from time[0] to time[1]; the selected ones when None.
    limits: values at the ends of the colours; from the values when None.
    top: the upper one alone; the lower one is 0, or -top with diverging colours.
    difference_limits: the same for Act-Ctl of a package.
    signed: diverging colours; where there are negative values when None.
    shared: one scale for all; False gives each panel its own.
    title, subtitle, quantity: words over the picture and at the colour bar.
    dpi: dots per inch of PNG.
    overwrite: replace an existing file.

What cannot be shown raises ValueError with one line, and a path that cannot be written OSError.
What is left out (sensors without position, values that are no finite numbers) stands in the
caption; sensors without position are warned of, too.
"""

from __future__ import annotations

import functools
import os
import textwrap
import warnings
from dataclasses import dataclass, fields, replace
from typing import Any, Callable, Sequence

import matplotlib
import numpy as np
from matplotlib.figure import Figure

from .plot_circle import draw_circle
from .plot_course import course_figure, courses_of, sensor_index
from .plot_head import draw_head, draw_map, missing, missing_note, places_of
from .plot_heat import draw_heat, label_fit, name_room, short
from .plot_layout import DPI, Look, compose, format_of, save
from .plot_lines import Line, one_directed, reach_of, strongest
from .plot_scale import FAINT, INK, Scale, make_scale, rounded_top
from .plot_source import (
    Panel,
    Shown,
    Slices,
    Source,
    entitled,
    means,
    members_of,
    quantity_of,
    series,
)

__all__ = ["circle", "course", "head", "heatmap", "multiples", "seed", "shared_top", "KINDS"]


@dataclass(frozen=True)
class _Common:
    """The arguments that all pictures know; see the module."""

    limits: Any = None
    top: float | None = None
    difference_limits: Any = None
    signed: bool | None = None
    shared: bool = True
    title: str | None = None
    subtitle: str | None = None
    quantity: str | None = None
    dpi: int = DPI
    overwrite: bool = True


def _common(options: dict[str, Any]) -> _Common:
    unknown = set(options) - {field.name for field in fields(_Common)}
    if unknown:
        raise TypeError(f"unknown argument {sorted(unknown)[0]!r}")
    common = _Common(**options)
    if common.top is not None:
        if common.limits is not None:
            raise ValueError("either limits or top, not both")
        common = replace(common, limits=common.top)
    if not 10 <= common.dpi <= 2400:
        raise ValueError("dpi must be 10 to 2400")
    return common


def _picture(draw: Callable[..., Figure]) -> Callable[..., Figure]:
    """Finds out early whether the ending is known; names in data are no formulas."""

    @functools.wraps(draw)
    def drawn(source: Source, *where: Any, path: Any = None, **options: Any) -> Figure:
        if len(where) == 2:
            options["labels"], path = where
        elif where:
            (path,) = where
        if path is not None:
            format_of(path)
        with matplotlib.rc_context({"text.parse_math": False, "axes.unicode_minus": True}):
            return draw(source, path, **options)

    return drawn


@_picture
def heatmap(
    source: Source,
    path: str | os.PathLike | None = None,
    *,
    labels: Sequence[str] | None = None,
    slices: Slices = None,
    time: tuple[float, float] | None = None,
    threshold: float | None = None,
    **options: Any,
) -> Figure:
    """Every pair as a cell; a sensor with itself and what is no number are grey.

    Args:
        threshold: pairs of a smaller magnitude are left white.
        source, path, labels, slices, time and the rest: as the module says.
    """
    common = _common(options)
    shown = means(source, labels=labels, slices=slices, time=time)
    _threshold_note(shown, threshold, "white")
    return _finished(_heat_figure(shown, common, threshold), path, common)


@_picture
def circle(
    source: Source,
    path: str | os.PathLike | None = None,
    *,
    labels: Sequence[str] | None = None,
    slices: Slices = None,
    time: tuple[float, float] | None = None,
    lines: int | None = None,
    threshold: float | None = None,
    **options: Any,
) -> Figure:
    """The sensors on a circle, joined where they are most coherent.

    Sensors with 10-20 names stand as on the head, nose up and left on the left; others follow
    each other clockwise from the top.

    Args:
        lines: how many; as many as sensors and at least 10 when None. Pairs of value 0 have none.
        threshold: pairs of a smaller magnitude have no line.
        source, path, labels, slices, time and the rest: as the module says.
    """
    common = _common(options)
    shown = means(source, labels=labels, slices=slices, time=time, same="a circle")
    return _finished(_circle_figure(shown, common, lines, threshold), path, common)


@_picture
def head(
    source: Source,
    path: str | os.PathLike | None = None,
    *,
    positions: Any = None,
    labels: Sequence[str] | None = None,
    slices: Slices = None,
    time: tuple[float, float] | None = None,
    lines: int | None = None,
    threshold: float | None = None,
    **options: Any,
) -> Figure:
    """The head from above, its sensors joined where they are most coherent.

    Args:
        positions: a montage or `Info` of MNE, the name of one of its montages, a file with a
            montage or a recording, or a mapping of labels to (x, y, z); the 10-05 system when
            None. Sensors without position are listed.
        lines, threshold: as for `circle`.
        source, path, labels, slices, time and the rest: as the module says.

    Raises:
        ValueError: no two sensors have a position.
    """
    common = _common(options)
    shown = means(source, labels=labels, slices=slices, time=time, same="a head view")
    places = _places(shown, positions)
    return _finished(_head_figure(shown, common, places, lines, threshold), path, common)


@_picture
def seed(
    source: Source,
    path: str | os.PathLike | None = None,
    *,
    sensor: int | str,
    positions: Any = None,
    labels: Sequence[str] | None = None,
    slices: Slices = None,
    time: tuple[float, float] | None = None,
    bars: bool | None = None,
    **options: Any,
) -> Figure:
    """One sensor's coherence with all others: a map of the head, or bars.

    Args:
        sensor: the seed, by name or by index from 0; it is the row sensor.
        positions: as for `head`.
        bars: bars, strongest first, instead of a map; when None, where fewer than 4 sensors have
            positions.
        source, path, labels, slices, time and the rest: as the module says.
    """
    common = _common(options)
    shown = means(source, labels=labels, slices=slices, time=time, same="a seed map")
    indices = [sensor_index(panel.rows, sensor) for panel in shown.panels]
    name = shown.panels[0].rows[indices[0]]
    shown.title = f"{name} with all others: {shown.title}" if shown.title else name
    if not any(
        np.isfinite(_without(panel.values[at], at)).any()
        for panel, at in zip(shown.panels, indices)
    ):
        raise ValueError(f"{name} has no finite value with any other sensor")
    if bars:
        return _finished(_bar_figure(shown, common, indices), path, common)
    found = [places_of(panel.rows, positions) for panel in shown.panels]
    if bars is None and min(np.isfinite(p).all(axis=1).sum() for p in found) < 4:
        shown.notes.append("too few sensors have positions for a map")
        return _finished(_bar_figure(shown, common, indices), path, common)
    places = _places(shown, positions)
    return _finished(_map_figure(shown, common, places, indices), path, common)


@_picture
def course(
    source: Source,
    path: str | os.PathLike | None = None,
    *,
    pairs: Sequence[tuple[int | str, int | str]] | None = None,
    lines: int = 6,
    labels: Sequence[str] | None = None,
    **options: Any,
) -> Figure:
    """Pairs over time: of a dataset in one panel, else a panel for each pair.

    A package gives a line each for Active and Control; a group its mean in a band from the
    smallest to the largest value of its datasets.

    Args:
        pairs: of sensors, by name or by index from 0, the row sensor first; when None, those of
            the largest mean.
        lines: how many pairs when `pairs` is None.
        labels, path and the rest: as the module says; `limits` are those of the value axis.
    """
    common = _common(options)
    if isinstance(source, np.ndarray):
        raise TypeError("a course over time needs a dataset, package or group")
    members = members_of(source)
    given = None if labels is None else [str(label) for label in labels]
    found = courses_of(source, members, given, pairs, lines)
    shown = entitled(Shown([[]], notes=found.notes), source, members)
    shown.quantities = {0: quantity_of(members[0], any((v < 0).any() for v in found.values))}
    _reword(shown, common)
    figure = course_figure(
        shown, found, signed=common.signed, limits=common.limits, shared=common.shared
    )
    return _finished(figure, path, common)


@_picture
def multiples(
    source: Source,
    path: str | os.PathLike | None = None,
    *,
    of: str = "heat",
    count: int | None = None,
    labels: Sequence[str] | None = None,
    slices: Slices = None,
    time: tuple[float, float] | None = None,
    lines: int | None = None,
    threshold: float | None = None,
    positions: Any = None,
    **options: Any,
) -> Figure:
    """Small pictures of single slices beside each other, with one scale for all.

    Several datasets have a row each.

    Args:
        of: "heat", "circle" or "head".
        count: how many slices, evenly spread over those asked for; when None 12 of a dataset
            and 6 of each of several.
        lines, threshold, positions: as for the picture of that kind.
        source, path, labels, slices, time and the rest: as the module says.
    """
    common = _common(options)
    if of not in ("heat", "circle", "head"):
        raise ValueError(f"multiples of heat, circle or head, not {of!r}")
    if isinstance(source, np.ndarray):
        raise TypeError("slices over time need a dataset, package or group")
    if count is None:
        count = 12 if len(members_of(source)) == 1 else 6
    same = None if of == "heat" else "a circle" if of == "circle" else "a head view"
    shown = series(source, labels=labels, slices=slices, time=time, count=count, same=same)
    if of == "heat":
        _threshold_note(shown, threshold, "white")
        figure = _heat_figure(shown, common, threshold)
    elif of == "circle":
        figure = _circle_figure(shown, common, lines, threshold)
    else:
        places = _places(shown, positions)
        figure = _head_figure(shown, common, places, lines, threshold)
    return _finished(figure, path, common)


# What the command line calls them.
KINDS: dict[str, Callable[..., Figure]] = {
    "heat": heatmap,
    "circle": circle,
    "head": head,
    "seed": seed,
    "course": course,
    "multiples": multiples,
}


def shared_top(matrices) -> float:
    """The end of a colour scale that suits several sensors x sensors matrices, diagonals apart."""
    largest = 0.0
    for values in matrices:
        off = np.abs(values[~np.eye(values.shape[0], dtype=bool)])
        largest = max(largest, float(np.max(off, where=np.isfinite(off), initial=0.0)))
    return rounded_top(largest)


# -- figures of the kinds


def _heat_figure(shown: Shown, common: _Common, threshold: float | None) -> Figure:
    _reword(shown, common)
    scales = _scales(shown, common, [[panel.apart()] for panel in shown.panels])
    many = len(shown.panels) > 1
    largest = max(max(panel.values.shape) for panel in shown.panels)
    wide = max(len(row) for row in shown.grid)
    if not many:
        side = float(np.clip(1.6 + 0.17 * largest, 4.8, 12.0))
    else:
        side = {1: 3.6, 2: 3.2, 3: 2.6, 4: 2.0}.get(wide, 1.4)
    tallest = max(p.values.shape[0] / max(p.values.shape) for p in shown.panels)
    widest = max(p.values.shape[1] / max(p.values.shape) for p in shown.panels)
    size, _ = label_fit(side * 72.0 / largest, many)
    names = max((name for p in shown.panels for name in (p.rows + p.columns)), key=len)
    room = name_room([names], size)
    alike = len({(*panel.rows, None, *panel.columns) for panel in shown.panels}) == 1
    look = Look(
        side * widest, side * tallest, left=room + 0.25, bottom=room + 0.3,
        gap=0.15 if alike else room + 0.1, row_gap=0.16 if alike else room + 0.1,
    )  # fmt: skip
    last = len(shown.grid) - 1

    def draw(axes, panel: Panel, r: int, c: int) -> None:
        lowest = r == last or c >= len(shown.grid[r + 1])
        draw_heat(
            axes, panel, _scale_of(scales, shown, panel, common), side, threshold=threshold,
            row_names=not alike or c == 0, column_names=not alike or lowest, thin=many,
        )  # fmt: skip
        if c == 0 and (not many or r == len(shown.grid) // 2):
            axes.set_ylabel("row sensor", fontsize=9, color=FAINT, labelpad=3)
        if lowest and (not many or c == 0):
            axes.set_xlabel("column sensor", fontsize=9, color=FAINT, labelpad=3)

    return compose(shown, scales, look, draw, separate=_separate(shown, common))


def _circle_figure(
    shown: Shown, common: _Common, lines: int | None, threshold: float | None
) -> Figure:
    drawn = _lines_of(shown, lines, threshold, None)
    _reword(shown, common)
    scales = _scales(shown, common, [[_values(part)] for part in drawn], for_lines=True)
    side = _side(shown, 6.6 if len(shown.panels[0].rows) <= 40 else 8.2)
    of_panel = {id(panel): part for panel, part in zip(shown.panels, drawn)}
    reach = reach_of(drawn)

    def draw(axes, panel: Panel, r: int, c: int) -> None:
        named = len(panel.rows) <= (20 if side < 2.4 else 40 if side < 3.3 else 400)
        draw_circle(
            axes, panel, of_panel[id(panel)], _scale_of(scales, shown, panel, common),
            _reach(drawn, shown, panel, reach), side, names=named,
        )  # fmt: skip

    look = Look(side, side, left=0.15, bottom=0.15, gap=0.12, row_gap=0.15)
    return compose(shown, scales, look, draw, separate=_separate(shown, common))


def _head_figure(
    shown: Shown,
    common: _Common,
    places: list[np.ndarray],
    lines: int | None,
    threshold: float | None,
) -> Figure:
    usable = [np.isfinite(place).all(axis=1) for place in places]
    if max(there.sum() for there in usable) < 2:
        raise ValueError(
            "fewer than two sensors have a position; give them with positions "
            "(a montage, a recording, or (x, y, z) of each)"
        )
    drawn = _lines_of(shown, lines, threshold, usable)
    _reword(shown, common)
    scales = _scales(shown, common, [[_values(part)] for part in drawn], for_lines=True)
    side = _side(shown, 6.2 if len(shown.panels[0].rows) <= 40 else 7.4)
    of_panel = {id(p): (part, place) for p, part, place in zip(shown.panels, drawn, places)}
    reach = reach_of(drawn)

    def draw(axes, panel: Panel, r: int, c: int) -> None:
        part, place = of_panel[id(panel)]
        draw_head(
            axes, panel, place, part, _scale_of(scales, shown, panel, common),
            _reach(drawn, shown, panel, reach), side,
            names=side > 2.05 and (side > 2.5 or len(panel.rows) <= 24),
        )  # fmt: skip

    look = Look(side, side, left=0.15, bottom=0.15, gap=0.12, row_gap=0.15)
    return compose(shown, scales, look, draw, separate=_separate(shown, common))


def _map_figure(
    shown: Shown, common: _Common, places: list[np.ndarray], seeds: list[int]
) -> Figure:
    _reword(shown, common)
    _in_rows(shown)
    with_others = [_without(p.values[at], at) for p, at in zip(shown.panels, seeds)]
    scales = _scales(shown, common, [[values] for values in with_others])
    side = _side(shown, 5.0)
    of_panel = {id(p): part for p, part in zip(shown.panels, zip(with_others, places, seeds))}

    def draw(axes, panel: Panel, r: int, c: int) -> None:
        values, place, at = of_panel[id(panel)]
        draw_map(
            axes, values, place, at, _scale_of(scales, shown, panel, common), side,
            panel.rows[at] if side > 2.05 else "",
        )  # fmt: skip

    look = Look(side, side, left=0.15, bottom=0.15, gap=0.12, row_gap=0.15)
    return compose(shown, scales, look, draw, separate=_separate(shown, common))


_MOST_BARS = 60


def _bar_figure(shown: Shown, common: _Common, seeds: list[int]) -> Figure:
    _reword(shown, common)
    _in_rows(shown)
    with_others = [_without(p.values[at], at) for p, at in zip(shown.panels, seeds)]
    scales = _scales(shown, common, [[values] for values in with_others])
    count = max(sum(1 for v in values if np.isfinite(v)) for values in with_others)
    if count > _MOST_BARS:
        shown.notes.append(f"the strongest {_MOST_BARS} of {count} sensors")
    count = min(count, _MOST_BARS)
    side = _side(shown, 5.0)
    names = [name for panel in shown.panels for name in panel.rows]
    room = name_room(names)
    height = max(0.16 * count, 1.2)
    of_panel = {id(p): part for p, part in zip(shown.panels, with_others)}

    def draw(axes, panel: Panel, r: int, c: int) -> None:
        values = of_panel[id(panel)]
        scale = _scale_of(scales, shown, panel, common)
        falling = np.argsort(-np.nan_to_num(np.abs(values), nan=-1.0), kind="stable")
        order = [int(i) for i in falling if np.isfinite(values[i])][:count]
        size = min(8.0, height / max(count, 1) * 72.0 * 0.78)
        axes.barh(range(len(order)), values[order], height=0.76, color=scale(values[order]))
        axes.set_yticks(
            range(len(order)), [short(panel.rows[i]) for i in order], fontsize=size, color=INK
        )
        axes.set_ylim(count - 0.4, -0.6)
        axes.set_xlim(float(scale.norm.vmin or 0.0), float(scale.norm.vmax or 1.0))
        axes.tick_params(labelsize=size, length=2, color=FAINT, labelcolor=INK)
        quantity = shown.quantities.get(panel.family, shown.quantities.get(0, ""))
        wrapped = textwrap.fill(quantity, int(side * 72.0 / 4.8))
        axes.set_xlabel(wrapped, fontsize=9 if side > 4 else 8, color=INK)
        axes.axvline(0.0, color=FAINT, linewidth=0.7)
        for spine in ("top", "right", "left"):
            axes.spines[spine].set_visible(False)
        axes.spines["bottom"].set(color=FAINT, linewidth=0.7)

    look = Look(side, height, left=room + 0.1, bottom=0.55, gap=room + 0.15, row_gap=0.6)
    return compose(shown, scales, look, draw, separate=_separate(shown, common), bar=False)


# -- what the kinds have in common


def _finished(figure: Figure, path, common: _Common) -> Figure:
    return save(figure, path, dpi=common.dpi, overwrite=common.overwrite)


def _reword(shown: Shown, common: _Common) -> None:
    if common.title is not None:
        shown.title = common.title
    if common.subtitle is not None:
        shown.subtitle = common.subtitle
    if common.quantity is not None:
        shown.quantities = dict.fromkeys(shown.quantities or {0: ""}, common.quantity)


def _in_rows(shown: Shown) -> None:
    """Many datasets stand in several rows."""
    row = shown.grid[0]
    if len(shown.grid) == 1 and len(row) > 4:
        wide = 3 if len(row) in (5, 6, 9) else 4 if len(row) <= 20 else 6
        shown.grid = [row[i : i + wide] for i in range(0, len(row), wide)]


def _side(shown: Shown, single: float) -> float:
    if len(shown.panels) == 1:
        return single
    return {1: 3.6, 2: 3.2, 3: 2.6, 4: 2.1}.get(max(len(row) for row in shown.grid), 1.4)


def _separate(shown: Shown, common: _Common) -> bool:
    return not common.shared and len(shown.panels) > 1


def _scales(
    shown: Shown, common: _Common, values: list[list[np.ndarray]], for_lines: bool = False
) -> dict[int, Scale]:
    """By family, or by panel where each has its own; `values` are those that each panel shows."""
    _in_rows(shown)
    separate = _separate(shown, common)
    parts: dict[int, list[np.ndarray]] = {}
    families: dict[int, int] = {}
    for number, (panel, shows) in enumerate(zip(shown.panels, values)):
        key = number if separate else panel.family
        parts.setdefault(key, []).extend(shows)
        families[key] = panel.family
    both = len({panel.family for panel in shown.panels}) > 1
    return {
        key: make_scale(
            shows, signed=common.signed if not both or families[key] else None,
            limits=common.difference_limits if both and families[key] else common.limits,
            for_lines=for_lines,
        )
        for key, shows in parts.items()
    }  # fmt: skip


def _scale_of(scales: dict[int, Scale], shown: Shown, panel: Panel, common: _Common) -> Scale:
    if not _separate(shown, common):
        return scales[panel.family]
    return scales[[id(other) for other in shown.panels].index(id(panel))]


def _values(lines: list[Line]) -> np.ndarray:
    return np.array([line.value for line in lines])


def _lines_of(
    shown: Shown, count: int | None, threshold: float | None, usable: list[np.ndarray] | None
) -> list[list[Line]]:
    """The lines of each panel, told of in the caption."""
    drawn = []
    for number, panel in enumerate(shown.panels):
        wanted = max(len(panel.rows), 10) if count is None else count
        there = None if usable is None else usable[number]
        drawn.append(strongest(panel, wanted, threshold, there))
    most = max(map(len, drawn))
    above = f" at or above {threshold:g}" if threshold is not None else ""
    if most == 0:
        shown.notes.append(f"no pair{above}, so no lines")
    else:
        each = " in each panel" if len(drawn) > 1 else ""
        shown.notes.append(f"up to {most} strongest pairs{above}{each}" if each else (
            f"{most} strongest pair{'s' if most > 1 else ''}{above}"))  # fmt: skip
    if any(one_directed(panel) for panel in shown.panels):
        shown.notes.append("of the two directions of a pair the stronger one")
    return drawn


def _reach(drawn: list[list[Line]], shown: Shown, panel: Panel, reach) -> tuple[float, float]:
    """Magnitudes of the thinnest and thickest line among the panels of the same family."""
    if len({other.family for other in shown.panels}) == 1:
        return reach
    return reach_of([d for d, other in zip(drawn, shown.panels) if other.family == panel.family])


def _threshold_note(shown: Shown, threshold: float | None, colour: str) -> None:
    if threshold is None:
        return
    left = sum(int((np.abs(np.nan_to_num(p.apart())) >= threshold).sum()) for p in shown.panels)
    none = ", which are all" if left == 0 else ""
    shown.notes.append(f"magnitudes below {threshold:g}{none} are {colour}")


def _places(shown: Shown, positions: Any) -> list[np.ndarray]:
    known: dict[tuple[str, ...], np.ndarray] = {}
    for panel in shown.panels:
        key = tuple(panel.rows)
        if key not in known:
            known[key] = places_of(panel.rows, positions)
    lost = {n: None for key, places in known.items() for n in missing(list(key), places)}
    there = sum(int(np.isfinite(places).all(axis=1).sum()) for places in known.values())
    if lost and there:
        note = missing_note(list(lost))
        shown.notes.extend(note)
        warnings.warn(note[0], UserWarning, stacklevel=4)
    return [known[tuple(panel.rows)] for panel in shown.panels]


def _without(values: np.ndarray, seed: int) -> np.ndarray:
    others = values.copy()
    others[seed] = np.nan
    return others
