"""Datasets, packages and groups as arrays with coordinates, as tables, and in notebooks."""

from __future__ import annotations

import html
from typing import TYPE_CHECKING, Any, Iterable, Sequence

import numpy as np
import numpy.typing as npt

from .labels import same_sensors
from .thumbnail import picture

if TYPE_CHECKING:
    import pandas
    import xarray

    from .containers import Group, Package
    from .dataset import Dataset

# Beyond so many values notebooks show no range and no picture: they would wait for them.
_MOST_SHOWN = 20_000_000
_MOST_PICTURED = 400


# -- xarray


def array_of(dataset: Dataset) -> xarray.DataArray:
    """As `Dataset.to_xarray` says."""
    import xarray

    values = dataset.to_array()
    return xarray.DataArray(
        values,
        dims=("time", "row", "column"),
        coords={"time": _time(dataset), **_sensors(dataset)},
        name="coherence",
        attrs={"name": dataset.name, **_attributes(dataset)},
    )


def _time(dataset: Dataset, dim: str = "time") -> tuple[str, Any, dict[str, str]]:
    if dataset.sampling_rate > 0:
        return dim, dataset.times, {"long_name": "latency", "units": "s"}
    return dim, dataset.times, {"long_name": "slice", "units": "1"}


def _sensors(dataset: Dataset) -> dict[str, Any]:
    return {
        "row": ("row", dataset.sensors, {"long_name": "from, the row sensor"}),
        "column": ("column", dataset.column_sensors, {"long_name": "to, the column sensor"}),
        "row_channel": ("row", dataset.channels_a[:, 0], {"long_name": "channel number"}),
        "column_channel": ("column", dataset.channels_b[0, :], {"long_name": "channel number"}),
    }


def _attributes(dataset: Dataset) -> dict[str, Any]:
    return {
        "long_name": "coherence",
        "units": "1",
        "band_hz": list(dataset.band),
        "slices_per_second": dataset.sampling_rate,
        "latency_s": list(dataset.latency),
        "channel_type": dataset.type_name,
        "note": dataset.note,
    }


def arrays_of_package(package: Package) -> xarray.Dataset:
    """As `Package.to_xarray` says."""
    import xarray

    held = dict(package.items())
    if not held:
        raise ValueError("the package is empty")
    first = next(iter(held.values()))
    _require_alike(held, sensors_only=True)
    coords: dict[str, Any] = {"time": _time(first), **_sensors(first)}
    arrays = {}
    for name, dataset in held.items():
        dim = "time"
        if not np.array_equal(dataset.times, first.times):
            dim = f"{name}_time"
            coords[dim] = _time(dataset, dim)
        attributes = {"name": dataset.name, **_attributes(dataset)}
        arrays[name] = ((dim, "row", "column"), dataset.to_array(), attributes)
    return xarray.Dataset(arrays, coords=coords, attrs=_container_attributes(package))


def array_of_group(group: Group) -> xarray.DataArray:
    """As `Group.to_xarray` says."""
    import xarray

    held = _members(group)
    if not held:
        raise ValueError("the group is empty")
    _require_alike({f"dataset {k}": dataset for k, dataset in held})
    first = held[0][1]
    values = np.empty((len(held), *first.shape))
    for at, (_, dataset) in enumerate(held):
        values[at] = dataset.to_array()
    coords: dict[str, Any] = {
        "dataset": ("dataset", [k for k, _ in held], {"long_name": "position in the group"}),
        "name": ("dataset", [dataset.name for _, dataset in held]),
        "time": _time(first),
        **_sensors(first),
    }
    return xarray.DataArray(
        values, dims=("dataset", "time", "row", "column"), coords=coords, name="coherence",
        attrs={**_attributes(first), **_container_attributes(group)},
    )  # fmt: skip


def _container_attributes(container: Package | Group) -> dict[str, Any]:
    return {"name": container.name, "info": container.info}


def _members(group: Group) -> list[tuple[int, Dataset]]:
    return [(k, dataset) for k, dataset in enumerate(group) if dataset is not None]


def _require_alike(held: dict[str, Dataset], sensors_only: bool = False) -> None:
    """Raises ValueError where values of the same position would not mean the same."""
    (name, first), *others = held.items()
    for other, dataset in others:
        differs = []
        if dataset.shape[1:] != first.shape[1:]:
            differs.append(f"is {_size(dataset)}, {name} {_size(first)}")
        elif (dataset.sensors, dataset.column_sensors) != (first.sensors, first.column_sensors):
            differs.append(f"has other sensors than {name}")
        if not sensors_only:
            if len(dataset) != len(first):
                differs.append(f"has {len(dataset)} slices, {name} {len(first)}")
            elif not np.allclose(dataset.times, first.times, rtol=1e-9, atol=1e-9):
                differs.append(f"has other latencies than {name}")
            if dataset.band != first.band:
                differs.append(f"has another band than {name}")
        if differs:
            raise ValueError(f"{other} {' and '.join(differs)}")


