"""NumPy's own files."""

from __future__ import annotations

import zipfile
import zlib

import numpy as np

from .dataset import Dataset
from .errors import CommandError
from .exchange_common import PAIR_ORDER, dataset_of, description_of, encodable, values_of
from .files import check_input, whole_file
from .labels import same_sensors


def to_npz(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """Writes an archive: values [slice, row, column], time, labels, band, and what describes them.

    `labels` name the sensors; where columns are others than rows, `column_labels` name the columns.

    Raises:
        CommandError: there are no values.
        OSError: as `whole_file`.
    """
    values = values_of(dataset, path)
    fields = {
        "values": values,
        "time": dataset.times,
        "labels": np.array([encodable(label) for label in dataset.sensors]),
        "band": np.array(dataset.band),
        "pair_order": np.array(PAIR_ORDER),
        **{name: np.array(value) for name, value in description_of(dataset).items()},
    }
    if not same_sensors(dataset):
        fields["column_labels"] = np.array([encodable(name) for name in dataset.column_sensors])
    # As np.savez does, but closed in order where the disk is full.
    with whole_file(path, overwrite=overwrite) as draft, zipfile.ZipFile(draft, "w") as archive:
        for name, array in fields.items():
            with archive.open(name + ".npy", "w", force_zip64=True) as entry:
                np.lib.format.write_array(entry, np.asanyarray(array), allow_pickle=False)


def from_numpy(path: str) -> Dataset:
    """The dataset of an array [slice, row, column] (.npy), or of an archive with `values` (.npz).

    A square array of two dimensions is one slice.

    Raises:
        CommandError: the file is none of that kind.
    """
    check_input(path)
    try:
        with open(path, "rb") as file:
            loaded = np.load(file, allow_pickle=False)
            fields = dict(loaded) if hasattr(loaded, "files") else {"values": loaded}
    except (OSError, ValueError, EOFError, KeyError, zipfile.BadZipFile, zlib.error) as error:
        raise CommandError(f"{path}: is no NumPy file that can be read: {error}") from error
    if "values" not in fields:
        told = ", ".join(fields) or "none"
        raise CommandError(f"{path}: holds no array named values; its arrays: {told}")
    values = fields["values"]
    if values.ndim == 2 and values.shape[0] == values.shape[1]:
        values = values[np.newaxis]
    return dataset_of(
        path,
        values,
        times=fields.get("time"),
        band=fields.get("band"),
        labels=list(np.atleast_1d(fields.get("labels", []))),
        column_labels=list(np.atleast_1d(fields.get("column_labels", []))),
        description={name: value[()] for name, value in fields.items()},
    )
