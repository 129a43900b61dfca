"""Datasets to and from the formats of other tools: netCDF, MATLAB, CSV, GraphML, NumPy.

In every format the order of pairs is the same, and written down: row-major, the row sensor ("from")
first, the column sensor ("to") second; sensors are counted from 1 where they are named by number.
"""

from __future__ import annotations

import csv
import os
from typing import Callable

import numpy as np

from .dataset import Dataset, open_dataset
from .errors import CommandError
from .files import check_output, whole_file

PAIR_ORDER = "row-major: pair (from, to) is from * sensors + to; from is the row, to the column"


def convert(source: str, target: str, *, overwrite: bool = False) -> Dataset:
    """Reads `source` and writes `target`; both formats go by the endings. Returns the dataset.

    Reads `.cxc`, `.nc`, `.mat`, `.npy`, `.npz`; writes `.cxc`, `.nc`, `.mat`, `.csv`, `.graphml`,
    `.npz`.

    Raises:
        CommandError: an ending that is not known, a file without what a dataset needs, an output
            that exists already (without `overwrite`) or cannot be written.
    """
    read = _by_ending(source, _READERS, "reads")
    write = _by_ending(target, _WRITERS, "writes")
    check_output(target, overwrite)
    dataset = read(source)
    write(dataset, target, overwrite)
    return dataset


def _by_ending(path: str, formats: dict[str, Callable], does: str) -> Callable:
    ending = os.path.splitext(path)[1].lower()
    if ending not in formats:
        raise CommandError(f"{path}: {does} {', '.join(sorted(formats))}")
    return formats[ending]


def labels_of(dataset: Dataset) -> list[str]:
    """The sensors' names: those that the computation note lists, or else their channel numbers."""
    sensors = dataset.shape[1]
    for line in dataset.note.splitlines():
        if line.startswith("Sensors: "):
            named = [part.partition(" ")[2] for part in line[len("Sensors: ") :].split(", ")]
            if len(named) == sensors and all(named):
                return named
    numbers = dataset.channels_a[:, 0] if sensors else []
    if len(set(map(int, numbers))) == sensors:
        return [str(int(number)) for number in numbers]
    return [str(i + 1) for i in range(sensors)]


def times_of(dataset: Dataset) -> np.ndarray:
    """Latency of every slice; the slices' numbers where the dataset has no rate."""
    if dataset.sampling_rate > 0:
        return np.array([dataset.latency_of(t) for t in range(len(dataset))])
    return np.arange(len(dataset), dtype=np.float64)


def _require_square(dataset: Dataset, path: str) -> np.ndarray:
    values = dataset.to_array()
    if values.size == 0:
        raise CommandError(f"{path}: the dataset holds no values")
    if values.shape[1] != values.shape[2]:
        raise CommandError(f"{path}: rows and columns differ, which this format cannot tell")
    return values


# -- netCDF, as MNE's connectivity tools lay it out


