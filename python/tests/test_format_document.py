"""docs/file-format.md is enough for a reader: one written from it alone, against the package.

Every field and value that the package tells is compared bit by bit with what format_reader finds in
the file. Fields that the package does not tell, and the older layouts, come from records that are
put together here from the tables of the document.
"""

import itertools
import pathlib
import random
import re
import struct
import tracemalloc

import format_reader
import numpy as np
import pytest
from format_reader import FormatError, Source

import cxc

DOCUMENT = pathlib.Path(__file__).parents[2] / "docs" / "file-format.md"

# Name in the document -> name in the package, of every field but markers and grid.
PACKAGE_NAMES = {
    **{f"m_headerInt{n}": f"header_int{n}" for n in (*range(4), *range(5, 14))},
    **{f"m_headerLong{n}": f"header_long{n}" for n in (0, 1, 3, 4, 5)},
    "m_headerInt9": "header_int9",
    "m_headerLong2": "largest_slice_count",
    "m_headerReal0": "band_begin",
    "m_headerReal1": "band_end",
    "m_headerReal2": "header_real2",
    "m_cohTimTotal": "slices",
    "m_selectBegin": "select_begin",
    "m_selectEnd": "select_end",
    "m_rowCrt": "row",
    "m_columnCrt": "column",
    "m_snsRowTotal": "rows",
    "m_snsColTotal": "columns",
    "m_chnlTypeID": "channel_type",
    "m_samplingRate": "sampling_rate",
    "m_anaLatencyBegin": "latency_begin",
    "m_anaLatencyEnd": "latency_end",
    "m_cxcName": "name",
    "m_tscsInfo": "show",
    "m_dataMin": "data_min",
    "m_dataMax": "data_max",
    "m_dataMean": "data_mean",
    "m_rmsNormalized": "rms_normalized",
    "m_rmsValue": "rms_value",
    "m_cxcCmptInfo": "note",
    "m_showRangeMin": "show_range_min",
    "m_showRangeMax": "show_range_max",
    "m_showRangeMid": "show_range_mid",
}

# What the document says a fresh dataset holds where it is not 0, false or nothing.
FRESH = {
    "m_selectEnd": 1,
    "m_headerReal0": 0.1,
    "m_headerReal1": 1.0,
    "m_cxcName": "CxcTrial",
    "m_cxcCmptInfo": "CxC ComputeInfo",
    "m_showRangeMax": 1.0,
    "m_headerInt12": 1,
}

NAMES = [
    "",
    "Ωμέγα",
    "Энцефалограмма",
    "脑磁图 測定 뇌자도",
    "שלום مرحبا",
    "𝛼-rhythm 🧠",  # two UTF-16 units each
    "a\0b",
    "é" * 254,
    "é" * 255,
    "長" * 65533,
    "長" * 65534,
    "長" * 70000,
]

ODD_VALUES = np.array(
    [
        0x8000000000000000,  # -0.0
        0x7FF0000000000000,  # infinity
        0xFFF0000000000000,
        0x7FF8000000000000,  # NaN
        0xFFF8000000000000,
        0x7FF800000000BEEF,  # NaN with a payload
        0x7FF0000000000001,  # signalling NaN
        0x0000000000000001,  # smallest denormal
        0x7FEFFFFFFFFFFFFF,  # largest
    ],
    "<u8",
).view("<f8")


def bits(value):
    """Something that is equal only for the same bits."""
    if isinstance(value, float):
        return struct.pack("<d", value)
    if isinstance(value, np.ndarray):
        return np.ascontiguousarray(value, "<f8").tobytes()
    return value


