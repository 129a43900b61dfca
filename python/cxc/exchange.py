"""Datasets to and from the formats of other tools: netCDF, MATLAB, CSV, GraphML, NumPy.

In every format the order of pairs is the same, and written down: row-major, the row sensor ("from")
first, the column sensor ("to") second; sensors are counted from 1 where they are named by number.
"""

from __future__ import annotations

import os
from typing import Callable

from .dataset import Dataset
from .errors import CommandError
from .exchange_common import PAIR_ORDER
from .exchange_matlab import from_matlab, to_matlab
from .exchange_netcdf import from_netcdf, to_netcdf
from .exchange_numpy import from_numpy, to_npz
from .exchange_text import to_csv, to_graphml
from .files import check_output

__all__ = [
    "PAIR_ORDER", "convert", "from_matlab", "from_netcdf", "from_numpy", "to_csv", "to_graphml",
    "to_matlab", "to_netcdf", "to_npz",
]  # fmt: skip


def convert(source: str, target: str, *, overwrite: bool = False) -> Dataset:
    """Reads `source` and writes `target`; both formats go by the endings. Returns the dataset.

    Reads `.cxc`, `.nc`, `.h5`, `.hdf5`, `.mat`, `.npy`, `.npz`; writes `.cxc`, `.nc`, `.h5`,
    `.hdf5`, `.mat`, `.csv`, `.graphml`, `.npz`.

    Raises:
        CommandError: an ending that is not known, a file without what a dataset needs, an output
            that exists already (without `overwrite`) or cannot be written.
    """
    read = _by_ending(source, _READERS, "read")
    write = _by_ending(target, _WRITERS, "written")
    if os.path.isdir(source):
        raise CommandError(f"{source}: is a folder, not a file")
    if not os.path.exists(source):
        raise CommandError(f"{source}: no such file")
    check_output(target, overwrite)
    dataset = read(source)
    write(dataset, target, overwrite)
    return dataset


def _by_ending(path: str, formats: dict[str, Callable], done: str) -> Callable:
    ending = os.path.splitext(path)[1].lower()
    if ending not in formats:
        raise CommandError(f"{path}: what can be {done} ends with {', '.join(sorted(formats))}")
    return formats[ending]


def _save(dataset: Dataset, path: str, overwrite: bool) -> None:
    dataset.save(path, overwrite=overwrite)


_READERS: dict[str, Callable] = {
    ".cxc": Dataset.open,
    ".nc": from_netcdf,
    ".h5": from_netcdf,
    ".hdf5": from_netcdf,
    ".mat": from_matlab,
    ".npy": from_numpy,
    ".npz": from_numpy,
}
_WRITERS: dict[str, Callable] = {
    ".cxc": _save,
    ".nc": to_netcdf,
    ".h5": to_netcdf,
    ".hdf5": to_netcdf,
    ".mat": to_matlab,
    ".csv": to_csv,
    ".graphml": to_graphml,
    ".npz": to_npz,
}