def _size(dataset: Dataset) -> str:
    return f"{dataset.shape[1]} x {dataset.shape[2]} sensors"


# -- pandas


def table_of(dataset: Dataset) -> pandas.DataFrame:
    """As `Dataset.to_pandas` says."""
    import pandas

    slices, rows, columns = dataset.shape
    values = np.ascontiguousarray(dataset.to_array().transpose(1, 2, 0))
    names = np.array(dataset.sensors, dtype=object)
    others = np.array(dataset.column_sensors, dtype=object)
    return pandas.DataFrame(
        {
            "time": np.tile(dataset.times, rows * columns),
            "from": np.repeat(names, columns * slices),
            "to": np.tile(np.repeat(others, slices), rows),
            "value": values.ravel(),
        },
        copy=False,
    )


def table_of_package(package: Package) -> pandas.DataFrame:
    """As `Package.to_pandas` says."""
    return _stacked([({"class": name}, dataset) for name, dataset in package.items()])


def table_of_group(group: Group) -> pandas.DataFrame:
    """As `Group.to_pandas` says."""
    return _stacked([({"dataset": k, "name": d.name}, d) for k, d in _members(group)])


def _stacked(parts: Sequence[tuple[dict[str, Any], Dataset]]) -> pandas.DataFrame:
    import pandas

    tables = []
    for before, dataset in parts:
        table = table_of(dataset)
        for at, (name, value) in enumerate(before.items()):
            table.insert(at, name, value)
        tables.append(table)
    if not tables:
        raise ValueError("there is no dataset")
    return pandas.concat(tables, ignore_index=True)


# -- notebooks


def html_of(dataset: Dataset) -> str:
    """A table of what the dataset is, and a picture of its mean over the selected slices."""
    slices, rows, columns = dataset.shape
    begin, end = dataset.latency
    low, high = dataset.band
    lines = [
        ("shape", f"{slices} slices x {rows} x {columns} sensors"),
        ("band", f"{low:g} to {high:g} Hz"),
        ("latency", f"{begin:g} to {end:g}, {dataset.sampling_rate:g} slices per second"),
        ("sensors", dataset.type_name),
    ]
    image = ""
    if dataset.header.has_grid() and 0 < slices * rows * columns <= _MOST_SHOWN:
        least, most = dataset.range(0, slices - 1)  # leaves the cached range alone
        lines.append(("values", f"{least:g} to {most:g}"))
        if max(rows, columns) <= _MOST_PICTURED:
            image = picture(
                _mean(dataset), "Mean over the selected slices", same=same_sensors(dataset)
            )
    lines.append(("note", dataset.note))
    return _table(dataset.name, lines, image)


def _mean(dataset: Dataset) -> npt.NDArray[np.float64]:
    begin, end = dataset.selection
    values = dataset.to_array()
    part = values[max(begin, 0) : end + 1]
    mean: npt.NDArray[np.float64] = (part if len(part) else values).mean(axis=0)
    return mean


def html_of_package(package: Package) -> str:
    """A table of the classes."""
    lines = [(name, _line(dataset)) for name, dataset in package.items()]
    return _table(package.name, [("info", package.info), *lines])


def html_of_group(group: Group, most: int = 20) -> str:
    """A table of the first `most` datasets."""
    held = [(str(k), "empty" if d is None else _line(d)) for k, d in enumerate(group[:most])]
    if len(group) > most:
        held.append(("...", f"and {len(group) - most} more"))
    return _table(group.name, [("info", group.info), ("datasets", str(len(group))), *held])


def _line(dataset: Dataset) -> str:
    slices, rows, columns = dataset.shape
    low, high = dataset.band
    return f"{dataset.name}: {slices} x {rows} x {columns}, {low:g} to {high:g} Hz"


def _table(caption: str, lines: Iterable[tuple[str, str]], image: str = "") -> str:
    cells = "".join(
        f'<tr><th style="text-align:left;vertical-align:top">{html.escape(what)}</th>'
        f'<td style="text-align:left;white-space:pre-wrap">{html.escape(text)}</td></tr>'
        for what, text in lines
    )
    if image:
        cells += f"<tr><th></th><td>{image}</td></tr>"
    return f"<table><caption>{html.escape(caption)}</caption>{cells}</table>"
