"""Figures of one or many panels: sizes in inches, titles, colour bars, a caption, files."""

from __future__ import annotations

import os
import textwrap
from dataclasses import dataclass
from typing import Callable

import matplotlib
from matplotlib.axes import Axes
from matplotlib.backends.backend_agg import FigureCanvasAgg
from matplotlib.figure import Figure

from .files import whole_file
from .plot_scale import FAINT, INK, Scale
from .plot_source import Panel, Shown

DPI = 150
FORMATS = ("png", "pdf", "svg")

_BAR = 0.17  # width of a colour bar [inch]
_BAR_ROOM = 1.1  # with its numbers and label, and the space before it


@dataclass(frozen=True)
class Look:
    """Measures of a panel and the space around it [inch]."""

    width: float
    height: float
    left: float = 0.3
    bottom: float = 0.2
    gap: float = 0.2  # between columns
    row_gap: float = 0.15


Draw = Callable[[Axes, Panel, int, int], None]


def compose(
    shown: Shown, scales: dict[int, Scale], look: Look, draw: Draw, *,
    separate: bool = False, bar: bool = True,
) -> Figure:  # fmt: skip
    """A figure of all panels; `draw` gets axes, panel, row and column of each.

    A colour bar stands behind each run of panels of a family, unless there is no `bar`.
    `separate`: every panel is a family of its own.
    """
    bars = _bar_places(shown.grid, separate) if bar else []
    many = len(shown.panels) > 1
    named = many and len({panel.name for panel in shown.panels}) > 1
    timed = many and any(panel.when for panel in shown.panels)
    xs, width = _columns(shown, look, bars)
    caption = caption_of(shown, width)
    lows, height = _rows(shown, look, int(named) + int(timed), len(caption))
    figure = new_figure(width, height)
    for r, row in enumerate(shown.grid):
        for c, panel in enumerate(row):
            place = (xs[c], lows[r], look.width, look.height)
            axes = figure.add_axes(_share(place, width, height))
            draw(axes, panel, r, c)
            if named or timed:
                first = named and (c == 0 or row[c - 1].name != panel.name)
                _panel_title(axes, panel, first, named, look.width)
    for spot in bars:
        low, high = lows[spot.last], lows[spot.first] + look.height
        tall = min(high - low, 5.0)
        x = xs[spot.column] + look.width + 0.18
        place = (x, (low + high - tall) / 2.0, _BAR, tall)
        axes = figure.add_axes(_share(place, width, height), label="colours")
        quantity = shown.quantities.get(spot.family, shown.quantities.get(0, ""))
        _colour_bar(figure, scales[spot.scale], axes, quantity, tall)
    add_words(figure, shown, caption, min(look.left, 0.3))
    return figure


def _columns(shown: Shown, look: Look, bars: list[_BarPlace]) -> tuple[list[float], float]:
    """The left ends of the columns of panels, and the width of the figure."""
    wide = max(len(row) for row in shown.grid)
    slots = [_BAR_ROOM if any(spot.column == c for spot in bars) else 0.0 for c in range(wide)]
    xs = [look.left + c * (look.width + look.gap) + sum(slots[:c]) for c in range(wide)]
    return xs, max(xs[-1] + look.width + slots[-1] + (0.1 if slots[-1] else 0.3), 4.0)


def _rows(shown: Shown, look: Look, lines: int, notes: int) -> tuple[list[float], float]:
    """The lower ends of the rows of panels with titles of `lines`, and the height of the figure."""
    head = 0.07 + 0.17 * lines if lines else 0.0
    top = 0.85 if shown.subtitle else 0.6
    if not shown.title and not shown.subtitle:
        top = 0.15
    each = look.height + head + look.row_gap
    bottom = look.bottom + 0.16 * notes + (0.12 if notes else 0.0)
    height = top + each * len(shown.grid) - look.row_gap + bottom
    lows = [height - top - row * each - head - look.height for row in range(len(shown.grid))]
    return lows, height


def new_figure(width: float, height: float) -> Figure:
    """One that no window shows and that Matplotlib does not keep [inch]."""
    figure = Figure(figsize=(width, height), dpi=DPI, facecolor="white")
    FigureCanvasAgg(figure)
    return figure


@dataclass(frozen=True)
class _BarPlace:
    column: int
    first: int  # rows that it stands beside
    last: int
    family: int
    scale: int


def _bar_places(grid: list[list[Panel]], separate: bool) -> list[_BarPlace]:
    if separate:
        number, places = 0, []
        for r, row in enumerate(grid):
            for c, panel in enumerate(row):
                places.append(_BarPlace(c, r, r, panel.family, number))
                number += 1
        return places
    wide = max(len(row) for row in grid)
    if len(grid) == 1 or len({panel.family for row in grid for panel in row}) == 1:
        families = [max(grid, key=len)[c].family for c in range(wide)]
        ends = [c for c in range(wide) if c == wide - 1 or families[c] != families[c + 1]]
        return [_BarPlace(c, 0, len(grid) - 1, families[c], families[c]) for c in ends]
    places, first = [], 0
    for r, row in enumerate(grid):
        if r == len(grid) - 1 or grid[r + 1][0].family != row[0].family:
            places.append(_BarPlace(wide - 1, first, r, row[0].family, row[0].family))
            first = r + 1
    return places


