"""Files: against bytes made here, whole or not at all, with errors a user can act on."""

import os
import stat
import struct
import subprocess
import sys
import tempfile

import numpy as np
import pytest

import cxc

NOBODY = 65534  # a user without rights


def text(value: str) -> bytes:
    units = value.encode("utf-16-le")
    count = len(units) // 2
    length = bytes([count]) if count < 255 else b"\xff" + struct.pack("<H", count)
    return b"\xff\xfe\xff" + length + units


def vector(values, a, b) -> bytes:
    return (
        text("MMATRIX1DX")
        + struct.pack("<IqqqHqi", 20120222, 0, a, b, 1, len(values), 1)
        + np.asarray(values, "<f8").tobytes()
        + struct.pack("<qi", 0, 0)
    )


def grid_block(values, channels=(0, 0), select_end=None) -> bytes:
    slices, rows, columns = values.shape
    end = slices - 1 if select_end is None else select_end
    head = struct.pack("<i7qi", 0, slices, 0, end, 0, 0, rows, columns, 1)
    pairs = [
        vector(values[:, r, c], *(channels if channels == (0, 0) else (channels[r], channels[c])))
        for r in range(rows)
        for c in range(columns)
    ]
    return head + b"".join(pairs)


def header_to_25(slices, name="named", band=(8.0, 12.0), rate=2.0, latency=(0.5, 1.5)) -> bytes:
    return (
        struct.pack("<9i", 0, 0, 0, 0, 2, 0, 0, 0, 0)
        + struct.pack("<3d", rate, *latency)
        + struct.pack("<5q", 0, 0, slices, 0, 0)
        + struct.pack("<2d", *band)
        + text(name)
        + struct.pack("<?ii", False, 0, 0)
    )


def header_26_to_31() -> bytes:
    return struct.pack("<4did", 0.0, 0.0, 0.0, 0.0, 0, 0.0)


def start(version) -> bytes:
    return text("MEGCOHPTS") + struct.pack("<I", version)


@pytest.fixture
def values():
    return np.arange(2 * 3 * 3, dtype=float).reshape(2, 3, 3) / 8


def test_a_saved_file_has_exactly_these_bytes(tmp_path, values):
    dataset = cxc.Dataset.from_array(
        values,
        sampling_rate=2.0,
        latency=(0.5, 1.5),
        band=(8, 12),
        name="named",
        note="how",
        channels=[5, 7, 9],
        channel_type=2,
    )
    path = tmp_path / "a.cxc"
    dataset.save(path)
    expected = (
        start(20160311)
        + grid_block(values, [5, 7, 9])
        + header_to_25(2)
        + header_26_to_31()
        + text("how")
        + struct.pack("<q3d2i", 0, 0.0, 1.0, 0.0, 1, 0)
    )
    assert path.read_bytes() == expected


def test_a_saved_file_opens_with_everything(tmp_path):
    values = np.random.default_rng(3).normal(size=(4, 6, 6))
    values[0].view(np.uint64)[0, 0] = 0xFFF0000000000001
    dataset = cxc.Dataset.from_array(values, name="n" * 300, note="ü\n" * 500, channel_type=3)
    dataset.show = True
    dataset.current_pair = (3, 4)
    dataset.header.header_int7 = -7
    dataset.header.header_long4 = 1 << 40
    path = tmp_path / "ünï.cxc"
    dataset.save(path)
    again = cxc.open(path)
    assert again.to_array().tobytes() == values.tobytes()
    assert again.name == dataset.name and again.note == dataset.note
    assert again.show and again.current_pair == (3, 4)
    assert again.header.header_int7 == -7 and again.header.header_long4 == 1 << 40
    again.save(tmp_path / "b.cxc")
    assert (tmp_path / "b.cxc").read_bytes() == path.read_bytes()


