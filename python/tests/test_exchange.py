"""Conversion between the formats: what comes back, and what is refused in one line."""

import warnings

import numpy as np
import pytest
from exchange_data import LABELS, NOTE, bytes_of, make_dataset

import cxc
from cxc import exchange
from cxc.cli import main
from cxc.errors import CommandError


@pytest.fixture()
def file(tmp_path):
    path = str(tmp_path / "a.cxc")
    make_dataset().save(path)
    return path


@pytest.mark.parametrize("ending", ["nc", "h5", "hdf5", "mat", "npz"])
@pytest.mark.parametrize(
    "changes",
    [
        {},
        {"note": "", "name": ""},  # sensors without names, and empty texts
        {"note": "no names", "sampling_rate": 0.0},
        {"note": NOTE + "\nand more\n", "name": "µ 中", "latency": (-0.25, 9.0)},
        {"channels": [-7, 5, 5, 2**62], "channel_type": 3, "sampling_rate": 1 / 3},
        {"band": (0.1, 1.0), "latency": (1e6, 1e6 + 1 / 3), "sampling_rate": 1000.0},
    ],
)
def test_a_dataset_comes_back_whole(tmp_path, ending, changes):
    dataset = make_dataset(**changes)
    dataset.save(tmp_path / "a.cxc")
    there = str(tmp_path / f"x.{ending}")
    exchange.convert(str(tmp_path / "a.cxc"), there)
    exchange.convert(there, str(tmp_path / "back.cxc"))
    assert (tmp_path / "back.cxc").read_bytes() == (tmp_path / "a.cxc").read_bytes()


@pytest.mark.parametrize("ending", ["nc", "mat", "npz"])
@pytest.mark.parametrize("slices, sensors", [(1, 3), (5, 1), (1, 1)])
def test_small_ones_come_back_whole(tmp_path, ending, slices, sensors):
    values = np.arange(1.0, 1 + slices * sensors**2).reshape(slices, sensors, sensors)
    dataset = cxc.Dataset.from_array(
        values, channels=range(7, 7 + sensors), sampling_rate=4.0, latency=(1, 3), note="n"
    )
    dataset.save(tmp_path / "a.cxc")
    there = str(tmp_path / f"x.{ending}")
    exchange.convert(str(tmp_path / "a.cxc"), there)
    back = exchange.convert(there, str(tmp_path / "back.cxc"))
    np.testing.assert_array_equal(back.to_array(), values)
    assert bytes_of(back, tmp_path) == (tmp_path / "a.cxc").read_bytes()


@pytest.mark.parametrize("ending", ["nc", "mat", "npz"])
def test_values_that_are_not_finite_come_back(tmp_path, ending):
    values = make_dataset().to_array()
    values[0, 0, 0], values[1, 1, 0], values[2, 0, 1] = np.nan, np.inf, -np.inf
    there = str(tmp_path / f"x.{ending}")
    cxc.Dataset.from_array(values).save(tmp_path / "a.cxc")
    exchange.convert(str(tmp_path / "a.cxc"), there)
    back = exchange.convert(there, str(tmp_path / "b.cxc"))
    np.testing.assert_array_equal(back.to_array(), values)


def test_channel_numbers_of_rows_and_columns_come_back_apart(tmp_path):
    dataset = make_dataset()
    dataset.channels_b = dataset.channels_b + 100
    path = str(tmp_path / "a.nc")
    exchange.to_netcdf(dataset, path)
    back = exchange.from_netcdf(path)
    np.testing.assert_array_equal(back.channels_a, dataset.channels_a)
    np.testing.assert_array_equal(back.channels_b, dataset.channels_b)


def test_channel_numbers_that_no_format_holds_are_told(tmp_path):
    dataset = make_dataset()
    numbers = dataset.channels_a.copy()
    numbers[1, 2] = 99
    dataset.channels_a = numbers
    with pytest.warns(UserWarning, match="channel numbers differ"):
        exchange.to_npz(dataset, str(tmp_path / "a.npz"))


@pytest.mark.parametrize(
    "line, labels",
    [
        ("Sensors: 1 Fp1, 2 Cz, ref, 3 O 2, 4 M1", ["Fp1", "Cz, ref", "O 2", "M1"]),
        ("Sensors: 1 Fp1, 2 Cz, 3 O2", ["11", "12", "13", "14"]),  # one is missing
        ("Sensors: 1 a, 2 b, 3 c, 4 d, 5 e", ["11", "12", "13", "14"]),  # one too many
        ("Sensors: 1 a, 2 , 3 c, 4 d", ["11", "12", "13", "14"]),  # one without a name
        ("nothing", ["11", "12", "13", "14"]),
    ],
)
def test_sensors_are_named_by_the_note_or_their_numbers(line, labels):
    assert make_dataset(note="How\n" + line).sensors == labels


