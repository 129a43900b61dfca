"""Cost against size, both logarithmic: ours, the limits and the best of the peers."""

from __future__ import annotations

from matplotlib.backends.backend_agg import FigureCanvasAgg
from matplotlib.figure import Figure
from matplotlib.lines import Line2D

from cxc.plot_layout import DPI
from cxc.plot_scale import FAINT, INK, LINE_COLOURS
from report import values_of
from targets import ROWS

PANELS = (
    ("Files", ("open", "save", "save, flushed")),
    ("Combining", ("sum", "Act-Ctl")),
    ("Ranges and statistics", ("range", "absolute range", "statistics")),
    ("Exchange", ("matrices from dataset", "dataset from matrices", "to_array", "from_array")),
    ("Text", ("format", "text export")),
    ("Groups", ("average", "summary")),
)


def draw(results: dict, path: str) -> None:
    figure = Figure(figsize=(12.0, 7.6), dpi=DPI, facecolor="white", layout="constrained")
    FigureCanvasAgg(figure)
    for axes, (title, operations) in zip(figure.subplots(2, 3).flat, PANELS):
        groups = title == "Groups"
        cells = {
            shape: of_shape for shape, of_shape in results["cells"].items()
            if (shape.count("x") == 3) == groups
        }  # fmt: skip
        _panel(axes, cells, title, operations)
    figure.get_layout_engine().set(rect=(0.0, 0.05, 1.0, 0.94))
    figure.suptitle("Cost against size", color=INK, fontsize=13, x=0.01, ha="left")
    figure.legend(
        handles=[
            Line2D([], [], color=INK, marker="o", ms=4, label="ours"),
            Line2D([], [], color=INK, linestyle="--", lw=1.2, label="limit of the machine"),
            Line2D([], [], color=INK, linestyle=":", lw=1.5, label="fastest peer"),
            Line2D([], [], color="#d4d4d4", lw=3, label="in step with the data"),
        ],
        loc="lower center", ncol=4, frameon=False, fontsize=9, labelcolor=INK,
    )  # fmt: skip
    figure.savefig(path)


def _panel(axes, cells: dict, title: str, operations: tuple[str, ...]) -> None:
    for number, operation in enumerate(operations):
        colour = LINE_COLOURS[number]
        ours = _curve(cells, ["ours/" + operation])
        if not ours:
            continue
        others = [row.against for row in ROWS if row.operation.split(", Py")[0] == operation]
        # Where there are two limits, the first one stands for all shapes.
        limit = _curve(cells, [name for name in others if name.startswith("limit/")][:1])
        peer = _curve(cells, [name for name in others if not name.startswith("limit/")])
        axes.plot(*zip(*ours), "-o", color=colour, ms=4, lw=1.5, label=operation, zorder=3)
        if limit:
            axes.plot(*zip(*limit), "--", color=colour, lw=1.2)
        if peer:
            axes.plot(*zip(*peer), ":", color=colour, lw=1.5)
        if number == 0:
            _guide(axes, ours)
    _style(axes, title)


def _curve(cells: dict, names: list[str]) -> list[tuple[int, float]]:
    """Values of the shape and the least time of those names [ms], by size."""
    points = []
    for shape, of_shape in cells.items():
        times = [of_shape[name]["median"] for name in names if name in of_shape]
        if times:
            points.append((values_of(shape), min(times)))
    return sorted(points)


def _guide(axes, points: list[tuple[int, float]]) -> None:
    """A line of slope one through the middle point of a curve."""
    size, cost = points[len(points) // 2]
    ends = [points[0][0], points[-1][0]]
    axes.plot(ends, [cost * end / size for end in ends], color="#d4d4d4", lw=3, zorder=0.5)


def _style(axes, title: str) -> None:
    axes.set(xscale="log", yscale="log")
    axes.set_title(title, loc="left", fontsize=10.5, color=INK)
    axes.set_xlabel("values", fontsize=8.5, color=INK)
    axes.set_ylabel("ms", fontsize=8.5, color=INK)
    for side in ("top", "right"):
        axes.spines[side].set_visible(False)
    for side in ("left", "bottom"):
        axes.spines[side].set(color=FAINT, linewidth=0.7)
    axes.tick_params(labelsize=8, which="both", length=3, color=FAINT, labelcolor=INK)
    axes.grid(axis="y", color="#e6e6e6", linewidth=0.6)
    axes.set_axisbelow(True)
    if axes.get_legend_handles_labels()[0]:
        axes.legend(fontsize=8, frameon=False, labelcolor=INK, loc="best")
