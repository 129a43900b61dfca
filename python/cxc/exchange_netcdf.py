"""netCDF (HDF5), laid out as MNE's connectivity tools save and read it."""

from __future__ import annotations

import warnings
from typing import Any

import numpy as np

from .dataset import Dataset
from .errors import CommandError
from .exchange_common import PAIR_ORDER, dataset_of, description_of, encodable, values_of
from .files import check_input, whole_file

PAIRS = "node_in -> node_out"
_NONE = "n/a"  # what the format writes for None, which it does not have


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
            "spec_method": _NONE,
            "indices": "all",
            "n_nodes": sensors,
            "node_names": [encodable(label) for label in dataset.sensors],
            "n_epochs_used": _NONE,
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
    times or as a single slice. Warns of values that stand below the diagonal only: so MNE's
    tools leave measures that have no direction.

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
    frequencies = attributes.get("freqs_used", _NONE)
    if isinstance(frequencies, str) and frequencies == _NONE:
        frequencies = array.coords.get("freqs")
    matrices = _unraveled(path, values, attributes)
    if np.tril(matrices, -1).any() and not np.triu(matrices).any():
        warnings.warn(
            f"{path}: all values stand below the diagonal; values + values.transpose(0, 2, 1) "
            "of to_array() has both directions",
            stacklevel=3,
        )
    return dataset_of(
        path,
        matrices,
        times=array.coords["times"].values if "times" in array.coords else None,
        band=None if frequencies is None else np.asarray(frequencies),
        labels=list(np.atleast_1d(attributes.get("node_names", []))),
        description=attributes,
    )


def _loaded(path: str) -> Any:
    import h5py
    import xarray

    check_input(path)
    try:
        # MNE's tools save empty attributes, with which the netCDF library opens no file: what is
        # HDF5 is read as they read it, and only what is older netCDF by that library.
        how: dict[str, Any] = {"engine": "netcdf4"}
        if h5py.is_hdf5(path):
            how = {"engine": "h5netcdf", "phony_dims": "access"}
        with xarray.open_dataset(path, decode_times=False, **how) as file:
            names = list(file.data_vars)
            if "connectivity" in names:
                names = ["connectivity"]
            if len(names) == 1:
                return file[names[0]].load()
    except (OSError, ValueError, RuntimeError, TypeError, KeyError, AttributeError) as error:
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
