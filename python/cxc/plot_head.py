"""The head from above: where sensors lie, lines between them, maps of one sensor's values."""

from __future__ import annotations

import os
import warnings
from typing import Any

import numpy as np
from matplotlib.axes import Axes
from matplotlib.patches import Circle, PathPatch
from matplotlib.path import Path
from matplotlib.patheffects import withStroke

from .plot_heat import short
from .plot_lines import Line, draw_lines
from .plot_scale import FAINT, INK, Scale
from .plot_source import Panel
from .recording import clean_label

DEFAULT_POSITIONS = "standard_1005"

_MONTAGE_FILES = (
    ".loc", ".locs", ".eloc", ".sfp", ".csd", ".elc", ".txt", ".elp", ".hpts", ".bvef", ".csv",
    ".tsv", ".xyz",
)  # fmt: skip
_INSIDE = 0.88  # where the widest line of the head lies, so that its sensors are inside
_HALO = [withStroke(linewidth=1.8, foreground="white")]


def places_of(labels: list[str], positions: Any = None) -> np.ndarray:
    """Where sensors lie on the head seen from above, nose up: labels x 2, NaN where unknown.

    The centre is the top of the head; distances from it are those along the scalp. Radius 1 is
    the outline, a little below the widest line of the head.

    Args:
        positions: a montage or `Info` of MNE, the name of one of MNE's montages, a file with a
            montage or a recording, or a mapping of labels to (x, y, z) in metres (x to the right
            ear, y to the nose) or to (x, y) as they are returned; the sites of the 10-05 system
            when None.

    Raises:
        ValueError: there are no positions in what was given. OSError: no such file.
    """
    known = _known(DEFAULT_POSITIONS if positions is None else positions)
    table = {_plain(label): np.asarray(place, dtype=np.float64) for label, place in known.items()}
    shapes = {place.shape for place in table.values()}
    if not shapes <= {(2,), (3,)} or len(shapes) > 1:
        raise ValueError("positions are (x, y, z), or (x, y), of each sensor")
    if shapes == {(3,)}:
        table = _from_above(table)
    nowhere = np.full(2, np.nan)
    return np.array([table.get(_plain(label), nowhere) for label in labels]).reshape(-1, 2)


def _known(positions: Any) -> dict[str, Any]:
    import mne

    if isinstance(positions, (str, os.PathLike)):
        positions = _from_name(os.fspath(positions))
    if isinstance(positions, mne.channels.DigMontage):
        return dict(positions.get_positions()["ch_pos"])
    if isinstance(positions, mne.Info):
        return _of_info(positions)
    if hasattr(positions, "info") and isinstance(positions.info, mne.Info):
        return _of_info(positions.info)
    if hasattr(positions, "items"):
        return dict(positions)
    raise ValueError(f"positions cannot be a {type(positions).__name__}")


def _from_name(name: str):
    import mne

    if name in mne.channels.get_builtin_montages():
        return mne.channels.make_standard_montage(name)
    if not os.path.exists(name):
        raise ValueError(f"{name}: neither one of MNE's montages nor a file")
    try:
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            if os.path.splitext(name)[1].lower() in _MONTAGE_FILES:
                return mne.channels.read_custom_montage(name)
            return mne.io.read_raw(name, preload=False, verbose="ERROR").info
    except OSError:
        raise
    except Exception as error:  # readers of damaged files raise nearly anything
        text = " ".join(str(error).split())
        raise ValueError(f"{name}: no positions can be read: {text}") from error


def _of_info(info) -> dict[str, np.ndarray]:
    """Positions in the coordinates of the head."""
    import mne

    to_head = None if info.get("dev_head_t") is None else info["dev_head_t"]["trans"]
    found = {}
    for channel in info["chs"]:
        place = np.array(channel["loc"][:3], dtype=np.float64)
        if not np.isfinite(place).all() or not place.any():
            continue
        if channel["coord_frame"] == mne.io.constants.FIFF.FIFFV_COORD_DEVICE:
            # Without the head's place in the helmet, the middle of the helmet is the head.
            place = place if to_head is None else to_head[:3, :3] @ place + to_head[:3, 3]
        found[channel["ch_name"]] = place
    return found


def _plain(label: str) -> str:
    return clean_label(str(label)).replace(" ", "").lower()