@pytest.mark.parametrize("version", [20130511, 20130402, 20120714])
def test_older_files_open_and_become_current_when_saved(tmp_path, values, version):
    grid = grid_block(values)
    header = header_to_25(2)
    bodies = {
        20130511: grid + header + header_26_to_31() + text("how"),
        20130402: grid + header + header_26_to_31(),
        20120714: header + grid,
    }
    path = tmp_path / "old.cxc"
    path.write_bytes(start(version) + bodies[version])
    dataset = cxc.open(path)
    np.testing.assert_array_equal(dataset.to_array(), values)
    assert dataset.name == "named" and dataset.band == (8.0, 12.0)
    assert dataset.note == ("how" if version == 20130511 else "CxC ComputeInfo")
    dataset.save(path)
    assert path.read_bytes().startswith(start(20160311))
    np.testing.assert_array_equal(cxc.open(path).to_array(), values)


def test_the_oldest_files_hold_no_values(tmp_path):
    path = tmp_path / "old.cxc"
    body = struct.pack("<3q2di?", 5, 1, 2, 0.5, 1.5, 3, True) + text("named")
    path.write_bytes(start(20080720) + body)
    dataset = cxc.open(path)
    assert dataset.shape == (0, 5, 0)
    assert dataset.name == "named" and dataset.latency == (0.5, 1.5)
    with pytest.raises(cxc.CxcError):
        dataset.to_array()
    path.write_bytes(start(20080601))
    assert cxc.open(path).name == "CxcTrial"


def test_a_file_that_is_no_dataset_is_refused_with_the_librarys_words(tmp_path):
    path = tmp_path / "a.cxc"
    path.write_bytes(text("SOMETHING") + b"\0" * 100)
    with pytest.raises(cxc.CxcError, match="not CCoherenceData09File or corrupted!"):
        cxc.open(path)
    path.write_bytes(start(20990101))
    with pytest.raises(cxc.CxcError, match="Wrong CxC data format!"):
        cxc.open(path)


def test_a_file_cut_anywhere_is_an_error_and_never_a_dataset(tmp_path, values):
    whole = tmp_path / "whole.cxc"
    cxc.Dataset.from_array(values).save(whole)
    data = whole.read_bytes()
    path = tmp_path / "cut.cxc"
    for size in range(len(data)):
        path.write_bytes(data[:size])
        with pytest.raises(cxc.CxcError) as caught:
            cxc.open(path)
        assert str(path) in str(caught.value)


def test_sizes_that_cannot_be_true_cost_no_memory(tmp_path):
    path = tmp_path / "a.cxc"
    path.write_bytes(start(20160311) + struct.pack("<i7qi", 0, 1, 0, 0, 0, 0, 1, 10**9, 1))
    with pytest.raises(cxc.CxcError, match="memory"):
        cxc.open(path)


def test_slices_that_the_vectors_lack_read_as_zero(tmp_path, values):
    path = tmp_path / "a.cxc"
    cxc.Dataset.from_array(values).save(path)
    data = bytearray(path.read_bytes())
    data[22 + 4 + 4 : 22 + 4 + 4 + 8] = struct.pack("<q", 5)
    path.write_bytes(data)
    array = cxc.open(path).to_array()
    assert array.shape == (5, 3, 3)
    np.testing.assert_array_equal(array[:2], values)
    assert not array[2:].any()


def test_missing_files_and_folders_are_the_usual_errors(tmp_path, values):
    dataset = cxc.Dataset.from_array(values)
    with pytest.raises(FileNotFoundError):
        cxc.open(tmp_path / "missing.cxc")
    with pytest.raises(IsADirectoryError):
        cxc.open(tmp_path)
    with pytest.raises(FileNotFoundError):
        dataset.save(tmp_path / "no" / "a.cxc")
    with pytest.raises(IsADirectoryError):
        dataset.save(tmp_path)


def test_nothing_half_written_is_left(tmp_path, values):
    dataset = cxc.Dataset.from_array(values)
    path = tmp_path / "a.cxc"
    path.write_bytes(b"before")
    with pytest.raises(FileExistsError):
        dataset.save(path, overwrite=False)
    assert path.read_bytes() == b"before"
    dataset.save(path)
    assert os.listdir(tmp_path) == ["a.cxc"]


def test_a_full_disk_is_an_os_error(values):
    with pytest.raises(OSError, match="No space left"):
        cxc.Dataset.from_array(values).header.save("/dev/full")


