"""Pairs over time: lines, and for groups the mean in a band from the smallest to the largest."""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Sequence

import numpy as np
from matplotlib.axes import Axes
from matplotlib.ticker import MaxNLocator

from .containers import Group
from .plot_scale import FAINT, INK, LINE_COLOURS, Scale
from .plot_source import DIFFERENCES, Member, finite_mean, lost_note, names_of, values_of

_STYLES = ("-", "--", ":", "-.")


@dataclass(frozen=True)
class Curve:
    """One line of a panel, and the band around it."""

    name: str
    times: np.ndarray
    values: np.ndarray
    low: np.ndarray | None = None
    high: np.ndarray | None = None


@dataclass
class Courses:
    """A panel for each pair, or one for all pairs."""

    panels: list[tuple[str, list[Curve]]]
    timed: bool
    notes: list[str] = field(default_factory=list)

    @property
    def values(self) -> list[np.ndarray]:
        parts = [(c.values, c.low, c.high) for _, curves in self.panels for c in curves]
        return [array for part in parts for array in part if array is not None]


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
    timed = all(member.about.sampling_rate > 0 for member in held)
    names = [f"{rows[r]} \u2013 {columns[c]}" for r, c in chosen]
    notes = lost_note(lost)
    if labels is None and any(names != known[0] for names in known):
        notes.append("the datasets name their sensors differently; names are those of the first")
    panels: list[tuple[str, list[Curve]]] = []
    if isinstance(source, Group) and len(held) > 1:
        length = min(len(array) for array in arrays)
        if any(len(array) != length for array in arrays):
            notes.append(f"first {length} slices, which all datasets have")
        times = held[0].about.times[:length]
        alike = [np.allclose(m.about.times[:length], times) for m in held]
        if not all(alike):
            timed, times = False, np.arange(length, dtype=np.float64)
            notes.append("by slice, as the datasets differ in their times")
        stack = np.stack([array[:length] for array in arrays])
        for (r, c), name in zip(chosen, names):
            panels.append((name, [_band(times, stack[:, :, r, c], len(held))]))
    elif len(held) > 1:
        for (r, c), name in zip(chosen, names):
            curves = [
                Curve(m.name, _clock(m, timed), array[:, r, c]) for m, array in zip(held, arrays)
            ]
            panels.append((name, curves))
    else:
        curves = [
            Curve(name, _clock(held[0], timed), arrays[0][:, r, c])
            for (r, c), name in zip(chosen, names)
        ]
        panels.append(("", curves))
    result = Courses(panels, timed, notes)
    if not any(np.isfinite(array).any() for array in result.values):
        raise ValueError("no finite value to show")
    return result


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


def draw_course(
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
