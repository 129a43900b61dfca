"""The matrix of all pairs as coloured cells."""

from __future__ import annotations

import numpy as np
from matplotlib.axes import Axes
from matplotlib.colors import to_rgba

from .plot_scale import FAINT, INK, NEUTRAL, Scale
from .plot_source import Panel

_BLANK = "#ffffff"  # below the threshold


def draw_heat(
    axes: Axes,
    panel: Panel,
    scale: Scale,
    side: float,
    *,
    threshold: float | None = None,
    row_names: bool = True,
    column_names: bool = True,
    thin: bool = False,
) -> None:
    """Every pair as a cell of `axes`, which are `side` inches wide.

    A sensor with itself and what is no number are grey, magnitudes below `threshold` white.
    """
    values = panel.values
    shown = np.ma.masked_invalid(values)
    cells = np.array(scale(shown))
    cells[~np.isfinite(values)] = to_rgba(NEUTRAL)
    if threshold is not None:
        with np.errstate(invalid="ignore"):
            cells[np.abs(values) < threshold] = to_rgba(_BLANK)
    if panel.same:
        cells[np.diag_indices(len(panel.rows))] = to_rgba(NEUTRAL)
    axes.imshow(cells, interpolation="nearest", aspect="auto")
    height = side * values.shape[0] / max(values.shape)
    width = side * values.shape[1] / max(values.shape)
    _name(axes.yaxis, panel.rows, height * 72.0, row_names, thin)
    turned = _name(axes.xaxis, panel.columns, width * 72.0, column_names, thin)
    if column_names and turned:
        axes.tick_params(axis="x", labelrotation=90)
    for spine in axes.spines.values():
        spine.set_visible(threshold is not None)
        spine.set(color=NEUTRAL, linewidth=0.6)


def _name(axis, labels: list[str], room: float, shown: bool, thin: bool) -> bool:
    """Ticks with as many names as fit into `room` points; whether they are wider than that."""
    each = room / len(labels)
    size, every = label_fit(each, thin)
    ticks = np.arange(0, len(labels), every)
    names = [short(labels[i]) if shown else "" for i in ticks]
    axis.set_ticks(ticks, names, fontsize=size, color=INK)
    axis.set_tick_params(length=0 if not shown else 2 if every == 1 else 3, color=FAINT, pad=2)
    return max(len(name) for name in names) * size * 0.62 > each * every


def label_fit(room: float, thin: bool = False) -> tuple[float, int]:
    """Font size [pt] and spacing of labels with `room` points for each."""
    size = float(np.clip(room * 0.72, 6.0, 7.0 if thin else 10.0))
    return size, max(int(np.ceil(size * 1.05 / room)), 1)


def short(label: str, most: int = 14) -> str:
    return label if len(label) <= most else label[: most - 1] + "\u2026"


def name_room(labels: list[str], size: float = 8.0) -> float:
    """Inches that the longest of the names takes."""
    return max(len(short(label)) for label in labels) * size * 0.62 / 72.0 + 0.1
