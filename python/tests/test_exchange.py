"""Exchange formats, each read by the program that it is for."""

import csv
import subprocess

import numpy as np
import pytest

import cxc
from cxc import exchange
from cxc.errors import CommandError

LABELS = ["Fp1", "Cz", "O2", "M1"]


@pytest.fixture()
def dataset():
    values = np.random.default_rng(5).normal(size=(3, 4, 4))
    values[:, 3, :] = values[:, :, 3] = 0.0  # a sensor without coupling
    values[0, 0, 1] = 1 / 3
    return cxc.Dataset.from_array(
        values, sampling_rate=2.0, latency=(1.5, 2.5), band=(8.0, 13.0), name="alpha & <more>",
        note="How\nSensors: 1 Fp1, 2 Cz, 3 O2, 4 M1", channels=[11, 12, 13, 14], channel_type=2,
    )  # fmt: skip


@pytest.fixture()
def file(dataset, tmp_path):
    path = str(tmp_path / "a.cxc")
    dataset.save(path)
    return path


@pytest.mark.parametrize("ending", ["nc", "mat", "npz"])
def test_a_dataset_comes_back_whole(file, tmp_path, ending):
    there, back = str(tmp_path / f"x.{ending}"), str(tmp_path / "back.cxc")
    exchange.convert(file, there)
    exchange.convert(there, back)
    with open(file, "rb") as a, open(back, "rb") as b:
        assert a.read() == b.read()


def test_netcdf_is_laid_out_as_connectivity_tools_expect(dataset, tmp_path):
    import h5py
    import netCDF4
    import xarray

    path = str(tmp_path / "a.nc")
    exchange.to_netcdf(dataset, path)
    values = dataset.to_array()
    with xarray.open_dataarray(path, engine="netcdf4") as array:
        assert array.name == "connectivity"
        assert array.dims == ("node_in -> node_out", "freqs", "times")
        assert array.attrs["data_structure"] == "SpectroTemporalConnectivity"
        assert array.attrs["n_nodes"] == 4 and array.attrs["indices"] == "all"
        assert list(array.attrs["node_names"]) == LABELS
        np.testing.assert_array_equal(array.coords["times"], [1.5, 2.0, 2.5])
        assert "from * sensors + to" in array.attrs["pair_order"]
        np.testing.assert_array_equal(array.values[0 * 4 + 1, 0], values[:, 0, 1])
    with netCDF4.Dataset(path) as plain:
        np.testing.assert_array_equal(plain["connectivity"][2 * 4 + 0, 0], values[:, 2, 0])
    with h5py.File(path) as plain:
        np.testing.assert_array_equal(plain["connectivity"][1 * 4 + 2, 0], values[:, 1, 2])


def test_matlab_is_read_by_octave_and_scipy(dataset, tmp_path):
    from scipy.io import loadmat

    path = str(tmp_path / "a.mat")
    exchange.to_matlab(dataset, path)
    values = dataset.to_array()
    structure = loadmat(path)["coh"][0, 0]
    np.testing.assert_array_equal(structure["cohspctrm"][0, 1], values[:, 0, 1])
    script = (
        f"load('{path}'); printf('%s\\n', coh.dimord, coh.label{{3}}); "
        "printf('%d ', size(coh.cohspctrm)); printf('%.17g\\n', coh.cohspctrm(1, 2, 1)); "
        "printf('%g ', coh.time)"
    )
    told = subprocess.run(
        ["octave-cli", "--no-gui", "--norc", "--eval", script],
        capture_output=True, text=True, check=True,
    ).stdout.split()  # fmt: skip
    assert told == ["chan_chan_time", "O2", "4", "4", "3", repr(1 / 3) + "1", "1.5", "2", "2.5"]


def test_what_octave_has_edited_becomes_a_dataset(dataset, tmp_path):
    path, edited = str(tmp_path / "a.mat"), str(tmp_path / "b.mat")
    exchange.to_matlab(dataset, path)
    script = f"load('{path}'); coh.cohspctrm(2, 3, 1) = 7; save('-v7', '{edited}', 'coh')"
    subprocess.run(["octave-cli", "--norc", "--eval", script], check=True, capture_output=True)
    back = exchange.from_matlab(edited)
    assert back.value(0, 1, 2) == 7.0
    assert back.band == (8.0, 13.0) and back.latency == (1.5, 2.5)
    assert exchange.labels_of(back) == LABELS