def test_an_edited_part_tells_its_own_sensors_and_times(tmp_path):
    path = str(tmp_path / "a.npz")
    exchange.to_npz(make_dataset(), path)
    fields = dict(np.load(path))
    fields["values"] = fields["values"][1:, 1:, 1:]
    fields["labels"], fields["time"] = fields["labels"][1:], fields["time"][1:]
    np.savez(path, **fields)
    part = exchange.from_numpy(path)
    assert part.sensors == LABELS[1:]
    assert part.note.startswith("How\n\n  it was computed \nSensors: 1 Cz, ref, 2 O")
    assert part.sampling_rate == 2.0 and part.latency == (2.0, 2.5)
    assert part.channels_a[:, 0].tolist() == part.channels_b[0].tolist() == [1, 2, 3]


def test_times_alone_give_rate_and_latency(tmp_path):
    path = str(tmp_path / "a.npz")
    np.savez(path, values=np.ones((3, 2, 2)), time=[1.0, 1.25, 1.5], labels=["a", "b\nc"])
    made = exchange.from_numpy(path)
    assert made.sampling_rate == 4.0 and made.latency == (1.0, 1.5)
    assert made.name == "a" and made.note == "From a.npz\nSensors: 1 a, 2 b c"


def test_numpy_arrays_become_datasets(tmp_path):
    path = str(tmp_path / "a.npy")
    values = np.arange(18, dtype=np.float32).reshape(2, 3, 3)
    np.save(path, values)
    made = exchange.convert(path, str(tmp_path / "a.cxc"))
    np.testing.assert_array_equal(made.to_array(), values)
    np.save(path, values[0])
    np.testing.assert_array_equal(exchange.from_numpy(path).to_array(), values[:1])


OTHER_COLUMNS = [([0, 1], [1, 2, 3]), ([0, 1], [2, 3]), ([0, 1], [1, 0])]


def described(dataset):
    arrays = dataset.to_array(), dataset.channels_a, dataset.channels_b
    about = dataset.name, dataset.note, dataset.band, dataset.latency, dataset.sampling_rate
    return [array.tolist() for array in arrays], about, dataset.channel_type


def test_a_grid_that_is_not_square_goes_where_it_can_be_told(tmp_path):
    dataset = cxc.Dataset.from_array(np.arange(1.0, 13.0).reshape(2, 2, 3))
    dataset.save(tmp_path / "a.cxc")
    exchange.convert(str(tmp_path / "a.cxc"), str(tmp_path / "a.npz"))
    back = exchange.convert(str(tmp_path / "a.npz"), str(tmp_path / "b.cxc"))
    assert (back.sensors, back.column_sensors) == (["1", "2"], ["1", "2", "3"])
    assert described(back) == described(dataset)


@pytest.mark.parametrize("rows, columns", OTHER_COLUMNS)
def test_columns_that_are_other_sensors_come_back_from_numpy(tmp_path, rows, columns):
    part = make_dataset().select(rows=rows, columns=columns)
    part.save(tmp_path / "a.cxc")
    exchange.convert(str(tmp_path / "a.cxc"), str(tmp_path / "a.npz"))
    arrays = np.load(tmp_path / "a.npz")
    assert arrays["labels"].tolist() == [LABELS[i] for i in rows]
    assert arrays["column_labels"].tolist() == [LABELS[i] for i in columns]
    back = exchange.convert(str(tmp_path / "a.npz"), str(tmp_path / "b.cxc"))
    assert described(back) == described(part)


def test_column_names_are_written_where_they_are_not_those_of_the_rows(tmp_path):
    exchange.to_npz(make_dataset(), str(tmp_path / "a.npz"))
    assert "column_labels" not in np.load(tmp_path / "a.npz")


@pytest.mark.parametrize("write", [exchange.to_netcdf, exchange.to_matlab, exchange.to_graphml])
@pytest.mark.parametrize("rows, columns", OTHER_COLUMNS)
def test_a_format_with_one_list_of_sensors_takes_no_other_columns(tmp_path, write, rows, columns):
    part = make_dataset().select(rows=rows, columns=columns)
    with pytest.raises(CommandError, match="a: rows and columns are not the same sensors"):
        write(part, str(tmp_path / "a"))
    assert not list(tmp_path.iterdir())


@pytest.mark.parametrize("ending", ["nc", "mat", "npz"])
def test_a_part_of_the_same_sensors_comes_back_with_their_names(tmp_path, ending):
    part = make_dataset().select(rows=[2, 1], columns=[2, 1])
    part.save(tmp_path / "a.cxc")
    exchange.convert(str(tmp_path / "a.cxc"), str(tmp_path / f"a.{ending}"))
    back = exchange.convert(str(tmp_path / f"a.{ending}"), str(tmp_path / "b.cxc"))
    assert back.sensors == back.column_sensors == [LABELS[2], LABELS[1]]
    assert described(back) == described(part)