def assert_same(record, dataset):
    """All that the package tells of the dataset is what the reader found."""
    for name, own_name in PACKAGE_NAMES.items():
        told = getattr(dataset.header, own_name)
        assert bits(told) == bits(record.get(name, FRESH.get(name, type(told)()))), name
    columns = dataset.shape[2]
    for index, vector in enumerate(record.get("grid", [])):
        r, c = divmod(index, columns)
        assert dataset.channels_a[r, c] == vector["channel A"]
        assert dataset.channels_b[r, c] == vector["channel B"]
        for told, found in (
            (dataset.pair(r, c), vector["values"]),
            (dataset.backup(r, c), vector["backup"]),
        ):
            assert bits(told) == (b"" if found is None else bits(found))


def assert_array(record, dataset):
    """The grid, laid out as the document says, is the package's array."""
    slices, rows, columns = dataset.shape
    assert len(record["grid"]) == rows * columns
    found = np.array([vector["values"] for vector in record["grid"]])
    assert bits(found.reshape(rows, columns, slices).transpose(2, 0, 1)) == bits(dataset.to_array())


# -- records by hand


def text(value, wide=True):
    count = len(value.encode("utf-16-le")) // 2
    assert count < 255
    if not wide:
        return bytes([count]) + value.encode("cp1252")
    return b"\xff\xfe\xff" + bytes([count]) + value.encode("utf-16-le")


def vector_record(values, backup=None, length=None, marker=None, index=4, pair=(11, 12), flag=9):
    record = text("MMATRIX1DX") + struct.pack("<I3qH", 20120222, index, *pair, flag)
    for block, given in ((values, length), (backup, None)):
        count = 0 if block is None else len(block)
        present = int(block is not None) if marker is None else marker
        record += struct.pack("<qi", count if given is None else given, present)
        record += struct.pack(f"<{count}d", *([] if block is None else block))
    return record


def grid_record(shape=(3, 2, 5)):
    """Vectors of different content; every second one with a backup, the last with an empty one."""
    slices, rows, columns = shape
    record = b""
    for index in range(rows * columns):
        values = index + np.arange(slices) / 8
        last = index == rows * columns - 1
        backup = [] if last else [-index, np.inf] if index % 2 else None
        record += vector_record(values, backup, index=index, pair=(20 + index, 60 + index))
    return record


def fields_3_to_12(shape=(3, 2, 5), grid=None, marker=1):
    head = struct.pack("<i7qi", -311, shape[0], 1, 2, 1, 4, shape[1], shape[2], marker)
    return head + (grid_record(shape) if grid is None else grid)


def fields_13_to_25(name="Ελπίδα"):
    return (
        struct.pack("<9i", -1, 2**31 - 1, -(2**31), 4, 2, 5, 6, 7, 8)
        + struct.pack("<3d", 12.5, -0.0, 3.75)
        + struct.pack("<5q", 90, -(2**63), 2**63 - 1, 93, 94)
        + struct.pack("<2d", 7.5, np.nan)
        + text(name)
        + struct.pack("<?ii", True, 109, 110)
    )


FIELDS_26_TO_31 = struct.pack("<4did", 2.5, -1.25, np.inf, 0.0625, 1, 1e-310)
FIELD_32 = text("заметка")
FIELDS_33_TO_38 = struct.pack("<q3d2i", 95, 0.5, 8.5, 4.5, 112, 113)


def dataset_record(version=20160311, **options):
    early, late = fields_3_to_12(**options), fields_13_to_25()
    body = {
        20160311: early + late + FIELDS_26_TO_31 + FIELD_32 + FIELDS_33_TO_38,
        20130511: early + late + FIELDS_26_TO_31 + FIELD_32,
        20130402: early + late + FIELDS_26_TO_31,
        20120714: late + early,
        20080720: struct.pack("<3q2di?", 6, 5, 4, -2.5, 2.5, 7, True) + text("παλιό"),
        20080601: b"",
    }[version]
    return text("MEGCOHPTS") + struct.pack("<I", version) + body


VERSIONS = [20160311, 20130511, 20130402, 20120714, 20080720, 20080601]


