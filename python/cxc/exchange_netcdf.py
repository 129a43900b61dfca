"""netCDF (HDF5), laid out as MNE's connectivity tools save and read it."""

from __future__ import annotations

from typing import Any

import numpy as np

from .dataset import Dataset
from .errors import CommandError
from .exchange_common import PAIR_ORDER, dataset_of, description_of, encodable, values_of
from .files import whole_file

PAIRS = "node_in -> node_out"


def to_netcdf(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """Writes one variable, "connectivity" [node_in -> node_out, freqs, times].

    The pairs are raveled, the one frequency is the middle of the band, and what describes them is
    in attributes of the variable.

    Raises:
        CommandError: rows and columns are not the same sensors, or there are no values.
        OSError: as `whole_file`.
    """
    import xarray

    values = values_of(dataset, path, same=True)
    slices, sensors, _ = values.shape
    low, high = dataset.band
    array = xarray.DataArray(
        values.reshape(slices, -1).T[:, np.newaxis, :],
        dims=(PAIRS, "freqs", "times"),
        coords={
            PAIRS: [str(i) for i in range(sensors * sensors)],
            "freqs": [(low + high) / 2],
            "times": dataset.times,
        },
        name="connectivity",
        attrs={
            "data_structure": "SpectroTemporalConnectivity",
            "method": "coh",
            "spec_method": "n/a",
            "indices": "all",
            "n_nodes": sensors,
            "node_names": [encodable(label) for label in dataset.sensors],
            "n_epochs_used": "n/a",
            "metadata": "[]",  # JSON, which readers parse without a look
            "freqs_used": [low, high],
            "pair_order": PAIR_ORDER,
            **description_of(dataset),
        },
    )
    with whole_file(path, overwrite=overwrite) as draft:
        try:
            array.to_netcdf(draft, engine="netcdf4", format="NETCDF4")
        except RuntimeError as error:  # so the netCDF library tells of a full disk
            raise CommandError(f"{path}: cannot be written: {error}") from error


def from_netcdf(path: str) -> Dataset:
    """The dataset of a file that `to_netcdf` or MNE's connectivity tools have written.

    All pairs, or the upper triangle of a symmetric matrix; with one frequency or none, and with
    times or as a single slice.

    Raises:
        CommandError: the file is none of that kind.
    """
    array = _loaded(path)
    attributes = array.attrs
    dims = [str(name) for name in array.dims]
    if dims not in ([PAIRS], [PAIRS, "freqs"], [PAIRS, "times"], [PAIRS, "freqs", "times"]):
        raise CommandError(f'{path}: has the dimensions {dims}, not "{PAIRS}", freqs, times')
    if "freqs" in dims:
        if array.sizes["freqs"] != 1:
            raise CommandError(
                f"{path}: holds {array.sizes['freqs']} frequencies; choose or average them before"
            )
        array = array.isel(freqs=0)
    values = array.values if "times" in dims else array.values[:, np.newaxis]
    frequencies = attributes.get("freqs_used", array.coords.get("freqs"))
    return dataset_of(
        path,
        _unraveled(path, values, attributes),
        times=array.coords["times"].values if "times" in array.coords else None,
        band=None if frequencies is None else np.asarray(frequencies),
        labels=list(np.atleast_1d(attributes.get("node_names", []))),
        description=attributes,
    )


def _loaded(path: str) -> Any:
    import xarray

    try:
        with xarray.open_dataset(path, engine="netcdf4", decode_times=False) as file:
            names = list(file.data_vars)
            if "connectivity" in names:
                names = ["connectivity"]
            if len(names) == 1:
                return file[names[0]].load()
    except (OSError, ValueError, RuntimeError, TypeError, KeyError) as error:
        raise CommandError(f"{path}: is no netCDF file that can be read: {error}") from error
    raise CommandError(f"{path}: holds no variable named connectivity")


def _unraveled(path: str, values: np.ndarray, attributes: dict) -> np.ndarray:
    """[slice, row, column] of [pair, slice]."""
    try:
        sensors = max(int(attributes["n_nodes"]), 0)
    except (KeyError, TypeError, ValueError):
        raise CommandError(f"{path}: has no attribute n_nodes, the number of sensors") from None
    indices = attributes.get("indices", "all")
    pairs, slices = values.shape
    if isinstance(indices, str) and indices == "symmetric":
        if pairs == sensors * (sensors + 1) // 2:
            rows, columns = np.triu_indices(sensors)
            made = np.empty((slices, sensors, sensors), dtype=values.dtype)
            made[:, rows, columns] = made[:, columns, rows] = values.T
            return made
    elif isinstance(indices, str) and pairs == sensors * sensors:
        return values.T.reshape(slices, sensors, sensors)
    raise CommandError(f"{path}: holds {pairs} pairs, not all pairs of {sensors} sensors")
