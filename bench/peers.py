#!/usr/bin/env python3
"""What a user would take instead, on the same shape: NumPy in memory; .npy, HDF5 and netCDF files;
savetxt and pandas for text. And the Python package itself, where it does what NumPy does.

    PYTHONPATH=<build>/python peers.py SHAPE OUT [--only REGEX] [--repetitions N]
"""

from __future__ import annotations

import pathlib
import tempfile

import h5py
import numpy as np
import pandas
import xarray

import cxc
from cells import Cells


def measure_memory(cells: Cells, pairs: np.ndarray, slices: np.ndarray) -> None:
    """Pairs x slices, each pair's values side by side: the best layout for NumPy here."""
    other = pairs[::-1].copy()
    constant = pairs[:, :, :1].copy()
    cells.measure("NumPy/sum", lambda: pairs + other)
    cells.measure("NumPy/Act-Ctl", lambda: pairs - constant)
    cells.measure("NumPy/range", lambda: (pairs.min(), pairs.max(), pairs.mean()))

    def absolute_range():
        magnitudes = np.abs(pairs)
        return magnitudes.min(), magnitudes.max()

    def statistics():
        squares, magnitudes = np.square(pairs), np.abs(pairs)
        return (
            pairs.min(axis=2).min(), pairs.max(axis=2).max(), pairs.mean(axis=2).mean(),
            magnitudes.mean(axis=2).mean(), np.sqrt(squares.mean(axis=2)).mean(),
        )  # fmt: skip

    cells.measure("NumPy/absolute range", absolute_range)
    cells.measure("NumPy/statistics", statistics)
    cells.measure("NumPy/normalise", lambda: pairs / np.sqrt(np.square(pairs).mean()))
    each = np.arange(len(pairs))

    def zero_diagonal():
        other[each, each] = 0.0

    cells.measure("NumPy/zero diagonal", zero_diagonal)
    cells.measure(
        "NumPy/matrices from dataset", lambda: np.copyto(slices, pairs.transpose(2, 0, 1))
    )
    cells.measure(
        "NumPy/dataset from matrices", lambda: np.copyto(pairs, slices.transpose(1, 2, 0))
    )
    # A copy in every case: with one slice the transposed array is contiguous as it is.
    cells.measure("NumPy/from_array", lambda: slices.transpose(1, 2, 0).copy())
    cells.measure("NumPy/to_array", lambda: pairs.transpose(2, 0, 1).copy())
    dataset = cxc.Dataset.from_array(slices)
    cells.measure("ours/from_array, Python", lambda: cxc.Dataset.from_array(slices))
    cells.measure("ours/to_array, Python", dataset.to_array)


def measure_files(cells: Cells, folder: str, pairs: np.ndarray) -> None:
    npy, hdf5, netcdf = (str(pathlib.Path(folder, f"peer.{end}")) for end in ("npy", "h5", "nc"))
    array = xarray.DataArray(pairs, dims=("rows", "columns", "times"), name="values")

    def save_hdf5():
        with h5py.File(hdf5, "w") as file:
            file.create_dataset("values", data=pairs, chunks=True)

    def open_hdf5():
        with h5py.File(hdf5, "r") as file:
            return file["values"][...]

    # Each file is there before it is opened, whatever is measured, and is not replaced by saving.
    for name, path, save, load in [
        ("npy", npy, lambda: np.save(npy, pairs), lambda: np.load(npy)),
        ("h5py", hdf5, save_hdf5, open_hdf5),
        ("netCDF", netcdf, lambda: array.to_netcdf(netcdf), lambda: xarray.load_dataarray(netcdf)),
    ]:
        save()
        cells.measure(f"{name}/open", load)
        cells.measure(f"{name}/save", save, pathlib.Path(path).unlink)


def measure_text(cells: Cells, folder: str, slices: np.ndarray) -> None:
    path = str(pathlib.Path(folder, "peer.txt"))
    lines = slices.reshape(-1, slices.shape[2])
    frame = pandas.DataFrame(lines)
    cells.measure("savetxt/text export", lambda: np.savetxt(path, lines, fmt="%f"))
    cells.measure(
        "pandas/text export",
        lambda: frame.to_csv(path, sep=" ", float_format="%f", header=False, index=False),
    )


def measure_group(cells: Cells, arrays: list[np.ndarray]) -> None:
    cells.measure("NumPy/average", lambda: np.mean(arrays, axis=0))
    cells.measure(
        "NumPy/summary",
        lambda: (np.min(arrays, axis=0), np.mean(arrays, axis=0), np.max(arrays, axis=0)),
    )
    group = cxc.Group(cxc.Dataset.from_array(values) for values in arrays)
    group.current = 0

    def shorten():
        del group[len(arrays) :]

    cells.measure("ours/average, Python", group.average, shorten)
    cells.measure("ours/summary, Python", group.summary, shorten)


def main() -> None:
    cells = Cells(__doc__.split("\n")[0])
    random = np.random.default_rng(1)
    shape = (cells.slices, cells.sensors, cells.sensors)
    if cells.members:
        measure_group(cells, [random.uniform(-1, 1, shape) for _ in range(cells.members)])
    else:
        slices = random.uniform(-1, 1, shape)
        pairs = slices.transpose(1, 2, 0).copy()
        with tempfile.TemporaryDirectory() as folder:
            measure_files(cells, folder, pairs)
            measure_text(cells, folder, slices)
        measure_memory(cells, pairs, slices)
    cells.write()


if __name__ == "__main__":
    main()