def to_netcdf(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """A netCDF4 (HDF5) file with one variable, "connectivity" [node_in -> node_out, freqs, times].

    The layout is the one that MNE's connectivity tools save and read: pairs raveled, one frequency
    (the middle of the band), what describes them as attributes.
    """
    import xarray

    values = _require_square(dataset, path)
    slices, sensors, _ = values.shape
    low, high = dataset.band
    array = xarray.DataArray(
        values.reshape(slices, -1).T[:, np.newaxis, :],
        dims=("node_in -> node_out", "freqs", "times"),
        coords={
            "node_in -> node_out": [str(i) for i in range(sensors * sensors)],
            "freqs": [(low + high) / 2],
            "times": times_of(dataset),
        },
        name="connectivity",
        attrs={
            "data_structure": "SpectroTemporalConnectivity",
            "method": "coh",
            "spec_method": "n/a",
            "indices": "all",
            "n_nodes": sensors,
            "node_names": labels_of(dataset),
            "n_epochs_used": "n/a",
            "metadata": "",
            "freqs_used": [low, high],
            "pair_order": PAIR_ORDER,
            **_description(dataset),
        },
    )
    with whole_file(path, overwrite=overwrite) as draft:
        array.to_netcdf(draft, engine="netcdf4", format="NETCDF4")


def from_netcdf(path: str) -> Dataset:
    """The dataset of a file that `to_netcdf`, or MNE's connectivity tools, have written."""
    import xarray

    try:
        with xarray.open_dataarray(path, engine="netcdf4") as array:
            array.load()
    except (OSError, ValueError) as error:
        raise CommandError(f"{path}: is no netCDF file of one variable: {error}") from error
    attributes = array.attrs
    sensors = int(attributes.get("n_nodes", 0))
    values = array.values
    if values.ndim == 2:  # without frequencies, or without times
        values = values[:, np.newaxis, :] if "times" in array.dims else values[:, :, np.newaxis]
    if values.ndim != 3 or sensors < 1 or values.shape[0] != sensors * sensors:
        raise CommandError(f"{path}: holds no connectivity of all pairs")
    if values.shape[1] != 1:
        raise CommandError(f"{path}: holds {values.shape[1]} frequencies; choose one before")
    times = array.coords["times"].values if "times" in array.coords else np.zeros(1)
    frequencies = np.atleast_1d(attributes.get("freqs_used", array.coords["freqs"].values))
    return _made(
        path,
        values[:, 0, :].T.reshape(-1, sensors, sensors),
        times=times,
        band=(float(np.min(frequencies)), float(np.max(frequencies))),
        description=attributes,
        labels=list(np.atleast_1d(attributes.get("node_names", []))),
    )


# -- MATLAB, in FieldTrip's form


def to_matlab(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """A MATLAB 5 file with a structure `coh`: dimord "chan_chan_time", label, time, cohspctrm."""
    from scipy.io import savemat

    values = _require_square(dataset, path)
    labels = np.empty((values.shape[1], 1), dtype=object)
    labels[:, 0] = labels_of(dataset)
    low, high = dataset.band
    structure = {
        "label": labels,
        "dimord": "chan_chan_time",
        "cohspctrm": np.ascontiguousarray(values.transpose(1, 2, 0)),
        "time": times_of(dataset),
        "freq": (low + high) / 2,
        "band": [low, high],
        "pair_order": PAIR_ORDER,
        **_description(dataset),
    }
    with whole_file(path, overwrite=overwrite) as draft:
        savemat(draft, {"coh": structure}, oned_as="row", appendmat=False)


def from_matlab(path: str) -> Dataset:
    """The dataset of a MATLAB 5 file with one structure of dimord "chan_chan_time"."""
    from scipy.io import loadmat

    try:
        variables = loadmat(path, squeeze_me=True, struct_as_record=False)
    except (OSError, ValueError, TypeError, NotImplementedError) as error:
        raise CommandError(f"{path}: is no MATLAB file that can be read: {error}") from error
    structures = [s for s in variables.values() if hasattr(s, "dimord")]
    if len(structures) != 1 or structures[0].dimord not in ("chan_chan_time", "chan_chan"):
        raise CommandError(f'{path}: holds no structure of dimord "chan_chan_time"')
    found = structures[0]
    fields = [name for name in found._fieldnames if name.endswith("spctrm")]
    if len(fields) != 1:
        raise CommandError(f"{path}: the structure has no field such as cohspctrm")
    values = np.asarray(getattr(found, fields[0]))
    sensors = np.atleast_1d(found.label).size
    values = values.reshape(sensors, sensors, -1) if values.size else values
    if values.ndim != 3:
        raise CommandError(f"{path}: {fields[0]} has no values")
    band = getattr(found, "band", getattr(found, "freq", (0.1, 1.0)))
    return _made(
        path,
        values.transpose(2, 0, 1),
        times=np.atleast_1d(getattr(found, "time", np.zeros(1))),
        band=(float(np.min(band)), float(np.max(band))),
        description={name: getattr(found, name) for name in found._fieldnames},
        labels=list(np.atleast_1d(found.label)),
    )


# -- tables and graphs


def to_csv(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """Comma-separated values: a line for each slice of each pair, with every digit."""
    values = dataset.to_array()
    times = times_of(dataset)
    rows, columns = dataset.channels_a, dataset.channels_b
    with whole_file(path, overwrite=overwrite) as draft, open(draft, "w", newline="") as file:
        write = csv.writer(file, lineterminator="\n").writerow
        write(["slice", "latency", "row", "column", "row_channel", "column_channel", "value"])
        for r, c in np.ndindex(values.shape[1:]):
            for t, value in enumerate(values[:, r, c].tolist()):
                write([t, times[t], r + 1, c + 1, rows[r, c], columns[r, c], repr(value)])


def to_graphml(dataset: Dataset, path: str, overwrite: bool = True, *, threshold=0.0) -> None:
    """A directed GraphML graph of the means over the selected slices.

    Every sensor is a node, also without an edge; an edge from the row to the column sensor where
    the magnitude is above `threshold`.
    """
    from xml.sax.saxutils import escape, quoteattr

    values = _require_square(dataset, path)
    begin, end = dataset.selection
    part = values[max(begin, 0) : end + 1]
    means = (part if len(part) else values).mean(axis=0)
    lines = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        f"<!-- {escape(PAIR_ORDER.replace('--', '-'))} -->",
        '<graphml xmlns="http://graphml.graphdrawing.org/xmlns">',
        '<key id="label" for="node" attr.name="label" attr.type="string"/>',
        '<key id="weight" for="edge" attr.name="weight" attr.type="double"/>',
        f'<graph id={quoteattr(_printable(dataset.name))} edgedefault="directed">',
    ]
    for i, label in enumerate(labels_of(dataset)):
        text = escape(_printable(label))
        lines.append(f'<node id="{i + 1}"><data key="label">{text}</data></node>')
    for r, c in np.argwhere(np.abs(means) > threshold):
        if r != c:
            weight = float(means[r, c])
            lines.append(
                f'<edge source="{r + 1}" target="{c + 1}"><data key="weight">{weight!r}</data>'
                "</edge>"
            )
    lines.append("</graph></graphml>")
    with whole_file(path, overwrite=overwrite) as draft, open(draft, "w", encoding="utf-8") as file:
        file.write("\n".join(lines) + "\n")


# -- NumPy


def to_npz(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """NumPy's archive: values [slice, row, column], time, labels, band, and what describes them."""
    with whole_file(path, overwrite=overwrite) as draft, open(draft, "wb") as file:
        np.savez(
            file,
            values=dataset.to_array(),
            time=times_of(dataset),
            labels=np.array(labels_of(dataset)),
            band=np.array(dataset.band),
            pair_order=PAIR_ORDER,
            **_description(dataset),
        )


def from_numpy(path: str) -> Dataset:
    """The dataset of an array [slice, row, column] (.npy), or of an archive with `values`."""
    try:
        with open(path, "rb") as file:
            loaded = np.load(file, allow_pickle=False)
            fields = dict(loaded) if hasattr(loaded, "files") else {"values": loaded}
    except (OSError, ValueError, EOFError) as error:
        raise CommandError(f"{path}: is no NumPy file that can be read: {error}") from error
    if "values" not in fields:
        raise CommandError(f"{path}: holds no array named values")
    values = fields["values"]
    if values.ndim == 2:
        values = values[np.newaxis]
    return _made(
        path,
        values,
        times=fields.get("time", np.zeros(1)),
        band=tuple(map(float, fields.get("band", (0.1, 1.0)))),
        description={name: value[()] for name, value in fields.items()},
        labels=[str(label) for label in fields.get("labels", [])],
    )


# -- what all have in common


def _description(dataset: Dataset) -> dict:
    return {
        "dataset_name": dataset.name,
        "computation": dataset.note,
        "slices_per_second": dataset.sampling_rate,
        "latency_begin": dataset.latency[0],
        "latency_end": dataset.latency[1],
        "channel_type": dataset.channel_type,
        "channel_numbers": dataset.channels_a[:, 0].tolist() if dataset.shape[1] else [],
    }


def _made(path: str, values, *, times, band, description, labels) -> Dataset:
    """A dataset of what a file held, or CommandError."""
    if np.iscomplexobj(values):
        raise CommandError(f"{path}: holds complex values; take their magnitudes before")
    if values.dtype.kind not in "fiu" or values.ndim != 3 or values.size == 0:
        raise CommandError(f"{path}: holds no real numbers [slice, row, column]")
    times = np.asarray(times, dtype=np.float64)
    steps = np.diff(times)
    rate = float(description.get("slices_per_second", 1.0 / steps.mean() if steps.size else 0.0))
    note = str(description.get("computation", f"From {os.path.basename(path)}"))
    if labels and "Sensors: " not in note:
        names = ", ".join(f"{n} {label}" for n, label in enumerate(labels, 1))
        note += f"\nSensors: {names}"
    sensors = values.shape[1]
    numbers = np.atleast_1d(description.get("channel_numbers", []))
    if numbers.size != sensors:
        numbers = np.arange(1, sensors + 1)
    return Dataset.from_array(
        values,
        sampling_rate=rate,
        latency=(
            float(description.get("latency_begin", times[0])),
            float(description.get("latency_end", times[-1])),
        ),
        band=band,
        name=str(description.get("dataset_name", os.path.splitext(os.path.basename(path))[0])),
        note=note,
        channels=numbers if values.shape[1] == values.shape[2] else None,
        channel_type=int(description.get("channel_type", 0)),
    )


def _printable(text: str) -> str:
    """Without what XML cannot hold."""
    return "".join(c for c in text if c.isprintable())


def _save(dataset: Dataset, path: str, overwrite: bool) -> None:
    dataset.save(path, overwrite=overwrite)


_READERS: dict[str, Callable] = {
    ".cxc": open_dataset,
    ".nc": from_netcdf,
    ".mat": from_matlab,
    ".npy": from_numpy,
    ".npz": from_numpy,
}
_WRITERS: dict[str, Callable] = {
    ".cxc": _save,
    ".nc": to_netcdf,
    ".mat": to_matlab,
    ".csv": to_csv,
    ".graphml": to_graphml,
    ".npz": to_npz,
}