def test_edited_names_of_columns_replace_those_of_the_note(tmp_path):
    path = str(tmp_path / "a.npz")
    exchange.to_npz(make_dataset().select(rows=[0, 1], columns=[2, 3]), path)
    fields = dict(np.load(path))
    fields["column_labels"] = np.array(["new\nname", ""])
    np.savez(path, **fields)
    back = exchange.from_numpy(path)
    assert (back.sensors, back.column_sensors) == (LABELS[:2], ["new name", "2"])
    assert "Row sensors: 1 Fp1, 2 Cz, ref\nColumn sensors: 1 new name, 2 2" in back.note
    del fields["column_labels"]  # so the columns are the rows' sensors
    np.savez(path, **fields)
    back = exchange.from_numpy(path)
    assert back.sensors == back.column_sensors == LABELS[:2]
    assert "Row sensors" not in back.note and "Column sensors" not in back.note


@pytest.mark.parametrize("name", ["a.nc", "a.mat", "a.npz", "a.csv", "a.graphml"])
def test_a_dataset_without_values_is_refused(tmp_path, name):
    cxc.Dataset().save(tmp_path / "empty.cxc")
    with pytest.raises(CommandError, match=f"{name}: the dataset holds no values"):
        exchange.convert(str(tmp_path / "empty.cxc"), str(tmp_path / name))
    assert [path.name for path in tmp_path.iterdir()] == ["empty.cxc"]


@pytest.mark.parametrize(
    "fields, told",
    [
        ({"values": np.zeros((2, 2, 2), dtype=complex)}, "complex values"),
        ({"values": np.zeros(3)}, "no real numbers"),
        ({"values": np.zeros((2, 3))}, "no real numbers"),
        ({"values": np.zeros((0, 2, 2))}, "no real numbers"),
        ({"values": np.array(["a"])}, "no real numbers"),
        ({"matrix": np.zeros((2, 2, 2))}, "no array named values; its arrays: matrix"),
        ({"values": np.zeros((2, 2, 2)), "time": [1.0]}, "1 times, but holds 2 slices"),
        ({"values": np.zeros((2, 2, 2)), "time": ["a", "b"]}, "could not convert string"),
        ({"values": np.zeros((3, 2, 2)), "time": [1, 2, 9]}, "do not go up in equal steps"),
        ({"values": np.zeros((2, 2, 2)), "time": [2, 1]}, "do not go up in equal steps"),
        ({"values": np.zeros((2, 2, 2)), "labels": ["a"]}, "names 1 sensors"),
        (
            {"values": np.zeros((1, 2, 3)), "column_labels": ["a", "b"]},
            "names 2 column sensors, but the matrix has 3 columns",
        ),
        ({"values": np.zeros((2, 2, 2)), "band": "high"}, "could not convert string"),
        ({"values": np.zeros((2, 2, 2)), "channel_type": 9}, "channel_type is 9"),
        ({"values": np.zeros((2, 2, 2)), "row_channels": ["x", "y"]}, "invalid literal"),
    ],
)
def test_arrays_that_are_no_dataset_are_refused(tmp_path, fields, told):
    path = str(tmp_path / "a.npz")
    np.savez(path, **fields)
    with pytest.raises(CommandError, match=told) as error:
        exchange.convert(path, str(tmp_path / "b.cxc"))
    assert str(error.value).startswith(path + ": ") and "\n" not in str(error.value)
    assert [file.name for file in tmp_path.iterdir()] == ["a.npz"]


@pytest.mark.parametrize("content", [b"", b"no", b"PK\x03\x04 broken", b"\x89HDF\r\n\x1a\n" * 9])
@pytest.mark.parametrize(
    "name, told",
    [
        ("a.nc", "is no netCDF file"),
        ("a.h5", "is no netCDF file"),
        ("a.mat", "MATLAB|of version 7.3|structures with a dimord"),
        ("a.npy", "is no NumPy file"),
        ("a.npz", "is no NumPy file"),
    ],
)
def test_a_wrong_kind_of_file_gets_one_line(tmp_path, capsys, name, told, content):
    path = tmp_path / name
    path.write_bytes(content)
    with pytest.raises(CommandError, match=told):
        exchange.convert(str(path), str(tmp_path / "b.cxc"))
    assert main(["convert", str(path), str(tmp_path / "b.cxc")]) == 1
    line = capsys.readouterr().err
    assert line.startswith(f"cxc: {path}: ") and line.count("\n") == 1
    assert [file.name for file in tmp_path.iterdir()] == [name]