def _from_above(table: dict[str, np.ndarray]) -> dict[str, np.ndarray]:
    """As if the head was a ball whose skin is laid out flat."""
    table = {n: p for n, p in table.items() if np.isfinite(p).all() and p.any()}
    if not table:
        return {}
    points = np.array(list(table.values()))
    around = points - _centre(points)
    distance = np.linalg.norm(around, axis=1)
    down = np.arccos(np.clip(around[:, 2] / np.maximum(distance, 1e-12), -1.0, 1.0))
    flat = np.hypot(around[:, 0], around[:, 1])
    out = np.where(flat > 1e-9, _INSIDE * down / (np.pi / 2) / np.maximum(flat, 1e-12), 0.0)
    return dict(zip(table, around[:, :2] * out[:, np.newaxis]))


def _centre(points: np.ndarray) -> np.ndarray:
    """Of the ball that fits best; of the head's coordinates where that is no head."""
    origin = np.array([0.0, 0.0, 0.04])
    if len(points) < 12:
        return origin
    matrix = np.hstack([2 * points, np.ones((len(points), 1))])
    solution, _, rank, _ = np.linalg.lstsq(matrix, (points**2).sum(axis=1), rcond=None)
    centre = solution[:3]
    radius = np.sqrt(max(solution[3] + (centre**2).sum(), 0.0))
    fits = rank == 4 and 0.05 < radius < 0.2 and np.abs(centre - origin).max() < 0.08
    return centre if fits else origin


def missing(labels: list[str], places: np.ndarray) -> list[str]:
    return [label for label, place in zip(labels, places) if not np.isfinite(place).all()]


def missing_note(names: list[str]) -> list[str]:
    if not names:
        return []
    shown = ", ".join(names[:30]) + (f" and {len(names) - 30} more" if len(names) > 30 else "")
    return [f"without position and not shown: {shown}"]


def draw_head(
    axes: Axes,
    panel: Panel,
    places: np.ndarray,
    lines: list[Line],
    scale: Scale,
    reach: tuple[float, float],
    side: float,
    *,
    names: bool = True,
) -> None:
    """Sensors on the head and `lines`, on axes that are `side` inches wide."""
    span = outline(axes, places, side)
    there = np.isfinite(places).all(axis=1)

    def curve(first: int, second: int):
        return [places[first], bow(places[first], places[second]), places[second]]

    draw_lines(axes, lines, curve, scale, reach, 4.0 if side > 4 else 2.8 if side > 2.4 else 2.0)
    joined = np.zeros(len(places), dtype=bool)
    joined[[sensor for line in lines for sensor in (line.first, line.second)]] = True
    point = side * 72.0 / (2 * span)  # of one radius
    gap = _least_gap(places[there]) * point
    dot = float(np.clip(gap * 0.28, 1.6, 5.5))
    for kind, colour, order in ((there & ~joined, "#b5b5b5", 3), (joined, INK, 4)):
        axes.scatter(
            places[kind, 0], places[kind, 1], s=dot**2, c=colour, zorder=order, linewidths=0
        )
    if not names:
        return
    size = float(np.clip(gap * 0.36, 5.5, 9.0))
    crowded = gap < 3.2 * 5.5  # then only those with a line can have their names
    for index in np.flatnonzero(joined if crowded else there):
        axes.annotate(
            short(panel.rows[index], 9), places[index], (0, dot * 0.5 + 1.0),
            textcoords="offset points", ha="center", va="bottom", fontsize=size, zorder=6,
            color=INK if joined[index] else FAINT, path_effects=_HALO,
        )  # fmt: skip


def outline(axes: Axes, places: np.ndarray, side: float) -> float:
    """Head, nose and ears; returns the reach of the axes from the centre."""
    far = np.hypot(*places[np.isfinite(places).all(axis=1)].T).max(initial=0.0)
    span = max(1.16, far * 1.08 + 0.04)
    axes.set_xlim(-span, span)
    axes.set_ylim(-span, span)
    axes.set_axis_off()
    width = 1.2 if side > 3 else 0.9
    look = {"fill": False, "edgecolor": "#8a8a8a", "linewidth": width, "zorder": 0.5}
    axes.add_patch(Circle((0, 0), 1.0, **look))
    nose = [(-0.11, 0.994), (-0.03, 1.12), (0.0, 1.12), (0.03, 1.12), (0.11, 0.994)]
    axes.add_patch(PathPatch(Path(nose, [1, 3, 3, 3, 3]), **look))
    for sign in (-1, 1):
        ear = [(0.985, 0.17), (1.09, 0.2), (1.075, 0.0), (1.06, -0.2), (0.985, -0.17)]
        path = Path([(sign * x, y) for x, y in ear], [1, 3, 3, 3, 3])
        axes.add_patch(PathPatch(path, **look))
    return span


