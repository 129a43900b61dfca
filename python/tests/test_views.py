"""Datasets as the objects of the ecosystem: parts, arrays with coordinates, tables, notebooks."""

import subprocess
import sys

import numpy as np
import pytest

import cxc

NOTE = "How\nSensors: 1 Fp1, 2 Cz, 3 O2\nmore"


@pytest.fixture()
def dataset():
    values = np.arange(5 * 3 * 3, dtype=float).reshape(5, 3, 3)
    made = cxc.Dataset.from_array(
        values, sampling_rate=2.0, latency=(1.0, 3.0), band=(8.0, 13.0), name="a <b>", note=NOTE,
        channels=[21, 22, 23], channel_type=2,
    )  # fmt: skip
    made.basic_color = (1, 2, 3)
    return made


def test_slices_are_taken_by_index_range_and_list(dataset):
    values = dataset.to_array()
    np.testing.assert_array_equal(dataset[1:3].to_array(), values[1:3])
    np.testing.assert_array_equal(dataset[3].to_array(), values[3:4])
    np.testing.assert_array_equal(dataset[-1].to_array(), values[4:])
    np.testing.assert_array_equal(dataset[[4, 0]].to_array(), values[[4, 0]])
    assert dataset[1:3].latency == (1.5, 2.0)
    assert dataset[1:3].selection == (0, 1)
    assert dataset[1:3].band == (8.0, 13.0) and dataset[1:3].basic_color == (1, 2, 3)


def test_slices_are_taken_by_latency(dataset):
    part = dataset.select(time=(1.4, 2.5))
    np.testing.assert_array_equal(part.to_array(), dataset.to_array()[1:4])
    assert part.latency == (1.5, 2.5)


def test_sensors_are_taken_by_index_and_by_name_in_their_order(dataset):
    values = dataset.to_array()
    part = dataset.select(sensors=["O2", 0])
    np.testing.assert_array_equal(part.to_array(), values[:, [2, 0]][:, :, [2, 0]])
    assert part.channels_a.tolist() == [[23, 23], [21, 21]]
    assert part.channels_b.tolist() == [[23, 21], [23, 21]]
    assert "Sensors: 1 O2, 2 Fp1" in part.note and "more" in part.note
    wide = dataset.select(rows=["Cz"])
    np.testing.assert_array_equal(wide.to_array(), values[:, 1:2])


@pytest.mark.parametrize(
    "wish",
    [{"slices": 5}, {"slices": slice(3, 3)}, {"sensors": ["Xy"]}, {"sensors": [3]},
     {"sensors": []}, {"time": (9.0, 10.0)}],
)  # fmt: skip
def test_what_is_not_there_is_an_index_error(dataset, wish):
    with pytest.raises(IndexError):
        dataset.select(**wish)


def test_the_slices_can_be_walked(dataset):
    assert [matrix[0, 1] for matrix in dataset] == dataset.to_array()[:, 0, 1].tolist()


def test_xarray_has_times_names_and_numbers(dataset):
    array = dataset.to_xarray()
    assert array.dims == ("time", "row", "column")
    assert array.sel(time=2.0, row="Cz", column="O2").item() == dataset.value(2, 1, 2)
    assert array.coords["column_channel"].values.tolist() == [21, 22, 23]
    assert array.attrs["band_hz"] == (8.0, 13.0)


def test_pandas_has_a_line_for_each_slice_of_each_pair(dataset):
    table = dataset.to_pandas()
    assert list(table.columns) == ["time", "row", "column", "value"]
    assert len(table) == 5 * 3 * 3
    assert table.iloc[5].tolist() == [1.0, "Fp1", "Cz", dataset.value(0, 0, 1)]
    assert table.iloc[1].tolist() == [1.5, "Fp1", "Fp1", dataset.value(1, 0, 0)]


def test_a_grid_that_is_not_square_has_numbered_columns():
    array = cxc.Dataset.from_array(np.ones((1, 2, 3))).to_xarray()
    assert array.coords["column"].values.tolist() == ["1", "2", "3"]


def test_notebooks_show_a_table_of_escaped_text(dataset):
    shown = dataset._repr_html_()
    assert "<caption>a &lt;b&gt;</caption>" in shown
    assert "5 slices x 3 x 3 sensors" in shown and "8 to 13 Hz" in shown and "0 to 44" in shown
    assert "<b>" not in shown
    assert cxc.Dataset()._repr_html_()


def test_importing_the_package_loads_nothing_heavy():
    heavy = "{'matplotlib', 'mne', 'scipy', 'pandas', 'xarray', 'netCDF4', 'distributed'}"
    code = f"import sys, cxc; print(sorted({heavy} & set(sys.modules)))"
    told = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True)
    assert told.stdout == "[]\n"