def package_record(datasets, version=20121016, current=1, marker=1):
    record = text("SNSCOHFACE") + struct.pack("<Ii", version, current)
    for dataset in datasets:
        record += struct.pack("<i", marker if dataset else 0) + dataset
    if version == 20121016:
        return record + struct.pack("<i", 77) + text("パッケージ") + text("описание") + b"\1"
    return record + struct.pack("<3i", 8, 9, 77) + text("パッケージ") + struct.pack("<?qq", 1, 2, 3)


def group_record(datasets, marker=1, count=None):
    count = len(datasets) if count is None else count
    record = text("GROUPCXCDATAFACE") + struct.pack("<Iii", 20180725, 2, count)
    for dataset in datasets:
        record += struct.pack("<i", marker if dataset else 0) + dataset
    return record + struct.pack("<i", 78) + text("組") + text("о группе") + struct.pack("<?i", 1, 3)


READERS = {
    cxc.Dataset: format_reader.dataset,
    cxc.Package: format_reader.package,
    cxc.Group: format_reader.group,
}


def both(tmp_path, data, kind=cxc.Dataset):
    """A record by hand as the reader and the package read it."""
    path = tmp_path / "by-hand"
    path.write_bytes(data)
    return format_reader.read_file(path, READERS[kind]), kind.open(path)


def saved(tmp_path, owner):
    """What the reader finds in a file that the package writes, which it must fill."""
    path = tmp_path / "saved"
    owner.save(path)
    source = Source(path.read_bytes())
    record = READERS[type(owner)](source)
    assert source.left == 0
    return record


# -- datasets


def make(shape, name="name", note="note", seed=1):
    values = np.random.default_rng(seed).normal(size=shape)
    odd = values.reshape(-1)[: len(ODD_VALUES)]
    odd[:] = ODD_VALUES[: odd.size]
    channels = [300 + 7 * n for n in range(shape[1])] if shape[1] == shape[2] else None
    return cxc.Dataset.from_array(
        values, sampling_rate=3.5, latency=(-0.25, 1e300), band=(8.0, 13.0), name=name, note=note,
        channels=channels, channel_type=3,
    )


@pytest.mark.parametrize("shape", [(1, 1, 1), (3, 2, 5), (2, 5, 3), (7, 4, 4), (501, 2, 2)])
def test_datasets_of_many_shapes(tmp_path, shape):
    dataset = make(shape)
    record = saved(tmp_path, dataset)
    assert record["version"] == 20160311
    assert_same(record, dataset)
    assert_array(record, dataset)
    assert bits(record["grid"][0]["values"][:1]) == bits(ODD_VALUES[:1])


@pytest.mark.parametrize("name", NAMES, ids=lambda name: f"{ascii(name[:6])} x {len(name)}")
def test_names_and_notes(tmp_path, name):
    dataset = make((2, 2, 3), name=name, note=name[::-1])
    record = saved(tmp_path, dataset)
    assert (record["m_cxcName"], record["m_cxcCmptInfo"]) == (name, name[::-1])
    assert_same(record, dataset)


def test_every_field_that_can_be_set(tmp_path):
    dataset = make((5, 3, 3))
    dataset.selection = (1, 3)
    dataset.current_pair = (2, 1)
    dataset.show = True
    for n, name in enumerate(PACKAGE_NAMES.values()):
        if name.startswith("header_int") or name.startswith("header_long"):
            setattr(dataset.header, name, (-1) ** n * (1000 + n))
    dataset.header.header_real2 = float(ODD_VALUES[5])
    dataset.header.largest_slice_count = 2**40
    record = saved(tmp_path, dataset)
    assert (record["m_selectBegin"], record["m_selectEnd"]) == (1, 3)
    assert (record["m_rowCrt"], record["m_columnCrt"]) == (2, 1)
    assert_same(record, dataset)