def test_csv_is_row_by_row_with_every_digit(file, dataset, tmp_path):
    path = str(tmp_path / "a.csv")
    exchange.convert(file, path)
    with open(path) as text:
        lines = list(csv.DictReader(text))
    assert lines[4] == {
        "slice": "1", "latency": "2.0", "row": "1", "column": "2", "row_channel": "11",
        "column_channel": "12", "value": repr(dataset.value(1, 0, 1)),
    }  # fmt: skip
    assert len(lines) == 3 * 4 * 4


def test_graphml_keeps_sensors_without_an_edge(dataset, tmp_path):
    import networkx

    path = str(tmp_path / "a.graphml")
    exchange.to_graphml(dataset, path)
    graph = networkx.read_graphml(path)
    assert [graph.nodes[n]["label"] for n in ("1", "2", "3", "4")] == LABELS
    assert list(networkx.isolates(graph)) == ["4"]
    mean = dataset.to_array().mean(axis=0)
    assert graph.edges["1", "3"]["weight"] == mean[0, 2]
    assert graph.number_of_edges() == 6


def test_numpy_arrays_become_datasets(tmp_path):
    path = str(tmp_path / "a.npy")
    values = np.arange(18.0).reshape(2, 3, 3)
    np.save(path, values)
    made = exchange.convert(path, str(tmp_path / "a.cxc"))
    np.testing.assert_array_equal(made.to_array(), values)


def test_a_spectrum_without_times_is_one_slice(tmp_path):
    import xarray

    path = str(tmp_path / "a.nc")
    xarray.DataArray(
        np.arange(4.0).reshape(4, 1), dims=("node_in -> node_out", "freqs"),
        coords={"freqs": [10.0]}, attrs={"n_nodes": 2}, name="connectivity",
    ).to_netcdf(path)  # fmt: skip
    made = exchange.from_netcdf(path)
    np.testing.assert_array_equal(made.to_array(), [[[0.0, 1.0], [2.0, 3.0]]])


@pytest.mark.parametrize(
    "name, content, told",
    [
        ("a.nc", b"no", "is no netCDF file"),
        ("a.mat", b"no", "is no MATLAB file"),
        ("a.npy", b"no", "is no NumPy file"),
        ("a.xyz", b"no", "reads .cxc"),
    ],
)
def test_a_wrong_kind_of_file_gets_one_line(tmp_path, name, content, told):
    path = tmp_path / name
    path.write_bytes(content)
    with pytest.raises(CommandError, match=told):
        exchange.convert(str(path), str(tmp_path / "b.cxc"))
    assert not (tmp_path / "b.cxc").exists()


@pytest.mark.parametrize(
    "values, told",
    [
        (np.zeros((2, 2, 2), dtype=complex), "complex"),
        (np.zeros(3), "no real numbers"),
        (np.zeros((0, 2, 2)), "no real numbers"),
        (np.array(["a"]), "no real numbers"),
    ],
)
def test_arrays_that_are_no_dataset_are_refused(tmp_path, values, told):
    path = str(tmp_path / "a.npy")
    np.save(path, values)
    with pytest.raises(CommandError, match=told):
        exchange.from_numpy(path)


def test_a_grid_that_is_not_square_is_refused_where_it_cannot_be_told(tmp_path):
    dataset = cxc.Dataset.from_array(np.ones((2, 2, 3)))
    for write, name in [(exchange.to_netcdf, "a.nc"), (exchange.to_matlab, "a.mat")]:
        with pytest.raises(CommandError, match="rows and columns differ"):
            write(dataset, str(tmp_path / name))
    exchange.to_csv(dataset, str(tmp_path / "a.csv"))
    assert sorted(path.name for path in tmp_path.iterdir()) == ["a.csv"]


def test_the_command_converts_by_the_endings(file, tmp_path, capsys):
    from cxc.cli import main

    assert main(["convert", file, str(tmp_path / "a.nc")]) == 0
    assert capsys.readouterr().out.endswith("a.nc: 3 slices of 4 x 4 sensors\n")
    assert main(["convert", file, str(tmp_path / "a.nc")]) == 1
    assert capsys.readouterr().err.endswith("a.nc: exists already; --force replaces it\n")
    assert main(["convert", file, str(tmp_path / "a.xls")]) == 1
    assert "writes .csv, .cxc" in capsys.readouterr().err


def test_existing_outputs_are_kept(file, tmp_path):
    path = tmp_path / "a.nc"
    path.write_bytes(b"kept")
    with pytest.raises(CommandError, match="exists already"):
        exchange.convert(file, str(path))
    assert path.read_bytes() == b"kept"
    exchange.convert(file, str(path), overwrite=True)
    assert exchange.from_netcdf(str(path)).band == (8.0, 13.0)