def _share(place, width: float, height: float):
    left, bottom, wide, tall = place
    return left / width, bottom / height, wide / width, tall / height


def _panel_title(axes: Axes, panel: Panel, first: bool, named: bool, width: float) -> None:
    lines = []
    if first:
        lines.append((fitted(panel.name, width, 9.5), 9.5, INK, "bold"))
    if panel.when:
        lines.append((fitted(panel.when, width, 8.0), 8.0, FAINT if named else INK, "normal"))
    for number, (text, size, colour, weight) in enumerate(reversed(lines)):
        axes.annotate(
            text, (0.5, 1.0), (0, 4 + 12 * number),
            xycoords="axes fraction", textcoords="offset points", ha="center", va="bottom",
            fontsize=size, color=colour, weight=weight, annotation_clip=False,
        )  # fmt: skip


def fitted(text: str, width: float, size: float) -> str:
    """The text, cut where it would be wider than `width` inches."""
    room = max(int(width * 72.0 / (size * 0.56)), 4)
    return text if len(text) <= room else text[: room - 1].rstrip() + "\u2026"


def caption_of(shown: Shown, width: float) -> list[str]:
    """The notes as lines that fit into a figure of `width` inches."""
    room = max(int((width - 0.5) * 72.0 / (8 * 0.5)), 30)
    text = "; ".join(shown.notes)
    if text:
        text = text[0].upper() + text[1:] + "."
    lines = textwrap.wrap(text, room)
    if len(lines) > 6:
        lines = lines[:6]
        lines[-1] = lines[-1][: room - 1] + "\u2026"
    return lines


def _colour_bar(figure: Figure, scale: Scale, axes: Axes, quantity: str, tall: float) -> None:
    bar = figure.colorbar(scale.mappable, cax=axes, extend=scale.beyond, extendfrac=0.03)
    size = 10.0 if tall > 3.0 else 8.5
    room = tall * 1.05 * 72.0 / (size * 0.58)
    bar.set_label(
        "\n".join(textwrap.wrap(quantity, max(int(room), 12))[:2]),
        fontsize=size, color=INK, labelpad=6,
    )  # fmt: skip
    bar.ax.tick_params(labelsize=size - 1, length=3, color=FAINT, labelcolor=INK)
    bar.outline.set_visible(False)


def add_words(figure: Figure, shown: Shown, caption: list[str], left: float) -> None:
    """Title and subtitle at the top, the caption at the bottom, from `left` inches on."""
    title, subtitle = shown.title, shown.subtitle
    width, height = figure.get_size_inches()
    x = left / width
    room = width * (1 - x) - 0.1
    size = min(max(room * 72.0 / (max(len(title), 1) * 0.6), 9.5), 13.0)
    figure.text(
        x, 1 - 0.18 / height, fitted(title, room, size), fontsize=size, weight="bold",
        color=INK, va="top",
    )  # fmt: skip
    size = min(max(room * 72.0 / (max(len(subtitle), 1) * 0.53), 7.5), 10.0)
    figure.text(x, 1 - 0.47 / height, subtitle, fontsize=size, color=FAINT, va="top")
    for number, line in enumerate(reversed(caption)):
        y = (0.1 + 0.16 * number) / height
        figure.text(x, y, line, fontsize=8, color=FAINT, va="bottom")


def save(figure: Figure, path: str | os.PathLike | None, *, dpi: int, overwrite: bool) -> Figure:
    """Writes the figure whole or not at all, in the format of the ending; same bytes each time.

    Raises:
        ValueError: an unknown ending. OSError: as `whole_file`.
    """
    if path is None:
        return figure
    kind = format_of(path)
    metadata = {"png": {"Software": None}, "pdf": {"CreationDate": None}, "svg": {"Date": None}}
    with whole_file(path, overwrite=overwrite) as draft:
        # Text stays text, which can be searched and edited.
        with matplotlib.rc_context(
            {"svg.fonttype": "none", "pdf.fonttype": 42, "svg.hashsalt": "cxc"}
        ):
            figure.savefig(draft, dpi=dpi, format=kind, metadata=metadata[kind])
    return figure


def format_of(path: str | os.PathLike) -> str:
    """png, pdf or svg, by the ending, or ValueError."""
    kind = os.path.splitext(os.fsdecode(path))[1].lower().lstrip(".")
    if kind not in FORMATS:
        raise ValueError(f"{os.fsdecode(path)}: pictures end with .png, .pdf or .svg")
    return kind
