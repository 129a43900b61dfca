"""Sensors on a circle, as on the head where their names tell."""

from __future__ import annotations

import re

import numpy as np
from matplotlib.axes import Axes

from .plot_heat import short
from .plot_lines import Line, draw_lines
from .plot_scale import FAINT, INK, Scale
from .plot_source import Panel

# From the front of the head to the back, for the order around the circle.
_ROWS = (
    "fp", "af", "f", "ft", "fc", "a", "t", "c", "tp", "cp", "p", "po", "o", "i",
)  # fmt: skip
# Older names of four sites, which would stand in the wrong row.
_RENAMED = {"t3": "t7", "t4": "t8", "t5": "p7", "t6": "p8"}
_SITE = re.compile(r"(fp|af|ft|fc|tp|cp|po|f|t|c|p|o|i|a)(z|\d{1,2})h?", re.I)


def draw_circle(
    axes: Axes,
    panel: Panel,
    lines: list[Line],
    scale: Scale,
    reach: tuple[float, float],
    side: float,
    *,
    names: bool = True,
) -> None:
    """The circle with `lines`, on axes that are `side` inches wide."""
    span = 1.22 if names else 1.06
    axes.set_xlim(-span, span)
    axes.set_ylim(-span, span)
    axes.set_axis_off()
    around = angles(panel.rows)
    points = np.stack([np.cos(around), np.sin(around)], axis=1)

    def curve(first: int, second: int):
        return [points[first], bend(points[first], points[second]), points[second]]

    draw_lines(axes, lines, curve, scale, reach, 4.0 if side > 4 else 2.6 if side > 2.4 else 1.8)
    joined = {sensor for line in lines for sensor in (line.first, line.second)}
    _ring(axes, panel.rows, around, points, joined, side / (2 * span), names)


def _ring(axes, labels, around, points, joined, radius: float, names: bool) -> None:
    """Dots and labels of the sensors; those without a line stay faint."""
    order = np.argsort(around)
    between = np.diff(np.append(around[order], around[order[0]] + 2 * np.pi)).min()
    arc = between * radius * 72.0  # room along the circle between two sensors [pt]
    size = float(np.clip(arc * 0.62, 5.0, 10.0 if radius > 1.5 else 7.0))
    every = max(int(np.ceil(5.6 / max(arc, 1e-9))), 1)
    colours = [INK if i in joined else "#b5b5b5" for i in range(len(labels))]
    dot = float(np.clip(arc * 0.5, 2.0, 7.0)) ** 2
    axes.scatter(points[:, 0], points[:, 1], s=dot, c=colours, zorder=3, linewidths=0)
    if not names:
        return
    for place, index in enumerate(order):
        if place % every:
            continue
        degrees = np.degrees(around[index]) % 360.0
        flipped = 90.0 < degrees < 270.0
        axes.text(
            *(points[index] * 1.035),
            short(labels[index], 9),
            fontsize=size,
            color=INK if index in joined else FAINT,
            rotation=degrees - 180.0 if flipped else degrees,
            rotation_mode="anchor",
            ha="right" if flipped else "left",
            va="center",
        )


def angles(labels: list[str]) -> np.ndarray:
    """Angle of each sensor [rad], counter-clockwise from the right."""
    count = len(labels)
    order = _head_order(labels)
    if order is None:
        return np.pi / 2 - 2 * np.pi * np.arange(count) / count
    left, right, top, bottom = order
    # Clockwise from the middle of the top: top, right side, bottom, left side.
    ring = top[len(top) // 2 :] + right + bottom + left[::-1] + top[: len(top) // 2]
    # An even number of sensors at the top stands half a place to each side of its middle.
    shift = 0.5 if len(top) % 2 == 0 else 0.0
    around = np.empty(count)
    around[ring] = np.pi / 2 - 2 * np.pi * (np.arange(count) + shift) / count
    return around


def bend(first: np.ndarray, second: np.ndarray) -> np.ndarray:
    """The point towards which the line of two sensors bends.

    Neighbours are joined near the rim and opposite ones through the middle, so that near pairs
    do not look like spikes.
    """
    middle = first + second
    length = float(np.hypot(*middle))  # 2 for the same place, 0 for opposite ones
    if length < 1e-9:
        return np.zeros(2)
    apart = np.sqrt(max(1.0 - (length / 2.0) ** 2, 0.0))  # sine of half the angle between them
    return middle / length * (1.0 - apart) * 0.85


def _head_order(labels: list[str]):
    """Left, right, front middle and back middle sensors; None unless all names are 10-20."""
    left: list[tuple[int, int, int]] = []
    right: list[tuple[int, int, int]] = []
    top: list[tuple[int, int, int]] = []
    bottom: list[tuple[int, int, int]] = []
    for index, label in enumerate(labels):
        match = _SITE.fullmatch(_RENAMED.get(label.lower(), label))
        if match is None:
            return None
        row = _ROWS.index(match[1].lower())
        if match[2].lower() == "z":
            (top if row < _ROWS.index("c") else bottom).append((row, 0, index))
            continue
        number = int(match[2])
        # Within a row the front half of the head runs outwards and the back half inwards, so
        # that neighbours on the head stay neighbours on the circle.
        (left if number % 2 else right).append((row, number, index))
    return tuple([index for _, _, index in sorted(side)] for side in (left, right, top, bottom))