def test_names_that_are_no_utf8_work(tmp_path, values):
    path = os.path.join(os.fsencode(tmp_path), b"\xff\xfe.cxc")
    dataset = cxc.Dataset.from_array(values)
    dataset.header.save(path)
    assert os.path.exists(path)
    np.testing.assert_array_equal(cxc.open(os.fsdecode(path)).to_array(), values)


def test_errors_about_names_that_are_no_utf8_keep_their_kind_and_words(tmp_path):
    path = os.path.join(os.fsencode(tmp_path), b"\xff.cxc")
    with pytest.raises(FileNotFoundError) as missing:
        cxc.open(os.fsdecode(path))
    assert os.fsencode(missing.value.filename) == path
    with open(path, "wb") as file:
        file.write(text("SOMETHING"))
    with pytest.raises(cxc.CxcError, match="not CCoherenceData09File or corrupted!"):
        cxc.open(os.fsdecode(path))


def test_a_zero_in_a_name_does_not_cut_it_short(tmp_path, values):
    dataset = cxc.Dataset.from_array(values)
    dataset.save(tmp_path / "a")
    for use in (cxc.open, dataset.save, dataset.export_text):
        with pytest.raises(ValueError):
            use(str(tmp_path / "a") + "\0b.cxc")
    assert os.listdir(tmp_path) == ["a"]


def test_an_empty_file_ends_early(tmp_path):
    path = tmp_path / "a.cxc"
    path.write_bytes(b"")
    with pytest.raises(cxc.CxcError, match="ends early"):
        cxc.open(path)


def test_texts_come_back_unit_for_unit(tmp_path, values):
    path = tmp_path / "a.cxc"
    dataset = cxc.Dataset.from_array(values)
    for name in ("half \ud800", "raw \udcff", "zero \0 inside", "pair \U0001f9e0"):
        dataset.name = dataset.note = name
        dataset.save(path)
        again = cxc.open(path)
        assert again.name == name and again.note == name


def test_pipes_and_devices_are_not_replaced(tmp_path, values):
    path = tmp_path / "pipe.cxc"
    os.mkfifo(path)
    with pytest.raises(OSError, match="device or a pipe") as caught:
        cxc.Dataset.from_array(values).save(path)
    assert caught.value.filename == str(path)
    assert stat.S_ISFIFO(os.stat(path).st_mode)
    assert os.listdir(tmp_path) == ["pipe.cxc"]


def test_a_link_stays_a_link_and_a_file_keeps_its_permissions(tmp_path, values):
    dataset = cxc.Dataset.from_array(values)
    real, link = tmp_path / "real.cxc", tmp_path / "link.cxc"
    real.write_bytes(b"")
    real.chmod(0o640)
    link.symlink_to("real.cxc")
    dataset.save(link)
    assert link.is_symlink() and not real.is_symlink()
    assert stat.S_IMODE(real.stat().st_mode) == 0o640
    np.testing.assert_array_equal(cxc.open(real).to_array(), values)


def test_a_new_file_gets_the_usual_permissions(tmp_path, values):
    mask = os.umask(0o027)
    try:
        cxc.Dataset.from_array(values).save(tmp_path / "a.cxc")
    finally:
        os.umask(mask)
    assert stat.S_IMODE((tmp_path / "a.cxc").stat().st_mode) == 0o640


def test_a_name_may_be_as_long_as_the_file_system_allows(tmp_path, values):
    path = tmp_path / ("n" * 251 + ".cxc")
    cxc.Dataset.from_array(values).save(path)
    assert cxc.open(path).shape == values.shape


def test_a_failed_save_tells_of_the_users_name(tmp_path, values):
    path = tmp_path / ("n" * 300 + ".cxc")
    with pytest.raises(OSError) as caught:
        cxc.Dataset.from_array(values).save(path)
    assert caught.value.filename == str(path)
    assert os.listdir(tmp_path) == []


