"""Pairs over time: lines, and for groups the mean in a band from the smallest to the largest."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Any, Sequence, Tuple

import numpy as np
from matplotlib.axes import Axes
from matplotlib.figure import Figure
from matplotlib.lines import Line2D
from matplotlib.patches import Patch
from matplotlib.ticker import MaxNLocator

from .containers import Group
from .plot_heat import name_room
from .plot_layout import add_words, caption_of, fitted, new_figure
from .plot_scale import FAINT, INK, LINE_COLOURS, Scale, make_scale
from .plot_source import DIFFERENCES, Member, Shown, finite_mean, lost_note, names_of, values_of

_STYLES = ("-", "--", ":", "-.")


@dataclass(frozen=True)
class Curve:
    """One line of a panel, and the band around it."""

    name: str
    times: np.ndarray
    values: np.ndarray
    low: np.ndarray | None = None
    high: np.ndarray | None = None

    @property
    def drawn(self) -> list[np.ndarray]:
        """All values that need room on the value axis."""
        return [part for part in (self.values, self.low, self.high) if part is not None]


@dataclass
class Courses:
    """A panel for each pair, or one for all pairs."""

    panels: list[tuple[str, list[Curve]]]
    timed: bool
    notes: list[str] = field(default_factory=list)

    @property
    def values(self) -> list[np.ndarray]:
        return [part for _, curves in self.panels for curve in curves for part in curve.drawn]


def courses_of(
    source, members: list[Member], labels: list[str] | None, pairs, count: int
) -> Courses:
    """The courses of `pairs`, or of the `count` pairs whose mean is strongest.

    Raises:
        ValueError: no such sensor, members of different shapes, nothing finite.
    """
    held = [m for m in members if m.family != DIFFERENCES] or members
    arrays = [values_of(member) for member in held]
    if len({array.shape[1:] for array in arrays}) > 1:
        raise ValueError("the datasets differ in their sensors; courses need the same ones")
    known = [(member.about.sensors, member.about.column_sensors) for member in held]
    rows, columns = names_of(labels, *known[0])
    lost = sum(int(array.size - np.isfinite(array).sum()) for array in arrays)
    arrays = [np.where(np.isfinite(array), array, np.nan) for array in arrays]
    if pairs is None:
        chosen = _strongest(arrays, count, same=rows == columns)
    else:
        chosen = [(sensor_index(rows, a), sensor_index(columns, b)) for a, b in pairs]
    if not chosen:
        raise ValueError("no finite value to show")
    named = [(f"{rows[r]} \u2013 {columns[c]}", r, c) for r, c in chosen]
    panels_of = _bands if isinstance(source, Group) and len(held) > 1 else _lines
    result = panels_of(held, arrays, named)
    notes = lost_note(lost)
    if labels is None and any(names != known[0] for names in known):
        notes.append("the datasets name their sensors differently; names are those of the first")
    result.notes[:0] = notes
    if not any(np.isfinite(array).any() for array in result.values):
        raise ValueError("no finite value to show")
    return result


_Pairs = Sequence[Tuple[str, int, int]]  # name, row, column


def _bands(held: list[Member], arrays: list[np.ndarray], pairs: _Pairs) -> Courses:
    """A panel for each pair with the mean of all datasets, over the slices that all have."""
    notes = []
    length = min(len(array) for array in arrays)
    if any(len(array) != length for array in arrays):
        notes.append(f"first {length} slices, which all datasets have")
    timed = _timed(held)
    times = held[0].about.times[:length]
    if not all(np.allclose(member.about.times[:length], times) for member in held):
        timed, times = False, np.arange(length, dtype=np.float64)
        notes.append("by slice, as the datasets differ in their times")
    stack = np.stack([array[:length] for array in arrays])
    panels = [(name, [_band(times, stack[:, :, r, c], len(held))]) for name, r, c in pairs]
    return Courses(panels, timed, notes)


def _lines(held: list[Member], arrays: list[np.ndarray], pairs: _Pairs) -> Courses:
    """One panel with a line for each pair, or a panel for each pair with one for each dataset."""
    timed = _timed(held)
    clocks = [_clock(member, timed) for member in held]
    if len(held) == 1:
        lines = [Curve(name, clocks[0], arrays[0][:, r, c]) for name, r, c in pairs]
        return Courses([("", lines)], timed)
    names = [member.name for member in held]
    panels = [
        (pair, [Curve(name, times, a[:, r, c]) for name, times, a in zip(names, clocks, arrays)])
        for pair, r, c in pairs
    ]
    return Courses(panels, timed)


def _timed(held: list[Member]) -> bool:
    return all(member.about.sampling_rate > 0 for member in held)


def _clock(member: Member, timed: bool) -> np.ndarray:
    times = member.about.times
    return times if timed else np.arange(len(times), dtype=np.float64)


def _band(times: np.ndarray, values: np.ndarray, count: int) -> Curve:
    mean, _ = finite_mean(values)
    some = np.isfinite(values).any(axis=0)
    low = np.where(some, np.where(np.isfinite(values), values, np.inf).min(axis=0), np.nan)
    high = np.where(some, np.where(np.isfinite(values), values, -np.inf).max(axis=0), np.nan)
    return Curve(f"mean of {count}, minimum to maximum", times, mean, low, high)


def _strongest(arrays: list[np.ndarray], count: int, same: bool) -> list[tuple[int, int]]:
    """Of rows and columns of the same sensors a pair counts once, whatever its direction."""
    if count < 1:
        raise ValueError("at least one pair")
    means = np.stack([finite_mean(array)[0] for array in arrays])
    size = np.nan_to_num(np.abs(finite_mean(means)[0]), nan=-1.0)
    rows, columns = size.shape
    if same:
        size = np.maximum(size, size.T)
        size[np.tril_indices(rows)] = -1.0
        if rows == 1:
            size[0, 0] = 0.0
    order = np.argsort(-size, axis=None, kind="stable")[:count]
    return [
        (int(i // columns), int(i % columns)) for i in order if size.ravel()[i] >= 0.0
    ]


def sensor_index(labels: list[str], sensor: int | str) -> int:
    """By index from 0, or by name, small and capital letters alike where that is no matter."""
    if not isinstance(sensor, str):
        if not 0 <= sensor < len(labels):
            raise ValueError(f"there is no sensor {sensor}; they count from 0 to {len(labels) - 1}")
        return int(sensor)
    if sensor in labels:
        return labels.index(sensor)
    alike = [i for i, label in enumerate(labels) if label.lower() == sensor.lower()]
    if len(alike) != 1:
        few = ", ".join(labels[:8]) + (" ..." if len(labels) > 8 else "")
        raise ValueError(f"there is no sensor {sensor!r}; there are {few}")
    return alike[0]


_TITLES = 0.8  # room of title and subtitle [inch]


def course_figure(
    shown: Shown, found: Courses, *, signed: bool | None, limits, shared: bool
) -> Figure:
    """A figure of all panels; `signed`, `limits` and `shared` as for the other pictures."""
    one = len(found.panels) == 1
    inside = found.panels[0][0] == ""  # every curve is a pair of its own
    ends = [curve.name for _, curves in found.panels for curve in curves]
    right = max(name_room([name], 8.5) for name in ends) + 0.15 if inside else 0.25
    columns = 1 if one else 2 if len(found.panels) <= 8 else 3
    rows = -(-len(found.panels) // columns)
    wide = {1: 5.6, 2: 3.3, 3: 2.5}[columns]
    tall = 3.2 if one else 1.5
    gap = 0.3 if shared else 0.55  # with the numbers of every panel
    row_gap, left = 0.42, 0.75
    width = left + columns * wide + (columns - 1) * gap + right
    caption = caption_of(shown, width)
    bottom = 0.62 + (0.16 * len(caption) + 0.05 if caption else 0.0)
    legend = 0.0 if inside else 0.3
    own_title = 0.0 if one else 0.25
    height = _TITLES + legend + rows * (tall + row_gap) - row_gap + bottom + own_title
    figure = new_figure(width, height)
    whole = make_scale(found.values, signed=signed, limits=limits)
    first = None
    for number, (name, curves) in enumerate(found.panels):
        r, c = divmod(number, columns)
        x = left + c * (wide + gap)
        y = height - _TITLES - legend - own_title - r * (tall + row_gap) - tall
        scale = whole if shared or one else make_scale(
            [part for curve in curves for part in curve.drawn], signed=signed, limits=limits
        )  # fmt: skip
        axes = figure.add_axes(
            (x / width, y / height, wide / width, tall / height),
            sharex=first, sharey=first if scale is whole else None,
        )  # fmt: skip
        first = first or axes
        _draw_curves(axes, curves, scale, named=inside, height=tall)
        if name:
            axes.set_title(fitted(name, wide, 9.5), fontsize=9.5, color=INK, pad=4)
        lowest = number + columns >= len(found.panels)
        axes.tick_params(labelbottom=lowest, labelleft=c == 0 or scale is not whole)
        if lowest:
            axes.set_xlabel("time [s]" if found.timed else "slice", fontsize=9.5, color=INK)
    _name_values(figure, shown.quantities[0], bottom, height - _TITLES - legend)
    if not inside:
        _legend(figure, found.panels[0][1], 1 - 0.76 / height, left / width)
    add_words(figure, shown, caption, 0.3)
    return figure


def _name_values(figure: Figure, quantity: str, low: float, high: float) -> None:
    """The name of the value axes at the left edge, between `low` and `high` inches."""
    width, height = figure.get_size_inches()
    size = min(9.5, (height - _TITLES) * 72.0 / (len(quantity) * 0.55))
    figure.text(
        0.16 / width, (low + high) / 2 / height, quantity, rotation=90, va="center", ha="center",
        fontsize=size, color=INK,
    )  # fmt: skip


def _legend(figure: Figure, curves: Sequence[Curve], top: float, left: float) -> None:
    handles: list[Any] = []
    longest = max(len(curve.times) for curve in curves)
    for number, curve in enumerate(curves):
        colour = LINE_COLOURS[number % len(LINE_COLOURS)]
        once = len(curve.times) == 1 < longest
        line = Line2D([], [], color=colour, linewidth=1.5, linestyle="--" if once else "-")
        handles.append((Patch(color=colour, alpha=0.22), line) if curve.low is not None else line)
    figure.legend(
        handles, [curve.name for curve in curves], loc="upper left", bbox_to_anchor=(left, top),
        ncol=4, frameon=False, fontsize=8.5, borderaxespad=0.0, borderpad=0.0,
        labelcolor=INK, columnspacing=1.5, handlelength=1.6,
    )  # fmt: skip


def _draw_curves(
    axes: Axes, curves: Sequence[Curve], scale: Scale, *, named: bool, height: float
) -> None:
    """The curves, with their names at their ends where `named`."""
    several = max(len(curve.times) for curve in curves) > 1
    for number, curve in enumerate(curves):
        colour = LINE_COLOURS[number % len(LINE_COLOURS)]
        style = _STYLES[number // len(LINE_COLOURS) % len(_STYLES)]
        if curve.low is not None and curve.high is not None:
            axes.fill_between(
                curve.times, curve.low, curve.high, color=colour, alpha=0.22, linewidth=0
            )
            if len(curve.times) == 1:
                axes.vlines(curve.times, curve.low, curve.high, color=colour, alpha=0.4, lw=5)
        if len(curve.times) == 1 and curve.low is None and several:
            # One value for the whole time, such as the mean of Control.
            axes.axhline(float(curve.values[0]), color=colour, linestyle="--", linewidth=1.5)
            continue
        # A value between two that are missing would have no line.
        dots = "o" if len(curve.times) <= 2 else None
        axes.plot(
            curve.times, curve.values, style, color=colour, linewidth=1.5, marker=dots, ms=4,
            solid_joinstyle="round", label=curve.name,
        )  # fmt: skip
        alone = _alone(curve.values)
        if dots is None and alone.any():
            axes.plot(curve.times[alone], curve.values[alone], "o", color=colour, ms=3)
    low, high = float(scale.norm.vmin), float(scale.norm.vmax)  # type: ignore[arg-type]
    axes.set_ylim(low, high)
    if scale.signed:
        axes.axhline(0.0, color=FAINT, linewidth=0.7, zorder=0.5)
    for side in ("top", "right"):
        axes.spines[side].set_visible(False)
    for side in ("left", "bottom"):
        axes.spines[side].set(color=FAINT, linewidth=0.7)
    axes.tick_params(labelsize=8.5, length=3, color=FAINT, labelcolor=INK)
    axes.grid(axis="y", color="#e6e6e6", linewidth=0.6)
    axes.set_axisbelow(True)
    axes.yaxis.set_major_locator(MaxNLocator(5 if height > 1.6 else 4, steps=[1, 2, 5, 10]))
    if named:
        _end_names(axes, curves, height, (low, high))


def _alone(values: np.ndarray) -> np.ndarray:
    there = np.isfinite(values)
    before = np.append(False, there[:-1])
    return there & ~before & ~np.append(there[1:], False)


def _end_names(axes: Axes, curves: Sequence[Curve], height: float, ends) -> None:
    """Names beside the last values, moved apart where they would overlap."""
    low, high = ends
    most = height * 72.0 / 10.5
    step = 10.5 / (height * 72.0) * (high - low)
    lasts = []
    for number, curve in enumerate(curves):
        finite = np.flatnonzero(np.isfinite(curve.values))
        if finite.size:
            lasts.append([float(np.clip(curve.values[finite[-1]], low, high)), number])
    lasts.sort()
    for _ in range(200):
        moved = False
        for below, above in zip(lasts, lasts[1:]):
            lack = step - (above[0] - below[0])
            if lack > step * 1e-3:
                below[0] -= lack / 2
                above[0] += lack / 2
                moved = True
        if not moved:
            break
    if len(lasts) <= most:  # all within the height of the axes
        for place in range(len(lasts) - 1, -1, -1):
            top = high if place == len(lasts) - 1 else lasts[place + 1][0] - step
            lasts[place][0] = min(lasts[place][0], top)
        for place in range(len(lasts)):
            bottom = low if place == 0 else lasts[place - 1][0] + step
            lasts[place][0] = max(lasts[place][0], bottom)
    for height_at, at in lasts:
        axes.annotate(
            curves[int(at)].name, (1.0, height_at), (6, 0), xycoords=("axes fraction", "data"),
            textcoords="offset points", va="center", ha="left", fontsize=8.5,
            color=LINE_COLOURS[int(at) % len(LINE_COLOURS)], annotation_clip=False,
        )  # fmt: skip
