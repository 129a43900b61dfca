"""MATLAB files, in the form in which FieldTrip holds connectivity."""

from __future__ import annotations

import io
import struct
from typing import Any, Iterator

import numpy as np

from .dataset import Dataset
from .errors import CommandError
from .exchange_common import PAIR_ORDER, dataset_of, description_of, encodable, text, values_of
from .files import check_input, whole_file

DIMORDS = ("chan_chan", "chan_chan_time", "chan_chan_freq", "chan_chan_freq_time")


def to_matlab(dataset: Dataset, path: str, overwrite: bool = True) -> None:
    """Writes a MATLAB 5 file with a structure `coh` of dimord "chan_chan_time".

    Fields: label, dimord, cohspctrm [row, column, slice], time, freq (the middle of the band),
    band, pair_order, and cfg with what else describes the dataset.

    Raises:
        CommandError: rows and columns are not the same sensors, there are no values, or too many
            for the format.
        OSError: as `whole_file`.
    """
    from scipy.io import savemat
    from scipy.io.matlab import MatWriteError

    values = values_of(dataset, path, same=True)
    labels = np.empty((values.shape[1], 1), dtype=object)
    labels[:, 0] = [_bmp(label) for label in dataset.sensors]
    low, high = dataset.band
    description = description_of(dataset)
    for name in ("dataset_name", "computation"):
        description[name] = _bmp(description[name])
    structure = {
        "label": labels,
        "dimord": "chan_chan_time",
        "cohspctrm": np.ascontiguousarray(values.transpose(1, 2, 0)),
        "time": dataset.times,
        "freq": (low + high) / 2,
        "band": [low, high],
        "pair_order": PAIR_ORDER,
        "cfg": {"method": "coh", "foilim": [low, high], **description},
    }
    with whole_file(path, overwrite=overwrite) as draft:
        memory = io.BytesIO()
        try:
            savemat(memory, {"coh": structure}, oned_as="row")
        except MatWriteError as error:
            raise CommandError(f"{path}: cannot be written: {error}") from error
        content = memory.getbuffer()
        with open(draft, "wb") as file:
            file.write(content[:_HEADER])
            for part in _with_wide_texts(content[_HEADER:]):
                file.write(part)


_HEADER = 128  # bytes of a MATLAB 5 file before its first element
_MATRIX, _UTF8, _UTF16 = 14, 16, 17  # types of elements


def _bmp(text_: str) -> str:
    """Without characters that take two words of UTF-16, which SciPy cannot read from a file."""
    return "".join(c if c <= "\uffff" else "?" for c in encodable(text_))


def _with_wide_texts(content: memoryview) -> Iterator[bytes | memoryview]:
    """The elements with their texts in UTF-16.

    SciPy writes UTF-8 and the number of characters beside it; Octave takes that for the number of
    bytes and cuts texts that are not ASCII. All programs agree on UTF-16.
    """
    while content:
        kind, size = struct.unpack_from("<II", content)
        if kind > 0xFFFF:  # a small element: the size is in the same word, the data in the next
            kind, size, data, content = kind & 0xFFFF, kind >> 16, content[4:8], content[8:]
        else:
            padded = (size + 7) // 8 * 8
            data, content = content[8 : 8 + padded], content[8 + padded :]
        if kind == _MATRIX:
            inside = list(_with_wide_texts(data))
            yield struct.pack("<II", _MATRIX, sum(map(len, inside)))
            yield from inside
        elif kind == _UTF8:
            yield from _element(_UTF16, bytes(data[:size]).decode("utf-8").encode("utf-16-le"))
        else:
            yield from _element(kind, data[:size])


def _element(kind: int, data: bytes | memoryview) -> Iterator[bytes | memoryview]:
    """Data with its tag, padded to 8 bytes."""
    if 0 < len(data) <= 4:
        yield struct.pack("<HH", kind, len(data)) + bytes(data).ljust(4, b"\0")
    else:
        yield struct.pack("<II", kind, len(data))
        yield data
        yield bytes(-len(data) % 8)


def from_matlab(path: str) -> Dataset:
    """The dataset of a MATLAB 5 file (`save -v7`) with one structure of dimord "chan_chan_time".

    Also "chan_chan", which is one slice, and both with a single frequency. The values are in
    `connectivity` or in the one field whose name ends with "spctrm".

    Raises:
        CommandError: the file is none of that kind.
    """
    found = _structure(path)
    dimord = text(found["dimord"])
    if dimord not in DIMORDS:
        raise CommandError(f'{path}: dimord is "{dimord}", not "chan_chan_time"')
    if "label" not in found:
        raise CommandError(f"{path}: the structure has no field label")
    labels = [text(label) for label in np.ravel(found["label"])]
    description = found["cfg"] if isinstance(found.get("cfg"), dict) else {}
    return dataset_of(
        path,
        _slices(path, _values(path, found), dimord, len(labels)),
        times=found.get("time") if dimord.endswith("_time") else None,
        band=found.get("band", found.get("freq")),
        labels=labels,
        description=description,
    )


def _structure(path: str) -> dict[str, Any]:
    from scipy.io import loadmat
    from scipy.io.matlab import MatReadError

    check_input(path)
    try:
        variables = loadmat(path, appendmat=False, struct_as_record=True)
    except NotImplementedError as error:
        raise CommandError(f"{path}: is of version 7.3; save it with -v7") from error
    except (OSError, ValueError, TypeError, KeyError, IndexError, MatReadError) as error:
        raise CommandError(
            f"{path}: is no MATLAB file that can be read (save it with -v7): {error}"
        ) from error
    structures = [
        value for value in variables.values()
        if isinstance(value, np.ndarray) and value.size == 1 and "dimord" in _fields(value)
    ]  # fmt: skip
    if len(structures) != 1:
        raise CommandError(f"{path}: holds {len(structures)} structures with a dimord, not one")
    fields = _opened(structures[0])
    if "cfg" in fields and _fields(fields["cfg"]) and fields["cfg"].size == 1:
        fields["cfg"] = {
            name: value.ravel()[0] if value.size == 1 else value
            for name, value in _opened(fields["cfg"]).items()
            if isinstance(value, np.ndarray)
        }
    return fields


def _fields(value: np.ndarray) -> tuple[str, ...]:
    return value.dtype.names or ()


def _opened(structure: np.ndarray) -> dict[str, Any]:
    record = structure.ravel()[0]
    return {name: record[name] for name in _fields(structure)}


def _values(path: str, found: dict[str, Any]) -> np.ndarray:
    names = [name for name in found if name == "connectivity" or name.endswith("spctrm")]
    if len(names) != 1:
        told = ", ".join(names) or "none"
        raise CommandError(f"{path}: one field such as cohspctrm is needed; there is {told}")
    return np.asarray(found[names[0]])


def _slices(path: str, values: np.ndarray, dimord: str, sensors: int) -> np.ndarray:
    """[slice, row, column]; MATLAB leaves out last dimensions of length 1."""
    wanted = dimord.count("_") + 1
    shape = values.shape + (1,) * (wanted - values.ndim)
    if len(shape) != wanted or shape[:2] != (sensors, sensors):
        told = " x ".join(map(str, values.shape))
        raise CommandError(f"{path}: the values are {told}, but there are {sensors} labels")
    if "_freq" in dimord:
        if shape[2] != 1:
            raise CommandError(
                f"{path}: holds {shape[2]} frequencies; choose or average them before"
            )
        shape = shape[:2] + shape[3:]
    return values.reshape(sensors, sensors, -1).transpose(2, 0, 1)