def test_ranges_and_rms_as_computed(tmp_path):
    dataset = cxc.Dataset.from_array(np.arange(30).reshape(5, 2, 3) - 7.0)
    dataset.normalize_rms()
    dataset.data_range()
    dataset.abs_range()
    record = saved(tmp_path, dataset)
    assert bits(record["m_rmsValue"]) == bits(dataset.rms)
    told = (record["m_dataMin"], record["m_dataMax"], record["m_dataMean"])
    assert told == dataset.cached_range and told[0] < 0 < told[1]
    assert_same(record, dataset)


def test_a_dataset_without_a_grid(tmp_path):
    dataset = cxc.Dataset()
    record = saved(tmp_path, dataset)
    assert record["grid"] == [] and record["data marker"] == 0
    assert_same(record, dataset)
    assert_same({}, dataset)  # a fresh dataset holds what the document says


def test_backups_and_fields_the_package_does_not_tell(tmp_path):
    record, dataset = both(tmp_path, dataset_record())
    assert_same(record, dataset)
    assert_array(record, dataset)
    again = saved(tmp_path, dataset)
    assert_same(again, dataset)
    for index, (first, second) in enumerate(zip(record["grid"], again["grid"])):
        for found in (first, second):
            assert (found["current index"], found["pair flag"]) == (index, 9)
    assert [None if v["backup"] is None else v["backup"].tolist() for v in again["grid"][:4]] == [
        None, [-1, np.inf], None, [-3, np.inf],
    ]
    assert record["grid"][9]["backup"].size == 0 and again["grid"][9]["backup"] is None


def test_vectors_of_other_lengths_than_the_dataset_says(tmp_path):
    grid = (
        vector_record([1.5], [2.5, 3.5])
        + vector_record([1, 2, 3, 4, 5], [])
        + vector_record(None, length=2**60)
        + vector_record([], length=-4, marker=1)
    )
    record, dataset = both(tmp_path, dataset_record(shape=(3, 2, 2), grid=grid))
    assert_same(record, dataset)
    first, second, third, fourth = record["grid"]
    assert (len(first["values"]), len(second["values"])) == (1, 5)
    assert third["values"] is None and third["length"] == 2**60 and fourth["values"].size == 0
    assert dataset.to_array().tolist() == [
        [[1.5, 1], [0, 0]], [[0, 2], [0, 0]], [[0, 3], [0, 0]],
    ]


@pytest.mark.parametrize("marker", [1, 2, -1])
def test_any_marker_but_0_says_that_something_follows(tmp_path, marker):
    grid = vector_record([1.5, 2.5], [3.5], marker=marker)
    data = dataset_record(shape=(2, 1, 1), grid=grid, marker=marker)
    record, dataset = both(tmp_path, data)
    assert_same(record, dataset)
    assert len(record["grid"]) == 1 and dataset.backup(0, 0).tolist() == [3.5]

    record, package = both(tmp_path, package_record([data, b"", data], marker=marker), cxc.Package)
    assert record["active"] and not record["control"] and len(package) == 2
    record, group = both(tmp_path, group_record([data, b""], marker=marker), cxc.Group)
    assert record["entries"][0] and len(group) == 1


@pytest.mark.parametrize("rows, columns, marker", [(3, 4, 0), (-3, 4, 0), (0, 4, 1), (0, -4, 1),
                                                   (3, 0, 1), (3, -4, 0)])
def test_sizes_without_vectors(tmp_path, rows, columns, marker):
    data = dataset_record(shape=(2, rows, columns), grid=b"", marker=marker)
    record, dataset = both(tmp_path, data)
    assert record["grid"] == []
    assert_same(record, dataset)


