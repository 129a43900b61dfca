"""netCDF, read and edited with xarray, netCDF4 and h5py."""

import json
import re

import h5py
import netCDF4
import numpy as np
import pytest
import xarray
from exchange_data import LABELS, make_dataset

from cxc import exchange
from cxc.errors import CommandError

PAIRS = "node_in -> node_out"


@pytest.fixture()
def path(tmp_path):
    path = str(tmp_path / "a.nc")
    exchange.to_netcdf(make_dataset(), path)
    return path


def test_xarray_reads_what_connectivity_tools_expect(path):
    values = make_dataset().to_array()
    with xarray.open_dataarray(path, engine="netcdf4") as array:
        assert array.name == "connectivity"
        assert array.dims == (PAIRS, "freqs", "times")
        assert array.coords[PAIRS].values.tolist() == [str(i) for i in range(16)]
        assert array.coords["freqs"].values.tolist() == [10.5]
        np.testing.assert_array_equal(array.coords["times"], [1.5, 2.0, 2.5])
        attributes = array.attrs
        assert attributes["n_nodes"] == 4 and attributes["indices"] == "all"
        assert attributes["method"] == "coh"
        assert attributes["n_epochs_used"] == attributes["spec_method"] == "n/a"  # read as None
        assert list(attributes["node_names"]) == LABELS
        assert "entry from * sensors + to; from is the row" in attributes["pair_order"]
        dense = array.values.reshape(4, 4, 1, 3)
        np.testing.assert_array_equal(dense[0, 1, 0], values[:, 0, 1])
        np.testing.assert_array_equal(dense[:, :, 0], values.transpose(1, 2, 0))


def test_the_attributes_make_a_connectivity_object_of_that_class(path):
    """The steps of a reader that makes objects: class by name, the rest as arguments."""
    classes = {"SpectroTemporalConnectivity": (PAIRS, "freqs", "times")}
    with xarray.open_dataarray(path, engine="netcdf4") as array:
        attributes = dict(array.attrs)
        assert array.dims == classes[attributes.pop("data_structure")]
        assert json.loads(attributes.pop("metadata")) == []
        required = {"n_nodes", "node_names", "indices", "method", "spec_method", "n_epochs_used"}
        assert required <= attributes.keys()
        # Names of other arguments of such classes may not come up among what is ours.
        assert not {"data", "names", "freqs", "times", "self"} & attributes.keys()


def test_netcdf4_and_h5py_read_the_same(path):
    values = make_dataset().to_array()
    with netCDF4.Dataset(path) as plain:
        np.testing.assert_array_equal(plain["connectivity"][2 * 4 + 0, 0], values[:, 2, 0])
        assert plain["connectivity"].getncattr("computation") == make_dataset().note
    with h5py.File(path) as plain:
        np.testing.assert_array_equal(plain["connectivity"][1 * 4 + 2, 0], values[:, 1, 2])
        assert plain["connectivity"].attrs["node_names"].tolist() == LABELS
        assert plain["connectivity"].attrs["n_nodes"] == 4


def test_what_h5py_has_edited_becomes_a_dataset(path):
    with h5py.File(path, "r+") as plain:
        plain["connectivity"][1 * 4 + 2, 0, 1] = 7.0
    back = exchange.from_netcdf(path)
    expected = make_dataset().to_array()
    expected[1, 1, 2] = 7.0
    np.testing.assert_array_equal(back.to_array(), expected)
    assert back.band == (8.0, 13.0) and back.latency == (1.5, 2.75)
    assert back.sensors == LABELS


def saved(path, values, dims, attributes=None, **coordinates):
    array = xarray.DataArray(
        values, dims=dims, coords=coordinates, attrs={"n_nodes": 2, **(attributes or {})}
    )
    array.to_netcdf(path, engine="netcdf4")  # without a name, as connectivity tools save it
    return exchange.from_netcdf(path)


