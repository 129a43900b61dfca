"""Pictures of one sensors x sensors matrix: a heat map and a circle of the strongest pairs."""

from __future__ import annotations

import re

import numpy as np
from matplotlib import colormaps
from matplotlib.backends.backend_agg import FigureCanvasAgg
from matplotlib.colors import Colormap, LinearSegmentedColormap, Normalize
from matplotlib.figure import Figure
from matplotlib.patches import PathPatch
from matplotlib.path import Path

from .files import whole_file

DPI = 150
COHERENCE = "magnitude-squared coherence"

_NEUTRAL = "#d4d4d4"  # the diagonal and cells that are no number
_INK = "#222222"
_FAINT = "#6e6e6e"

# From the front of the head to the back, for the order around the circle.
_ROWS = (
    "fp", "af", "f", "ft", "fc", "a", "t", "c", "tp", "cp", "p", "po", "o", "i",
)  # fmt: skip
# Older names of four sites, which would stand in the wrong row.
_RENAMED = {"t3": "t7", "t4": "t8", "t5": "p7", "t6": "p8"}
_SITE = re.compile(r"(fp|af|ft|fc|tp|cp|po|f|t|c|p|o|i|a)(z|\d{1,2})h?", re.I)


def heatmap(
    values: np.ndarray,
    labels: list[str],
    path: str,
    *,
    title: str,
    subtitle: str = "",
    quantity: str = COHERENCE,
    signed: bool = False,
    top: float | None = None,
) -> None:
    """Draws every pair as a cell and writes a PNG.

    Args:
        values: sensors x sensors; the diagonal is shown neutrally.
        labels: one per sensor; thinned out when they would overlap.
        path: the PNG; replaced when it exists.
        title, subtitle: what is shown, such as band and time.
        quantity: label of the colour bar.
        signed: colours diverge from a white zero; otherwise they start at 0.
        top: magnitude at the end of the colours, to share one scale between pictures; from the
            values when None.
    """
    count = len(labels)
    side = float(np.clip(1.6 + 0.17 * count, 5.2, 12.0))  # width of the matrix [inch]
    figure = Figure(figsize=(side + 2.6, side + 1.75), dpi=DPI, facecolor="white")
    FigureCanvasAgg(figure)
    width, height = figure.get_size_inches()
    axes = figure.add_axes((0.95 / width, 0.85 / height, side / width, side / height))
    bar = figure.add_axes(
        ((1.2 + side) / width, 0.85 / height, 0.2 / width, side / height)
    )

    shown = np.ma.masked_invalid(np.array(values, dtype=np.float64))
    shown[np.diag_indices(count)] = np.ma.masked
    colours, scale = _colours(shown, signed, top=top)
    image = axes.imshow(shown, cmap=colours, norm=scale, interpolation="nearest")
    axes.set_facecolor(_NEUTRAL)
    size, every = _label_fit(side * 72.0 / count)
    ticks = np.arange(0, count, every)
    names = [labels[i] for i in ticks]
    turned = max(len(name) for name in names) * size * 0.62 > side * 72.0 / count * every
    axes.set_xticks(ticks, names, fontsize=size, rotation=90 if turned else 0, color=_INK)
    axes.set_yticks(ticks, names, fontsize=size, color=_INK)
    axes.tick_params(length=2 if every == 1 else 3, color=_FAINT, pad=2)
    for spine in axes.spines.values():
        spine.set_visible(False)
    _colour_bar(figure, image, bar, quantity)
    _titles(figure, title, subtitle, left=0.95 / width)
    _save(figure, path)


def circle(
    values: np.ndarray,
    labels: list[str],
    path: str,
    *,
    title: str,
    subtitle: str = "",
    quantity: str = COHERENCE,
    signed: bool = False,
    pairs: int | None = None,
    top: float | None = None,
) -> None:
    """Draws the sensors on a circle, joined where they are most coherent, and writes a PNG.

    Sensors with 10-20 names stand as on the head, nose up and left on the left; others follow
    each other clockwise from the top.

    Args:
        values: sensors x sensors, symmetric.
        labels, path, title, subtitle, quantity, signed: as for `heatmap`.
        pairs: how many lines; as many as sensors and at least 10 when None. Pairs of value 0
            are not drawn.
        top: as for `heatmap`; from the lines drawn when None.
    """
    count = len(labels)
    side = 6.6 if count <= 40 else 8.2  # width of the drawing [inch]
    figure = Figure(figsize=(side + 1.5, side + 1.1), dpi=DPI, facecolor="white")
    FigureCanvasAgg(figure)
    width, height = figure.get_size_inches()
    axes = figure.add_axes((0.1 / width, 0.1 / height, side / width, side / height))
    bar = figure.add_axes(
        ((side + 0.3) / width, (0.1 + side * 0.22) / height, 0.18 / width, side * 0.56 / height)
    )
    axes.set_xlim(-1.22, 1.22)
    axes.set_ylim(-1.22, 1.22)
    axes.set_axis_off()

    angles = _angles(labels)
    points = np.stack([np.cos(angles), np.sin(angles)], axis=1)
    strongest = _strongest(values, max(count, 10) if pairs is None else pairs)
    picked = np.array([values[row, column] for row, column in strongest])
    colours, scale = _colours(picked, signed, from_zero=False, top=top)
    reach = np.abs(picked).max(initial=0.0)
    least = np.abs(picked).min(initial=reach)
    for (row, column), value in reversed(list(zip(strongest, picked))):
        share = 1.0 if reach == least else (abs(value) - least) / (reach - least)
        curve = Path(
            [points[row], _bend(points[row], points[column]), points[column]],
            [Path.MOVETO, Path.CURVE3, Path.CURVE3],
        )
        axes.add_patch(
            PathPatch(
                curve,
                fill=False,
                edgecolor=colours(scale(value)),
                linewidth=0.8 + 3.2 * share,
                capstyle="round",
            )
        )
    joined = {sensor for pair in strongest for sensor in pair}
    _ring(axes, labels, angles, points, joined, side)
    from matplotlib.cm import ScalarMappable

    _colour_bar(figure, ScalarMappable(scale, colours), bar, quantity)
    _titles(figure, title, subtitle, left=0.3 / width)
    _save(figure, path)