def bow(first: np.ndarray, second: np.ndarray) -> np.ndarray:
    """Lines bow outwards a little, so that one over another sensor does not seem to end there."""
    along = second - first
    across = np.array([-along[1], along[0]]) * 0.12
    middle = (first + second) / 2.0
    side = float(middle @ across)
    if side < -1e-12 or (abs(side) <= 1e-12 and across[0] < 0):
        across = -across
    return middle + across


def _least_gap(places: np.ndarray) -> float:
    """How near neighbours typically are; sensors at one place count as one."""
    if len(places) < 2:
        return 1.0
    from scipy.spatial import cKDTree

    single = np.unique(np.round(places, 2), axis=0)
    if len(single) < 2:
        return 1.0
    distances, _ = cKDTree(single).query(single, k=2)
    return float(np.percentile(distances[:, 1], 20))


def draw_map(
    axes: Axes, values: np.ndarray, places: np.ndarray, seed: int, scale: Scale, side: float,
    name: str = "",
) -> None:  # fmt: skip
    """One sensor's values with all others as a smooth map; the seed itself is a star.

    The map goes through the values at the sensors and not beyond the smallest and the largest.
    """
    span = outline(axes, places, side)
    placed = np.isfinite(places).all(axis=1)
    used = placed & np.isfinite(values)
    used[seed] = False
    where, what = _merged(places[used], values[used])
    reach = max(1.0, np.hypot(*places[placed].T).max(initial=0.0) + 0.03)
    surface = _surface(where, what, reach)
    if surface is not None:
        picture = axes.imshow(
            scale(surface), extent=(-reach, reach, -reach, reach), origin="lower",
            interpolation="bilinear", zorder=0.2,
        )  # fmt: skip
        picture.set_clip_path(Circle((0, 0), reach, transform=axes.transData))
    dot = max(2.0, min(side * 1.1, 4.5))
    if surface is not None:
        axes.scatter(
            *where.T, s=(dot * 0.8) ** 2, c=INK, zorder=3, linewidths=0.5, edgecolors="white"
        )
    else:  # too few sensors for a surface: they carry the colours themselves
        axes.scatter(
            *where.T, s=(dot * 3) ** 2, c=scale(what), zorder=3, linewidths=0.6, edgecolors=INK
        )
    lost = placed & ~np.isfinite(values)
    lost[seed] = False
    axes.scatter(*places[lost].T, s=dot**2, c="white", edgecolors=FAINT, zorder=3, linewidths=0.6)
    if placed[seed]:
        axes.scatter(
            *places[seed], marker="*", s=(dot * 3.2) ** 2, c="white", edgecolors=INK,
            linewidths=0.9, zorder=5,
        )  # fmt: skip
        if name:
            axes.annotate(
                short(name), places[seed], (0, dot * 1.6 + 2), textcoords="offset points",
                ha="center", va="bottom", fontsize=8, color=INK, path_effects=_HALO, zorder=6,
            )  # fmt: skip


def _merged(places: np.ndarray, values: np.ndarray) -> tuple[np.ndarray, np.ndarray]:
    """Sensors at one place as one with their mean, as the three of one site in a helmet."""
    where, site = np.unique(np.round(places, 3), axis=0, return_inverse=True)
    counts = np.bincount(site, minlength=len(where))
    return where, np.bincount(site, values, len(where)) / np.maximum(counts, 1)


def _surface(where: np.ndarray, what: np.ndarray, reach: float, points: int = 160):
    """Values on a grid; None where sensors are too few or lie in a line."""
    if len(where) < 4 or np.linalg.matrix_rank(where - where.mean(axis=0), tol=1e-3) < 2:
        return None
    from scipy.interpolate import RBFInterpolator

    ends = np.linspace(-reach, reach, points)
    grid = np.stack(np.meshgrid(ends, ends), axis=-1).reshape(-1, 2)
    size = np.abs(what).max(initial=0.0) or 1.0
    smooth = RBFInterpolator(where, what / size, kernel="thin_plate_spline")(grid)
    least, most = what.min() / size, what.max() / size
    return (np.clip(smooth, least, most) * size).reshape(points, points)
