"""One HTML file to browse slices with: heat maps and circles, without a server or a network."""

from __future__ import annotations

import base64
import hashlib
import html
import json
import math
import os
import pathlib
import re
import unicodedata
from dataclasses import dataclass
from typing import Any, Union

import numpy as np
import numpy.typing as npt

from .containers import Group, Package
from .dataset import Dataset
from .files import whole_file
from .labels import same_sensors
from .plot_circle import angles
from .plot_scale import Scale, make_scale
from .plot_source import DIFFERENCES, Member, members_of, quantity_of, values_of

Limits = Union[tuple[float, float], None]

# Above this many values one byte each has to do.
_MOST_WITH_TWO_BYTES = 4_000_000
# Browsers bear more, but not on every machine, nor does mail.
_MOST_BYTES = 60_000_000
# More datasets are a list instead of buttons.
_MOST_BUTTONS = 4


def write_page(
    source: Dataset | Package | Group,
    path: str | os.PathLike[str],
    *,
    limits: Limits = None,
    difference_limits: Limits = None,
    overwrite: bool = True,
) -> None:
    """Writes the page: each slice as a heat map or as a circle of sensors with lines.

    Of a package the page shows Active, Control and Act-Ctl, of a group any of its datasets. The
    colours mean the same in all slices and in all datasets; Act-Ctl has its own. Values of both
    signs, and Act-Ctl, get diverging colours with zero in the middle.

    Values are stored in steps, whose size the page tells: 1/65534 of a dataset's range, or 1/254
    where there are more than 4,000,000 values.

    Args:
        limits: values at the ends of the colours; from the values when None. With diverging
            colours the one of larger magnitude counts for both ends.
        difference_limits: the same for Act-Ctl of a package.
        overwrite: replace an existing file.

    Raises:
        ValueError: there is no finite value, the limits are none, or the page would be larger
            than 60 MB.
    """
    members = members_of(source)
    kind = _kind_of(members)
    parts = [_Part.of(member, kind) for member in members]
    if all(part.range is None for part in parts):
        raise ValueError("the dataset holds no finite value")
    title = _shown(str(source.name)) or "coherence"
    data = _data(parts, kind, {0: limits, DIFFERENCES: difference_limits})
    page = _filled(title, data)
    with whole_file(path, overwrite=overwrite) as draft:
        with open(draft, "w", encoding="utf-8", newline="\n") as file:
            file.write(page)


def _kind_of(members: list[Member]) -> str:
    """How values are stored, or ValueError where there are too many to be."""
    held = [member.dataset for member in members if member.dataset.header.has_grid()]
    count = sum(math.prod(dataset.shape) for dataset in held)
    if count <= _MOST_WITH_TWO_BYTES:
        return "u2"
    size = count * 4 / 3  # as text
    if size > _MOST_BYTES:
        raise ValueError(
            f"{count:,} values would make a page of {size / 1e6:,.0f} MB, more than "
            f"{_MOST_BYTES / 1e6:.0f}; select some slices, sensors or datasets"
        )
    return "u1"


@dataclass
class _Part:
    """One dataset of the page."""

    member: Member
    stored: bytes
    least: float
    step: float
    range: tuple[float, float] | None  # of the finite values that have a colour
    same: bool  # rows and columns are the same sensors
    directed: bool  # the two directions of some pair differ

    @classmethod
    def of(cls, member: Member, kind: str) -> _Part:
        values = values_of(member)
        same = values.shape[1] > 1 and same_sensors(member.about)
        finite = values[np.isfinite(values)]
        least, most = (float(finite.min()), float(finite.max())) if finite.size else (0.0, 0.0)
        stored, step = _stored(values, least, most, kind)
        directed = same and not np.array_equal(stored, stored.transpose(0, 2, 1))
        if same:  # of a sensor with itself the coherence is 1, whatever the others have
            finite = values[:, ~np.eye(values.shape[1], dtype=bool)]
            finite = finite[np.isfinite(finite)]
        found = (float(finite.min()), float(finite.max())) if finite.size else None
        return cls(member, stored.tobytes(), least, step, found, same, directed)


def _stored(
    values: npt.NDArray[np.float64], least: float, most: float, kind: str
) -> tuple[npt.NDArray[Any], float]:
    """Values in steps from the least, the largest number standing for none."""
    type_ = np.dtype("<" + kind)
    none = int(np.iinfo(type_).max)
    # Halves, so that the difference of the largest numbers is one.
    step = (most / 2.0 - least / 2.0) / (none - 1) * 2.0 or 1.0
    with np.errstate(invalid="ignore", over="ignore"):
        numbers = np.rint((values / 2.0 - least / 2.0) / (step / 2.0))
    return np.where(np.isfinite(values), numbers, none).astype(type_), step