def test_strings_in_every_form(tmp_path):
    page = bytes(range(1, 255))
    plain = dataset_record()
    magic, name = text("MEGCOHPTS"), text("Ελπίδα")
    vector_magic = text("MMATRIX1DX")
    for other in (
        plain.replace(magic, text("MEGCOHPTS", wide=False)),
        plain.replace(vector_magic, text("MMATRIX1DX", wide=False)),
        plain.replace(name, b"\xfe" + page),
        plain.replace(name, b"\xff" + struct.pack("<H", 3) + b"a\xe9\x80"),
        plain.replace(name, b"\xff\xff\xff" + struct.pack("<I", 1) + b"a"),
        plain.replace(name, b"\0"),
        plain.replace(name, b"\xff\xfe\xff\xff\x01\0a\0"),
        plain.replace(name, b"\xff\xfe\xff" + b"\xff" * 7 + struct.pack("<Q", 1) + b"a\0"),
        plain.replace(name, b"\xff\xfe\xff\x02\x00\xd8a\0"),  # half of a pair of units
    ):
        assert other != plain
        record, dataset = both(tmp_path, other)
        assert_same(record, dataset)
        assert_array(record, dataset)


def test_bytes_after_the_record_are_not_looked_at(tmp_path):
    for version in VERSIONS:
        record, dataset = both(tmp_path, dataset_record(version) + b"more")
        assert_same(record, dataset)


# -- older layouts


@pytest.mark.parametrize("version", VERSIONS)
def test_layouts_of_all_versions(tmp_path, version):
    record, dataset = both(tmp_path, dataset_record(version))
    assert record["version"] == version
    assert_same(record, dataset)
    again = saved(tmp_path, dataset)
    assert again["version"] == 20160311
    assert_same(again, dataset)
    assert len(again["grid"]) == len(record.get("grid", [])) == (10 if version > 20080720 else 0)


def test_the_fields_of_each_layout_by_value():
    def found(version):
        return format_reader.dataset(Source(dataset_record(version)))

    newest = found(20160311)
    assert (newest["m_headerInt11"], newest["m_headerInt13"]) == (-311, 113)
    assert (newest["m_rowCrt"], newest["m_columnCrt"]) == (1, 4)
    assert (newest["m_cxcName"], newest["m_cxcCmptInfo"]) == ("Ελπίδα", "заметка")
    assert "m_headerLong5" not in found(20130511) and found(20130511)["m_cxcCmptInfo"] == "заметка"
    assert "m_cxcCmptInfo" not in found(20130402) and found(20130402)["m_rmsValue"] == 1e-310
    assert "m_headerReal2" not in found(20120714) and found(20120714)["m_headerInt10"] == 110
    assert found(20080720) == {
        "version": 20080720, "m_snsRowTotal": 6, "m_rowCrt": 5, "m_columnCrt": 4,
        "m_anaLatencyBegin": -2.5, "m_anaLatencyEnd": 2.5, "m_headerInt9": 7, "m_tscsInfo": True,
        "m_cxcName": "παλιό",
    }
    assert found(20080601) == {"version": 20080601}


# -- packages and groups


def assert_same_owner(record, owner):
    assert (record["identifier"], record["name"]) == (owner.id, owner.name)
    assert record["show flag"] == owner.show


SUBSETS = [set(some) for n in range(4) for some in itertools.combinations(range(3), n)]


@pytest.mark.parametrize("present", SUBSETS, ids=str)
def test_packages(tmp_path, present):
    shapes = [(3, 2, 5), (1, 2, 2), (2, 1, 3)]
    datasets = [make(shapes[n], NAMES[n + 1], seed=n) if n in present else None for n in range(3)]
    package = cxc.Package(*datasets)
    package.name, package.info = "Пакет 🧠", "情報\r\n" * 100
    package.id, package.current, package.show = -5, max(present, default=-1), True
    record = saved(tmp_path, package)
    assert record["current class"] == package.current and record["text"] == package.info
    assert_same_owner(record, package)
    for n, name in enumerate(format_reader.CLASSES):
        assert (record[name] is None) == (n not in present)
        if n in present:
            assert_same(record[name], package[n])
            assert_array(record[name], package[n])


