"""Tables and graphs as text: CSV and GraphML. Written, not read."""

from __future__ import annotations

import csv
import re
from xml.sax.saxutils import escape

import numpy as np

from .dataset import Dataset
from .exchange_common import PAIR_ORDER, encodable, values_of
from .files import whole_file

COLUMNS = (
    "slice", "latency", "row", "column", "row_channel", "column_channel", "value", "from", "to",
)  # fmt: skip


def to_csv(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """Writes a line for each slice of each pair, with every digit, in UTF-8.

    Pairs row by row, the slices of each in order. Slices count from 0, rows and columns from 1;
    the latency is empty where the dataset has no rate; from and to name the row and column sensor.

    Raises:
        CommandError: there are no values.
        OSError: as `whole_file`.
    """
    values = values_of(dataset, path)
    slices = len(values)
    times = dataset.times.tolist() if dataset.sampling_rate > 0 else [""] * slices
    numbers_a, numbers_b = dataset.channels_a.tolist(), dataset.channels_b.tolist()
    origin = [encodable(label) for label in dataset.sensors]
    goal = [encodable(label) for label in dataset.column_sensors]
    with whole_file(path, overwrite=overwrite) as draft:
        with open(draft, "w", newline="", encoding="utf-8") as file:
            write = csv.writer(file, lineterminator="\n").writerow
            write(COLUMNS)
            for r, c in np.ndindex(values.shape[1:]):
                pair = (r + 1, c + 1, numbers_a[r][c], numbers_b[r][c])
                for t, value in enumerate(values[:, r, c].tolist()):
                    write((t, times[t], *pair, repr(value), origin[r], goal[c]))


def to_graphml(
    dataset: Dataset, path: str, overwrite: bool = True, *, threshold: float = 0.0
) -> None:
    """Writes a directed graph of the means over the selected slices.

    Every sensor is a node, also without an edge, with its `label` and `channel`. An edge with its
    `weight` runs from the row to the column sensor where the magnitude is not within `threshold`
    (so that NaN stays); there are none from a sensor to itself.

    Raises:
        CommandError: rows and columns are not the same sensors, or there are no values.
        OSError: as `whole_file`.
    """
    values = values_of(dataset, path, same=True)
    begin, end = dataset.selection
    begin, end = max(begin, 0), min(end, len(values) - 1)
    if begin > end:
        begin, end = 0, len(values) - 1
    means = values[begin : end + 1].mean(axis=0)
    lines = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<graphml xmlns="http://graphml.graphdrawing.org/xmlns">',
        '<key id="label" for="node" attr.name="label" attr.type="string"/>',
        '<key id="channel" for="node" attr.name="channel" attr.type="long"/>',
        '<key id="weight" for="edge" attr.name="weight" attr.type="double"/>',
        *_graph_start(dataset, begin, end),
        *_nodes(dataset),
        *_edges(means, threshold),
        "</graph></graphml>",
    ]
    with whole_file(path, overwrite=overwrite) as draft:
        with open(draft, "w", encoding="utf-8") as file:
            file.write("\n".join(lines) + "\n")


def _graph_start(dataset: Dataset, begin: int, end: int) -> list[str]:
    told = {
        "name": ("string", dataset.name),
        "computation": ("string", dataset.note),
        "pair_order": ("string", "edges run from the row sensor to the column sensor; all pairs "
                                 + PAIR_ORDER),
        "slices": ("string", f"mean of {begin} to {end}, counted from 0"),
        "band_low": ("double", _number(dataset.band[0])),
        "band_high": ("double", _number(dataset.band[1])),
        "latency_begin": ("double", _number(dataset.latency[0])),
        "latency_end": ("double", _number(dataset.latency[1])),
    }  # fmt: skip
    keys = [
        f'<key id="{name}" for="graph" attr.name="{name}" attr.type="{kind}"/>'
        for name, (kind, _) in told.items()
    ]
    data = [f'<data key="{name}">{_xml(value)}</data>' for name, (_, value) in told.items()]
    return [*keys, '<graph id="cxc" edgedefault="directed">', *data]


def _nodes(dataset: Dataset) -> list[str]:
    numbers = dataset.channels_a[:, 0].tolist()
    return [
        f'<node id="{i}"><data key="label">{_xml(label)}</data>'
        f'<data key="channel">{number}</data></node>'
        for i, (label, number) in enumerate(zip(dataset.sensors, numbers), 1)
    ]


def _edges(means: np.ndarray, threshold: float) -> list[str]:
    return [
        f'<edge source="{r + 1}" target="{c + 1}"><data key="weight">{_number(means[r, c])}</data>'
        "</edge>"
        for r, c in np.argwhere(~(np.abs(means) <= threshold))
        if r != c
    ]


def _number(value: float) -> str:
    """As XML spells it, which differs from Python for what is not finite."""
    if np.isnan(value):
        return "NaN"
    return repr(float(value)) if np.isfinite(value) else "INF" if value > 0 else "-INF"


def _xml(value: str) -> str:
    """Escaped; a question mark stands for what XML cannot hold."""
    allowed = "[^\t\n\r\x20-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]"
    return escape(re.sub(allowed, "?", value))