def _data(parts: list[_Part], kind: str, limits: dict[int, Limits]) -> dict[str, Any]:
    """What the script draws from."""
    families = sorted({part.member.family for part in parts})
    scales = {family: _scale_of(parts, family, limits[family]) for family in families}
    palettes = {False: 0, True: 1}
    used = {scale.signed: scale for scale in scales.values()}
    datasets = []
    for part in parts:
        family = part.member.family
        scale = scales[family]
        own = scale if limits[family] else make_scale([_ends(part)], signed=scale.signed)
        entry = _entry(part, scale.signed)
        entry.update({"scale": families.index(family), "own": _told(own, palettes)})
        datasets.append(entry)
    several = [family for family in families if not limits[family]
               and sum(part.member.family == family for part in parts) > 1]  # fmt: skip
    return {
        "datasets": datasets,
        "kind": kind,
        "none": int(np.iinfo(np.dtype(kind)).max),
        "scales": [_told(scales[family], palettes) for family in families],
        "palettes": [_colours(used[signed]) if signed in used else [] for signed in palettes],
        "listed": len(parts) > _MOST_BUTTONS,
        "choosable": bool(several),
    }


def _ends(part: _Part) -> npt.NDArray[np.float64]:
    return np.array(part.range if part.range is not None else ())


def _scale_of(parts: list[_Part], family: int, limits: Limits) -> Scale:
    held = [_ends(part) for part in parts if part.member.family == family]
    return make_scale(held, signed=True if family == DIFFERENCES else None, limits=limits)


def _told(scale: Scale, palettes: dict[bool, int]) -> dict[str, Any]:
    return {
        "low": float(scale.norm.vmin or 0.0),
        "high": float(scale.norm.vmax or 0.0),
        "palette": palettes[scale.signed],
        "below": scale.beyond in ("min", "both"),
        "above": scale.beyond in ("max", "both"),
    }


def _colours(scale: Scale) -> list[str]:
    from matplotlib.colors import to_hex

    return [to_hex(scale.colours(i / 255.0)) for i in range(256)]


def _entry(part: _Part, signed: bool) -> dict[str, Any]:
    """What the page says of a dataset, and its values."""
    about = part.member.about
    slices, rows, columns = part.member.dataset.shape
    begin, end = about.band
    labels = about.sensors
    times = [float(time) if np.isfinite(time) else None for time in about.times]
    return {
        "name": _shown(part.member.name),
        "called": _shown(part.member.dataset.name),
        "about": f"{begin:g} to {end:g} Hz, {slices} slice{'s' if slices > 1 else ''} of "
        f"{rows} \u00d7 {columns} sensors",
        "steps": f"Values are told in steps of {part.step:.2g}.",
        "slices": slices,
        "rows": rows,
        "columns": columns,
        "rowNames": [_shown(name) for name in labels],
        "columnNames": [_shown(name) for name in about.column_sensors],
        "same": part.same,
        "directed": part.directed,
        "angles": [round(float(angle), 6) for angle in angles(labels)] if part.same else [],
        "timed": about.sampling_rate > 0,
        "times": times,
        "quantity": quantity_of(part.member, signed),
        "note": _shown(part.member.dataset.note, "\n\t"),
        "least": part.least,
        "step": part.step,
        "values": base64.b64encode(part.stored).decode("ascii"),
    }


def _shown(text: str, kept: str = "") -> str:
    """A file's text with its controls spelt out, and what turns the direction of writing."""
    return "".join(
        f"\\u{ord(c):04x}" if c not in kept and _steers(c) else c
        for c in text.replace("\r\n", "\n")
    )


def _steers(character: str) -> bool:
    turning = ("LRE", "RLE", "LRO", "RLO", "PDF", "LRI", "RLI", "FSI", "PDI")
    if unicodedata.bidirectional(character) in turning:
        return True
    return unicodedata.category(character) in ("Cc", "Cs")


def _filled(title: str, data: dict[str, Any]) -> str:
    """The page of one piece; nothing but its own script runs in it, and nothing is fetched."""
    folder = pathlib.Path(__file__).parent
    template, style, script = (
        (folder / name).read_text(encoding="utf-8") for name in ("page.html", "page.css", "page.js")
    )
    style, script = "\n" + style, "\n" + script
    fillings = {
        "title": html.escape(title),
        "policy": "default-src 'none'; base-uri 'none'; form-action 'none'; "
        f"style-src {_hash_of(style)}; script-src {_hash_of(script)}",
        "style": style,
        "script": script,
        # Nothing of a file may end the script.
        "data": json.dumps(data, allow_nan=False).replace("<", "\\u003c"),
    }
    # In one go, so that texts of a file are not filled in turn.
    return re.sub(r"\{\{(\w+)\}\}", lambda mark: fillings[mark[1]], template)


def _hash_of(text: str) -> str:
    digest = hashlib.sha256(text.encode("utf-8")).digest()
    return f"'sha256-{base64.b64encode(digest).decode('ascii')}'"
