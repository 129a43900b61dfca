"""Colours of values: maps that everybody can tell apart, and one range for several pictures."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Iterable, Sequence

import numpy as np
from matplotlib import colormaps
from matplotlib.cm import ScalarMappable
from matplotlib.colors import Colormap, LinearSegmentedColormap, ListedColormap, Normalize

NEUTRAL = "#d4d4d4"  # the diagonal and cells that are no number
INK = "#222222"
FAINT = "#6e6e6e"

# Eight colours that stay apart for every common kind of colour vision (Okabe and Ito).
LINE_COLOURS = (
    "#0072B2", "#D55E00", "#009E73", "#CC79A7", "#E69F00", "#56B4E9", "#222222", "#8C7A00",
)  # fmt: skip


@dataclass(frozen=True)
class Scale:
    """What colour a value has, and the range of values that differ in colour."""

    colours: Colormap
    norm: Normalize
    signed: bool
    beyond: str  # where values lie outside of the range: "neither", "min", "max" or "both"

    def __call__(self, values) -> np.ndarray:
        return self.colours(self.norm(values))

    @property
    def mappable(self) -> ScalarMappable:
        return ScalarMappable(self.norm, self.colours)


def make_scale(
    arrays: Iterable[np.ndarray],
    *,
    signed: bool | None = None,
    limits: float | Sequence[float] | None = None,
    for_lines: bool = False,
) -> Scale:
    """One scale for all values of `arrays`; what is no finite number does not count.

    Args:
        signed: whether colours diverge from a white zero in the middle; when None, where there
            are values on both sides of zero.
        limits: values at the ends of the colours, or the upper one only. With diverging colours
            zero stays in the middle, so the one of larger magnitude counts for both.
        for_lines: the colours begin at the weakest line instead of 0, and not as pale.

    Raises:
        ValueError: the limits are no numbers in rising order.
    """
    parts = [np.ravel(np.asarray(array, dtype=np.float64)) for array in arrays]
    values = np.concatenate(parts) if parts else np.empty(0)
    values = values[np.isfinite(values)]
    least = float(values.min(initial=np.inf)) if values.size else 0.0
    most = float(values.max(initial=-np.inf)) if values.size else 0.0
    if signed is None:
        signed = least < 0.0
    low, high = _ends(values, signed, limits, for_lines)
    beyond = {
        (False, False): "neither",
        (True, False): "min",
        (False, True): "max",
        (True, True): "both",
    }[least < low - abs(low) * 1e-12 - 1e-300, most > high + abs(high) * 1e-12 + 1e-300]
    if signed:
        colours = _diverging(for_lines)
    else:
        # Light is weak and dark is strong, as ink on paper; the palest tones would vanish there.
        part = colormaps["magma_r"](np.linspace(0.12 if for_lines else 0.03, 0.93, 256))
        colours = LinearSegmentedColormap.from_list("coherence", part)
    colours.set_bad(NEUTRAL)
    return Scale(colours, Normalize(low, high), signed, beyond)


def _diverging(for_lines: bool) -> Colormap:
    """Blue below and red above zero; lines never as white as the paper."""
    if not for_lines:
        return colormaps["RdBu_r"].copy()
    shares = np.concatenate([np.linspace(0.0, 0.33, 128), np.linspace(0.67, 1.0, 128)])
    return ListedColormap(colormaps["RdBu_r"](shares), "differences")


def _ends(values, signed: bool, limits, for_lines: bool) -> tuple[float, float]:
    if limits is None:
        top = rounded_top(float(np.abs(values).max(initial=0.0)))
        if signed:
            return -top, top
        if not for_lines or not values.size:
            return 0.0, top
        return float(min(np.floor(values.min() / top * 20.0) / 20.0, 0.95)) * top, top
    ends = [float(end) for end in np.atleast_1d(np.asarray(limits, dtype=np.float64))]
    if len(ends) == 1:
        ends = [-ends[0] if signed else 0.0, ends[0]]
    if len(ends) != 2 or not np.isfinite(ends).all() or not ends[0] < ends[1]:
        raise ValueError("limits are two numbers, the lower one first")
    if signed:
        top = max(abs(ends[0]), abs(ends[1]))
        return -top, top
    return ends[0], ends[1]


def rounded_top(largest: float) -> float:
    """An end of a scale at or above `largest`: 1, 1.5, 2, 2.5, 3, 4, 5, 6, 8 times 10^n."""
    if not (np.isfinite(largest) and largest > 0.0):
        return 1.0
    power = 10.0 ** np.floor(np.log10(largest))
    if not 1.0 <= largest / max(power, 5e-324) < 10.0:  # too small to be exact
        return largest
    steps = np.array([1, 1.5, 2, 2.5, 3, 4, 5, 6, 8, 10])
    with np.errstate(over="ignore"):
        top = float(steps[np.searchsorted(steps, largest / power * (1 - 1e-12))] * power)
    return max(top, largest) if np.isfinite(top) else largest