@pytest.mark.parametrize("version", [20121016, 20080721])
def test_packages_by_hand_with_datasets_of_all_versions(tmp_path, version):
    for one, other in itertools.product(VERSIONS, ("", 20130402)):
        nested = [dataset_record(one), b"", dataset_record(other) if other else b""]
        record, package = both(tmp_path, package_record(nested, version), cxc.Package)
        assert_same_owner(record, package)
        assert record["current class"] == package.current == 1
        assert record.get("text", "Unknown") == package.info
        assert record.get("reserved", [8, 9, 2, 3]) == [8, 9, 2, 3]
        assert_same(record["active"], package.active)
        assert (record["act_ctl"] is None) == (package.act_ctl is None) == (other == "")


def test_groups_with_gaps(tmp_path):
    datasets = [None, make((3, 2, 5), NAMES[2]), None, None, make((1, 4, 4), NAMES[3]), None]
    group = cxc.Group(datasets)
    group.name, group.info = "Группа", "об этом"
    group.id, group.current, group.show = 2**31 - 1, 4, True
    record = saved(tmp_path, group)
    assert record["current index"] == 4 and record["text"] == "об этом"
    assert_same_owner(record, group)
    assert len(record["entries"]) == len(datasets)
    for entry, dataset in zip(record["entries"], datasets):
        assert (entry is None) == (dataset is None)
        if dataset is not None:
            assert_same(entry, dataset)
            assert_array(entry, dataset)
    kept = cxc.Group.open(tmp_path / "saved")
    assert len(kept) == 2 and kept.current == 4


def test_groups_by_hand_with_datasets_of_all_versions(tmp_path):
    nested = [dataset_record(version) for version in VERSIONS]
    record, group = both(tmp_path, group_record([b"", *nested]), cxc.Group)
    assert_same_owner(record, group)
    assert (record["current index"], record["operation code"]) == (2, 3)
    assert record["entries"][0] is None and len(group) == len(VERSIONS)
    for entry, dataset in zip(record["entries"][1:], group):
        assert_same(entry, dataset)
    assert saved(tmp_path, group)["operation code"] == 3


@pytest.mark.parametrize("count", [0, -1, -(2**31)])
def test_groups_without_entries(tmp_path, count):
    record, group = both(tmp_path, group_record([], count=count), cxc.Group)
    assert record["entries"] == [] and len(group) == 0
    assert_same_owner(record, group)


# -- files that are wrong


WHOLE = [
    *[(cxc.Dataset, dataset_record(version, shape=(2, 1, 2))) for version in VERSIONS],
    *[
        (cxc.Package, package_record([dataset_record(shape=(2, 1, 2)), b"", b""], version))
        for version in (20121016, 20080721)
    ],
    (cxc.Group, group_record([b"", dataset_record(shape=(2, 1, 2))])),
]


@pytest.mark.parametrize("kind, data", WHOLE, ids=[kind.__name__ for kind, _ in WHOLE])
def test_a_file_cut_anywhere_is_refused(kind, data):
    source = Source(data)
    READERS[kind](source)
    assert source.left == 0
    for length in range(len(data)):
        with pytest.raises(FormatError):
            READERS[kind](Source(data[:length]))


@pytest.mark.parametrize("kind, data", WHOLE, ids=[kind.__name__ for kind, _ in WHOLE])
def test_other_magics_and_versions_are_refused(tmp_path, kind, data):
    place = data.index(struct.pack("<I", READERS[kind](Source(data))["version"]))
    version = data[:place] + struct.pack("<I", 20991231) + data[place + 4:]
    magic = data[:4] + bytes([data[4] ^ 0x20]) + data[5:]
    for other in (version, magic):
        with pytest.raises(FormatError):
            READERS[kind](Source(other))
        path = tmp_path / "wrong"
        path.write_bytes(other)
        with pytest.raises(cxc.CxcError):
            kind.open(path)