def test_a_damaged_archive_gets_one_line(tmp_path):
    path = tmp_path / "a.npz"
    np.savez_compressed(path, values=np.random.default_rng(1).random((3, 4, 4)))
    content = bytearray(path.read_bytes())
    content[100:140] = bytes(40)
    path.write_bytes(content)
    with pytest.raises(CommandError, match="is no NumPy file that can be read"):
        exchange.from_numpy(str(path))


@pytest.mark.parametrize("ending", ["nc", "mat", "npz"])
def test_any_cut_of_a_file_is_refused_or_still_whole(tmp_path, ending):
    whole = tmp_path / f"whole.{ending}"
    dataset = make_dataset()
    dataset.save(tmp_path / "a.cxc")
    exchange.convert(str(tmp_path / "a.cxc"), str(whole))
    content = whole.read_bytes()
    cut = tmp_path / f"cut.{ending}"
    target = tmp_path / "b.cxc"
    for length in range(0, len(content), max(1, len(content) // 40)):
        cut.write_bytes(content[:length])
        with pytest.raises(CommandError), warnings.catch_warnings():
            warnings.simplefilter("ignore")
            exchange.convert(str(cut), str(target))
        assert not target.exists()


def test_the_command_converts_by_the_endings(file, tmp_path, capsys):
    target = str(tmp_path / "a.NC")
    assert main(["convert", file, target]) == 0
    assert capsys.readouterr().out == f"{target}: 3 slices of 4 x 4 sensors\n"
    assert main(["convert", file, target]) == 1
    assert capsys.readouterr().err == f"cxc: {target}: exists already; --force replaces it\n"
    assert main(["convert", file, target, "--force"]) == 0
    capsys.readouterr()
    assert main(["convert", file, str(tmp_path / "a.xls")]) == 1
    assert "a.xls: what can be written ends with .csv, .cxc" in capsys.readouterr().err
    assert main(["convert", str(tmp_path / "a.csv"), str(tmp_path / "b.cxc")]) == 1
    assert "a.csv: what can be read ends with .cxc, .h5" in capsys.readouterr().err


@pytest.mark.parametrize(
    "source, target, told",
    [
        ("none.nc", "b.cxc", "none.nc: no such file"),
        ("folder.nc", "b.cxc", "folder.nc: is a folder, not a file"),
        ("a.cxc", "none/b.nc", "none: no such folder"),
        ("a.cxc", "folder.nc", "folder.nc: is a folder, not a name for the output"),
    ],
)
def test_files_that_are_not_there_get_one_line(file, tmp_path, source, target, told):
    (tmp_path / "folder.nc").mkdir()
    with pytest.raises(CommandError, match=told):
        exchange.convert(str(tmp_path / source), str(tmp_path / target))


@pytest.mark.parametrize("ending", ["nc", "mat", "npz", "csv", "graphml", "cxc"])
def test_existing_outputs_are_kept(file, tmp_path, ending):
    path = tmp_path / f"kept.{ending}"
    path.write_bytes(b"kept")
    with pytest.raises(CommandError, match="exists already"):
        exchange.convert(file, str(path))
    assert path.read_bytes() == b"kept"
    exchange.convert(file, str(path), overwrite=True)
    assert path.read_bytes() != b"kept"


@pytest.mark.parametrize("ending", ["nc", "mat", "npz", "csv", "graphml"])
def test_an_interrupted_export_leaves_nothing(file, tmp_path, ending, monkeypatch):
    """Interrupted when all is written and only the name is still to be given."""
    def interrupt(*_):
        raise KeyboardInterrupt

    monkeypatch.setattr("os.replace", interrupt)
    assert main(["convert", file, str(tmp_path / f"b.{ending}"), "--force"]) == 130
    assert [path.name for path in tmp_path.iterdir()] == ["a.cxc"]


@pytest.mark.parametrize("ending", ["nc", "mat", "npz", "csv", "graphml"])
def test_names_with_odd_characters_do_no_harm(tmp_path, ending):
    odd = ["a\tb", 'q"u,o;te', "\x01\x1b[31m", "=1+1"]
    note = "Sensors: " + ", ".join(f"{n} {label}" for n, label in enumerate(odd, 1))
    make_dataset(note=note, name="]]> </x> \x02").save(tmp_path / "a.cxc")
    exchange.convert(str(tmp_path / "a.cxc"), str(tmp_path / f"o d'd.{ending}"))
    assert (tmp_path / f"o d'd.{ending}").stat().st_size > 0


def test_a_name_that_reads_as_two_is_tidied_on_the_way_in(tmp_path):
    path = str(tmp_path / "odd.npz")
    np.savez(path, values=np.ones((1, 2, 2)), labels=np.array(["A, 2 B", "C, right"]))
    assert exchange.from_numpy(path).sensors == ["A; 2 B", "C, right"]