def _ring(axes, labels, angles, points, joined, side) -> None:
    """Dots and labels of the sensors; those without a line stay faint."""
    order = np.argsort(angles)
    around = np.diff(np.append(angles[order], angles[order[0]] + 2 * np.pi)).min()
    arc = around * side * 72.0 / 2.44  # room along the circle between two sensors [pt]
    size = float(np.clip(arc * 0.62, 5.0, 10.0))
    every = max(int(np.ceil(5.6 / max(arc, 1e-9))), 1)
    colours = [_INK if i in joined else "#b5b5b5" for i in range(len(labels))]
    dot = float(np.clip(arc * 0.5, 2.0, 7.0)) ** 2
    axes.scatter(points[:, 0], points[:, 1], s=dot, c=colours, zorder=3, linewidths=0)
    for place, index in enumerate(order):
        if place % every:
            continue
        degrees = np.degrees(angles[index]) % 360.0
        flipped = 90.0 < degrees < 270.0
        axes.text(
            *(points[index] * 1.035),
            labels[index],
            fontsize=size,
            color=_INK if index in joined else _FAINT,
            rotation=degrees - 180.0 if flipped else degrees,
            rotation_mode="anchor",
            ha="right" if flipped else "left",
            va="center",
        )


def _angles(labels: list[str]) -> np.ndarray:
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
    angles = np.empty(count)
    angles[ring] = np.pi / 2 - 2 * np.pi * (np.arange(count) + shift) / count
    return angles


def _bend(first: np.ndarray, second: np.ndarray) -> np.ndarray:
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


def _strongest(values: np.ndarray, pairs: int) -> list[tuple[int, int]]:
    rows, columns = np.triu_indices(values.shape[0], 1)
    size = np.nan_to_num(np.abs(values[rows, columns]), nan=0.0)
    order = [i for i in np.argsort(-size, kind="stable")[:pairs] if size[i] > 0.0]
    return [(int(rows[i]), int(columns[i])) for i in order]


def shared_top(matrices) -> float:
    """The end of a colour scale that suits several sensors x sensors matrices, diagonals apart."""
    largest = 0.0
    for values in matrices:
        off = np.abs(values[~np.eye(values.shape[0], dtype=bool)])
        largest = max(largest, float(np.nanmax(off, initial=0.0)))
    return _top(largest)


def _top(largest: float) -> float:
    return _round_up(largest) if np.isfinite(largest) and largest > 0.0 else 1.0


def _colours(
    values, signed: bool, from_zero: bool = True, top: float | None = None
) -> tuple[Colormap, Normalize]:
    """A map that runs evenly for the eye, and the range of values it covers."""
    if top is None:
        top = _top(
            float(np.ma.masked_invalid(np.abs(values)).max()) if np.ma.count(values) else 0.0
        )
    if signed:
        return _with_neutral(colormaps["RdBu_r"]), Normalize(-top, top)
    low = 0.0
    if not from_zero and len(values):
        low = min(np.floor(float(np.min(values)) / top * 20.0) / 20.0 * top, 0.95 * top)
    # Light is weak and dark is strong, as ink on paper; the palest tones would vanish there.
    part = colormaps["magma_r"](np.linspace(0.03 if from_zero else 0.12, 0.93, 256))
    return _with_neutral(LinearSegmentedColormap.from_list("coherence", part)), Normalize(low, top)


def _with_neutral(colours: Colormap) -> Colormap:
    colours = colours.copy()
    colours.set_bad(_NEUTRAL)
    return colours


def _round_up(value: float) -> float:
    """The next of 1, 1.5, 2, 2.5, 3, 4, 5, 6, 8 and 10 times a power of ten."""
    power = 10.0 ** np.floor(np.log10(value))
    steps = np.array([1, 1.5, 2, 2.5, 3, 4, 5, 6, 8, 10])
    return float(steps[np.searchsorted(steps, value / power * (1 - 1e-12))] * power)


def _label_fit(room: float) -> tuple[float, int]:
    """Font size [pt] and spacing of labels with `room` points for each."""
    size = float(np.clip(room * 0.72, 5.5, 10.0))
    return size, max(int(np.ceil(size * 1.05 / room)), 1)


def _colour_bar(figure, mappable, axes, quantity: str) -> None:
    bar = figure.colorbar(mappable, cax=axes)
    bar.set_label(quantity, fontsize=10, color=_INK, labelpad=8)
    bar.ax.tick_params(labelsize=9, length=3, color=_FAINT, labelcolor=_INK)
    bar.outline.set_visible(False)


def _titles(figure, title: str, subtitle: str, left: float) -> None:
    height = figure.get_size_inches()[1]
    figure.text(
        left, 1 - 0.18 / height, title, fontsize=13, weight="bold", color=_INK, va="top"
    )
    figure.text(left, 1 - 0.50 / height, subtitle, fontsize=10, color=_FAINT, va="top")


def _save(figure: Figure, path: str) -> None:
    with whole_file(path) as draft:
        figure.savefig(draft, dpi=DPI, format="png")