def test_as_mne_connectivity_opens_it_everything_is_there(path):
    """It takes h5netcdf."""
    with xarray.open_dataarray(path, engine="h5netcdf") as array:
        assert array.dims == (PAIRS, "freqs", "times")
        np.testing.assert_array_equal(
            array.values.reshape(4, 4, 3), make_dataset().to_array().transpose(1, 2, 0)
        )
        np.testing.assert_array_equal(array.coords["times"], [1.5, 2.0, 2.5])
        assert array.attrs["node_names"] == LABELS  # a list: it is searched by index()
        assert array.attrs["n_nodes"] == 4 and array.attrs["indices"] == "all"


def saved_as_mne_connectivity_does(path, values, **attributes):
    """Of its save(): engine, attributes and their values, "n/a" for None, no name."""
    sensors = round(len(values) ** 0.5)
    array = xarray.DataArray(
        values.reshape(len(values), 1, -1), dims=(PAIRS, "freqs", "times"),
        coords={PAIRS: [str(i) for i in range(len(values))], "freqs": [10.5],
                "times": np.arange(values[0].size) / 4},
        attrs={"data_structure": "SpectroTemporalConnectivity", "method": "imcoh",
               "spec_method": "multitaper", "indices": "all", "n_nodes": sensors,
               "node_names": LABELS[:sensors], "n_epochs_used": 20, "n_tapers": "n/a",
               "metadata": "[]", "events": np.empty((0, 3)), "event_id_keys": [],
               "event_id_vals": [], **attributes},
    )  # fmt: skip
    array.to_netcdf(path, format="NETCDF4", engine="h5netcdf", invalid_netcdf=True)
    return exchange.from_netcdf(path)


@pytest.mark.filterwarnings("ignore:You are writing invalid netcdf features")
def test_what_mne_connectivity_saves_is_read(tmp_path):
    path = str(tmp_path / "saved.nc")
    values = np.arange(1.0, 19.0).reshape(9, 2)
    made = saved_as_mne_connectivity_does(path, values, freqs_used=[[8.0, 10.0, 13.0]])
    np.testing.assert_array_equal(made.to_array(), values.T.reshape(2, 3, 3))
    assert made.band == (8.0, 13.0) and made.sampling_rate == 4.0 and made.latency == (0.0, 0.25)
    assert made.sensors == LABELS[:3] and made.name == "saved"
    made = saved_as_mne_connectivity_does(path, values, freqs_used="n/a")
    assert made.band == (10.5, 10.5)  # no list of frequencies: the coordinate


@pytest.mark.filterwarnings("ignore:You are writing invalid netcdf features")
def test_values_below_the_diagonal_only_are_warned_of(tmp_path, recwarn):
    path = str(tmp_path / "lower.nc")
    lower = np.tril(np.ones((3, 3)), -1).reshape(9, 1)
    with pytest.warns(UserWarning, match=f"{re.escape(path)}: all values stand below the diagonal"):
        made = saved_as_mne_connectivity_does(path, lower)
    np.testing.assert_array_equal(made.to_array()[0], np.tril(np.ones((3, 3)), -1))
    recwarn.clear()
    for silent in (np.ones((9, 1)), np.zeros((9, 1)), np.eye(3).reshape(9, 1)):
        saved_as_mne_connectivity_does(path, silent)
    assert not [w for w in recwarn if "below the diagonal" in str(w.message)]


def test_a_spectrum_without_times_is_one_slice(tmp_path):
    made = saved(tmp_path / "a.nc", np.arange(4.0).reshape(4, 1), (PAIRS, "freqs"), freqs=[10.0])
    np.testing.assert_array_equal(made.to_array(), [[[0.0, 1.0], [2.0, 3.0]]])
    assert made.band == (10.0, 10.0)


def test_times_without_a_spectrum_are_slices(tmp_path):
    made = saved(
        tmp_path / "a.nc", np.arange(12.0).reshape(4, 3), (PAIRS, "times"), times=[0.0, 0.5, 1.0]
    )
    np.testing.assert_array_equal(made.to_array()[1], [[1.0, 4.0], [7.0, 10.0]])
    assert made.sampling_rate == 2.0


def test_the_upper_triangle_of_a_symmetric_matrix_is_mirrored(tmp_path):
    values = np.array([1.0, 2.0, 3.0])
    made = saved(tmp_path / "a.nc", values, (PAIRS,), {"indices": "symmetric"})
    np.testing.assert_array_equal(made.to_array(), [[[1.0, 2.0], [2.0, 3.0]]])