HUGE = 2**63 - 1
HOSTILE = {
    "rows": dataset_record(shape=(2, HUGE, 1), grid=b""),
    "columns": dataset_record(shape=(2, 1, HUGE), grid=b""),
    "product": dataset_record(shape=(2, 2**32, 2**32), grid=b""),
    "negative rows": dataset_record(shape=(2, -1, 2), grid=b""),
    "negative columns": dataset_record(shape=(2, 1, -2), grid=b""),
    "values": dataset_record(shape=(2, 1, 1), grid=vector_record([1.0], length=HUGE)),
    "values over 64 bits": dataset_record(shape=(2, 1, 1), grid=vector_record([1.0], length=2**61)),
    "name": dataset_record().replace(
        text("Ελπίδα"), b"\xff\xfe\xff" + b"\xff" * 7 + struct.pack("<Q", 2**64 - 1)),
    "8-bit name": dataset_record().replace(text("Ελπίδα"), b"\xff\xff\xff\xfe\xff\xff\xff"),
}


@pytest.mark.parametrize("data", HOSTILE.values(), ids=HOSTILE)
def test_sizes_that_the_file_does_not_hold_are_refused(tmp_path, data):
    tracemalloc.start()
    with pytest.raises(FormatError):
        format_reader.dataset(Source(data))
    most = tracemalloc.get_traced_memory()[1]
    tracemalloc.stop()
    assert most < 1 << 20
    path = tmp_path / "hostile"
    path.write_bytes(data)
    with pytest.raises((cxc.CxcError, OSError, MemoryError)):
        cxc.Dataset.open(path)


def test_a_group_of_more_entries_than_bytes_is_refused():
    with pytest.raises(FormatError):
        format_reader.group(Source(group_record([], count=2**31 - 1)))


def test_the_package_and_the_reader_agree_on_damaged_files(tmp_path):
    """One byte changed anywhere: both refuse the file, or both find the same in it."""
    chance = random.Random(20160311)
    path = tmp_path / "damaged"
    read = refused = 0
    for data in (dataset_record(version, shape=(2, 1, 3)) for version in VERSIONS[:4]):
        for place in range(len(data)):
            damaged = bytearray(data)
            damaged[place] ^= chance.choice([0x01, 0x80, 0xFF, 1 << chance.randrange(8)])
            path.write_bytes(damaged)
            try:
                record = format_reader.dataset(Source(damaged))
            except FormatError:
                refused += 1
                with pytest.raises((cxc.CxcError, OSError, MemoryError)):
                    cxc.Dataset.open(path)
            else:
                read += 1
                assert_same(record, cxc.Dataset.open(path))
    assert read > 1000 and refused > 500


def test_the_library_fills_up_a_last_backup_that_is_cut(tmp_path):
    grid = vector_record([1.0, 2.0], [3.0, 4.0])
    path = tmp_path / "cut"
    path.write_bytes(dataset_record(20120714, shape=(2, 1, 1), grid=grid)[:-8])
    with pytest.raises(FormatError):
        format_reader.read_file(path)
    assert cxc.Dataset.open(path).backup(0, 0).tolist() == [3.0, 0.0]


# -- the document itself


def test_the_table_of_the_document_is_the_list_of_the_reader():
    section = DOCUMENT.read_text().split("## Dataset record")[1].split("\n## ")[0]
    rows = re.findall(r"^\| (\d+) \| (.*?) \| (?:(\d) x )?(\S+).* \|$", section, re.MULTILINE)
    assert [int(row[0]) for row in rows] == list(range(1, 39))
    for number, words, count, kind in rows[2:]:
        listed = [field for field in format_reader.DATASET_FIELDS if field[0] == int(number)]
        if number in ("11", "12"):
            continue
        assert len(listed) == int(count or 1) and {field[2] for field in listed} == {kind}
        assert f"`{listed[0][1]}`" in words


def test_a_fresh_dataset_of_the_document():
    words = DOCUMENT.read_text()
    for name, value in FRESH.items():
        shown = f'"{value}"' if isinstance(value, str) else str(value)
        assert f"`{name}` {shown}" in words, name