def test_a_file_with_negative_counts_has_no_slices(tmp_path):
    path = tmp_path / "a.cxc"
    path.write_bytes(
        start(20160311)
        + struct.pack("<i7qi", 0, -4, 0, 0, 0, 0, -1, -5, 0)
        + header_to_25(2)
        + header_26_to_31()
        + text("how")
        + struct.pack("<q3d2i", 0, 0.0, 1.0, 0.0, 1, 0)
    )
    dataset = cxc.open(path)
    assert len(dataset) == 0 and dataset.shape == (-4, -1, -5)
    with pytest.raises(cxc.CxcError, match="no values"):
        dataset.to_array()


def test_the_text_export_is_the_librarys(tmp_path):
    values = np.array([[[1.0, -0.25], [1e-7, 123456.5]]])
    dataset = cxc.Dataset.from_array(values, name="A")
    path = dataset.export_text(tmp_path / "a.txt")
    expected = (
        "A (2 x 2\n\0Time Slice: 0\n\0"
        "1 1.000000  -0.250000  \n2 0.000000  123456.500000  \n\0"
    )
    with open(path, "rb") as file:
        assert file.read() == expected.encode("utf-16-le")
    assert dataset.export_text(tmp_path / "b") == str(tmp_path / "b.txt")
    with pytest.raises(FileNotFoundError) as caught:
        dataset.export_text(tmp_path / "no" / "a.txt")
    assert caught.value.filename == str(tmp_path / "no" / "a.txt")
    with pytest.raises(IsADirectoryError):
        dataset.export_text(tmp_path)


def test_the_text_has_the_name_that_was_asked_for(tmp_path, values):
    dataset = cxc.Dataset.from_array(values)
    # ".txt" counts wherever it stands in the path.
    assert dataset.export_text(tmp_path / "a.txt.old") == str(tmp_path / "a.txt.old")
    with pytest.raises(FileExistsError):
        dataset.export_text(tmp_path / "a.txt.old", overwrite=False)
    assert os.listdir(tmp_path) == ["a.txt.old"]


@pytest.fixture
def ordinary_folder():
    """A folder with files, seen by a user for whom permissions count."""
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        user = os.geteuid()
        if user == 0:
            os.chown(folder, NOBODY, -1)
            os.seteuid(NOBODY)
        try:
            yield folder
        finally:
            os.chmod(folder, 0o755)
            os.seteuid(user)


def test_places_that_may_not_be_written_or_read_are_permission_errors(ordinary_folder, values):
    dataset = cxc.Dataset.from_array(values)
    path = os.path.join(ordinary_folder, "a.cxc")
    dataset.save(path)
    os.chmod(path, 0)
    os.chmod(ordinary_folder, 0o555)
    new = os.path.join(ordinary_folder, "new.cxc")
    for use, name in [
        (lambda: cxc.open(path), path),
        (lambda: dataset.save(path), path),
        (lambda: dataset.save(new), new),
        (lambda: dataset.export_text(new), new + ".txt"),
    ]:
        with pytest.raises(PermissionError) as caught:
            use()
        assert caught.value.filename == name
    assert os.listdir(ordinary_folder) == ["a.cxc"]


@pytest.mark.parametrize("use", [cxc.open, cxc.Dataset.open, cxc.Package.open, cxc.Group.open])
def test_a_pipe_is_refused_without_waiting_for_a_writer(tmp_path, use):
    pipe = str(tmp_path / "pipe")
    os.mkfifo(pipe)
    # Somebody who holds both ends, so that opening it would not wait.
    ends = os.open(pipe, os.O_RDWR)
    try:
        os.write(ends, text("MEGCOHPTS") + bytes(300))
        with pytest.raises(OSError, match="is a device or a pipe") as caught:
            use(pipe)
    finally:
        os.close(ends)
    assert caught.value.filename == pipe


@pytest.mark.parametrize("ending", ["nc", "h5", "mat", "npy", "npz"])
def test_a_pipe_of_another_format_is_refused_without_waiting(tmp_path, ending):
    pipe = str(tmp_path / f"pipe.{ending}")
    os.mkfifo(pipe)
    work = subprocess.run(
        [sys.executable, "-m", "cxc", "convert", pipe, tmp_path / "a.cxc"],
        capture_output=True, text=True, timeout=60,
    )  # fmt: skip
    told = f"cxc: {pipe}: is a device or a pipe, not a file\n"
    assert (work.returncode, work.stderr) == (1, told)