@pytest.mark.parametrize(
    "shape, dims, attributes, told",
    [
        ((4, 2), (PAIRS, "freqs"), {}, "holds 2 frequencies"),
        ((3, 4), ("epochs", PAIRS), {}, r"has the dimensions \['epochs'"),
        ((4, 2), (PAIRS, "components"), {}, "has the dimensions"),
        ((2, 2), ("row", "column"), {}, "has the dimensions"),
        ((3,), (PAIRS,), {}, "holds 3 pairs, not all pairs of 2 sensors"),
        ((4,), (PAIRS,), {"indices": "symmetric"}, "not all pairs"),
        ((2,), (PAIRS,), {"indices": [0, 1]}, "not all pairs"),
        ((4,), (PAIRS,), {"n_nodes": -2}, "no real numbers|not all pairs"),
        ((4,), (PAIRS,), {"n_nodes": "two"}, "no attribute n_nodes"),
        ((4,), (PAIRS,), {"node_names": ["a", "b", "c"]}, "names 3 sensors"),
        ((4,), (PAIRS,), {"freqs_used": "alpha"}, "could not convert string"),
    ],
)
def test_other_connectivity_is_refused_in_one_line(tmp_path, shape, dims, attributes, told):
    path = tmp_path / "a.nc"
    with pytest.raises(CommandError, match=told) as error:
        saved(path, np.ones(shape), dims, attributes)
    assert str(error.value).startswith(f"{path}: ") and "\n" not in str(error.value)


def test_files_without_a_connectivity_are_refused(tmp_path):
    path = str(tmp_path / "a.nc")
    xarray.Dataset({"a": ("x", [1.0]), "b": ("x", [2.0])}).to_netcdf(path)
    with pytest.raises(CommandError, match="no variable named connectivity"):
        exchange.from_netcdf(path)
    with h5py.File(path, "w") as plain:
        plain["connectivity"] = np.ones((4, 1, 3))
    with pytest.raises(CommandError, match="has the dimensions"):
        exchange.from_netcdf(path)


def test_complex_values_are_refused(tmp_path):
    path = str(tmp_path / "a.nc")
    with h5py.File(path, "w") as plain:
        plain["connectivity"] = np.ones((4, 1, 3), dtype=complex)
    with pytest.raises(CommandError, match=f"{path}: "):
        exchange.from_netcdf(path)


def test_a_variable_beside_others_is_found(path):
    with netCDF4.Dataset(path, "a") as plain:
        plain.createVariable("extra", "f8", ())
    np.testing.assert_array_equal(exchange.from_netcdf(path).to_array(), make_dataset().to_array())


def test_older_netcdf_is_read(tmp_path):
    path = str(tmp_path / "classic.nc")
    array = xarray.DataArray(np.arange(4.0), dims=(PAIRS,), attrs={"n_nodes": 2})
    array.to_netcdf(path, engine="netcdf4", format="NETCDF3_64BIT")
    assert not h5py.is_hdf5(path)
    np.testing.assert_array_equal(exchange.from_netcdf(path).to_array(), [[[0.0, 1.0], [2.0, 3.0]]])


def test_a_file_that_was_refused_is_not_kept_open(tmp_path):
    path = str(tmp_path / "a.nc")
    for damage in (b"CDF\x01", b"\x89HDF\r\n\x1a\n"):
        with open(path, "wb") as file:
            file.write(damage * 100)
        with pytest.raises(CommandError, match="is no netCDF file"):
            exchange.from_netcdf(path)
    with h5py.File(path, "w") as plain:
        plain.create_dataset("connectivity", data=np.ones(4)).dims[0].label = PAIRS
        plain["other"] = h5py.Empty("f8")
        plain["connectivity"].attrs["DIMENSION_LIST"] = np.array([7, 7])
    with pytest.raises(CommandError):
        exchange.from_netcdf(path)
    with h5py.File(path, "w"):  # refused while anybody holds it
        pass
