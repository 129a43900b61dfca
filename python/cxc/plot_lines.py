"""Sensors joined by lines where they are most coherent: which pairs, and how lines look."""

from __future__ import annotations

from dataclasses import dataclass

import numpy as np
from matplotlib.axes import Axes
from matplotlib.patches import PathPatch
from matplotlib.path import Path

from .plot_scale import Scale
from .plot_source import Panel


@dataclass(frozen=True)
class Line:
    """A pair that is drawn."""

    first: int
    second: int
    value: float


def strongest(
    panel: Panel,
    count: int,
    threshold: float | None = None,
    usable: np.ndarray | None = None,
) -> list[Line]:
    """Up to `count` pairs of the largest magnitude, strongest first.

    Of a pair's two directions the stronger one counts. Values of 0 and below the threshold are
    left out, and sensors that are not `usable`.
    """
    if count < 1:
        raise ValueError("at least one line")
    rows, columns = np.triu_indices(len(panel.rows), 1)
    there, back = panel.values[rows, columns], panel.values[columns, rows]
    with np.errstate(invalid="ignore"):
        stronger = np.where(np.nan_to_num(np.abs(back)) > np.nan_to_num(np.abs(there)), back, there)
    size = np.nan_to_num(np.abs(stronger), nan=0.0)
    keep = size > 0.0
    if threshold is not None:
        keep &= size >= threshold
    if usable is not None:
        keep &= usable[rows] & usable[columns]
    order = [i for i in np.argsort(-size, kind="stable") if keep[i]][:count]
    return [Line(int(rows[i]), int(columns[i]), float(stronger[i])) for i in order]


def one_directed(panel: Panel) -> bool:
    """Whether the two directions of some pair differ."""
    apart = np.nan_to_num(panel.values)
    largest = np.abs(apart).max(initial=0.0)
    return bool(np.abs(apart / 2 - apart.T / 2).max(initial=0.0) > 1e-6 * largest)


def draw_lines(
    axes: Axes, lines: list[Line], curve, scale: Scale, reach: tuple[float, float], thick: float
) -> None:
    """Lines from the weakest to the strongest, thicker and on top where stronger.

    Args:
        curve: gives the three points of a line's curve.
        reach: magnitudes of the thinnest and the thickest line.
        thick: width of the thickest [pt].
    """
    least, most = reach
    for line in reversed(lines):
        share = 1.0 if most <= least else (abs(line.value) - least) / (most - least)
        path = Path(curve(line.first, line.second), [Path.MOVETO, Path.CURVE3, Path.CURVE3])
        axes.add_patch(
            PathPatch(
                path, fill=False, edgecolor=scale(line.value), capstyle="round",
                linewidth=thick * (0.2 + 0.8 * min(max(share, 0.0), 1.0)),
            )
        )  # fmt: skip


def reach_of(drawn: list[list[Line]]) -> tuple[float, float]:
    """Magnitudes of the thinnest and the thickest line.

    The thinnest is at most half of the thickest: lines of nearly the same magnitude look alike.
    """
    sizes = [abs(line.value) for lines in drawn for line in lines]
    return (min(min(sizes), max(sizes) / 2), max(sizes)) if sizes else (0.0, 1.0)
