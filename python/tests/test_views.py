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
    for time in ((1.4, 2.5), slice(1.4, 2.5)):
        part = dataset.select(time=time)
        np.testing.assert_array_equal(part.to_array(), dataset.to_array()[1:4])
        assert part.latency == (1.5, 2.5)
    assert len(dataset.select(time=slice(None, 1.6))) == 2
    assert len(dataset.select(time=slice(2.0, None))) == 3
    assert dataset.select(time=2.1).times.tolist() == [2.0]


def test_a_latency_that_was_computed_in_another_way_is_found():
    dataset = cxc.Dataset.from_array(np.ones((40, 2, 2)), sampling_rate=10.0, latency=(0.1, 4.0))
    for t in range(40):
        moment = sum([0.1] * (t + 1))
        assert dataset.select(time=(moment, moment)).times == pytest.approx([moment])


def test_sensors_are_taken_by_index_and_by_name_in_their_order(dataset):
    values = dataset.to_array()
    part = dataset.select(sensors=["O2", 0])
    np.testing.assert_array_equal(part.to_array(), values[:, [2, 0]][:, :, [2, 0]])
    assert part.channels_a.tolist() == [[23, 23], [21, 21]]
    assert part.channels_b.tolist() == [[23, 21], [23, 21]]
    assert "Sensors: 1 O2, 2 Fp1" in part.note and "more" in part.note


def test_rows_and_columns_that_differ_keep_their_names(dataset):
    part = dataset.select(rows=["Cz"], columns=[2, 0])
    np.testing.assert_array_equal(part.to_array(), dataset.to_array()[:, 1:2][:, :, [2, 0]])
    assert part.sensors == ["Cz"] and part.column_sensors == ["O2", "Fp1"]
    assert part.channels_a.tolist() == [[22, 22]] and part.channels_b.tolist() == [[23, 21]]
    again = part.select(columns=["Fp1"])
    assert again.sensors == ["Cz"] and again.column_sensors == ["Fp1"]
    assert again.to_array().ravel().tolist() == dataset.to_array()[:, 1, 0].tolist()


def test_a_part_keeps_every_field_that_describes_the_whole(dataset):
    header = dataset.header
    for number, field in enumerate(("header_int3", "header_int12", "header_long4", "header_long5")):
        setattr(header, field, 100 + number)
    header.header_real2, dataset.show = 2.5, True
    dataset.active_color, dataset.suppressive_color = (9, 8, 7), (6, 5, 4)
    dataset.normalize_rms()
    part = dataset.select(slices=[1, 3], sensors=[0, 2])
    assert [part.header.header_int3, part.header.header_int12] == [100, 101]
    assert [part.header.header_long4, part.header.header_long5] == [102, 103]
    assert part.header.header_real2 == 2.5 and part.show and part.rms == dataset.rms
    assert (part.name, part.channel_type, part.band) == ("a <b>", 2, (8.0, 13.0))
    assert (part.active_color, part.suppressive_color) == ((9, 8, 7), (6, 5, 4))
    assert part.header.largest_slice_count == 2
    values = part.to_array()
    assert part.cached_range == (values.min(), values.max(), pytest.approx(values.mean()))


def test_a_part_of_all_is_the_same_dataset_in_other_memory(dataset, tmp_path):
    dataset.data_range()
    part = dataset[:]
    assert part != dataset
    dataset.save(tmp_path / "a.cxc")
    part.save(tmp_path / "b.cxc")
    assert (tmp_path / "a.cxc").read_bytes() == (tmp_path / "b.cxc").read_bytes()
    part.zero_diagonal()
    assert dataset.value(1, 0, 0) == 9.0


def test_latencies_of_parts_are_those_of_the_whole(dataset):
    assert dataset[::2].times.tolist() == dataset.times[::2].tolist()
    assert dataset[1::3].times.tolist() == dataset.times[1::3].tolist()
    assert dataset[1:2].times.tolist() == [1.5] and dataset[1:2].sampling_rate == 2.0
    scattered = dataset[[4, 0, 1]]
    assert scattered.sampling_rate == 0.0 and scattered.times.tolist() == [0.0, 1.0, 2.0]
    assert dataset[::2].latency == (1.0, 3.0) and dataset[:2].latency == (1.0, 1.5)


def test_numpys_indices_and_masks_choose_too(dataset):
    values = dataset.to_array()
    np.testing.assert_array_equal(dataset[np.int64(2)].to_array(), values[2:3])
    np.testing.assert_array_equal(dataset[np.array([3, 1])].to_array(), values[[3, 1]])
    mask = np.array([True, False, True, False, False])
    np.testing.assert_array_equal(dataset[mask].to_array(), values[mask])
    part = dataset.select(sensors=np.array(["Cz", "O2"]))
    np.testing.assert_array_equal(part.to_array(), values[:, 1:, 1:])
    others = dataset.select(sensors=slice(1, None))
    np.testing.assert_array_equal(others.to_array(), part.to_array())
    np.testing.assert_array_equal(
        dataset.select(sensors=np.array([False, True, True])).to_array(), part.to_array()
    )


@pytest.mark.parametrize(
    "wish",
    [{"slices": 5}, {"slices": slice(3, 3)}, {"sensors": ["Xy"]}, {"sensors": [3]},
     {"sensors": []}, {"time": (9.0, 10.0)}, {"time": 7.0}, {"slices": []}, {"sensors": [-4]},
     {"rows": ["Xy"]}],
)  # fmt: skip
def test_what_is_not_there_is_an_index_error(dataset, wish):
    with pytest.raises(IndexError):
        dataset.select(**wish)


def test_a_sensor_is_chosen_once_and_slices_in_one_way(dataset):
    with pytest.raises(ValueError, match="twice"):
        dataset.select(sensors=["Cz", 1])
    with pytest.raises(ValueError, match="not by both"):
        dataset.select(slices=[0], time=1.0)
    with pytest.raises(ValueError, match="no step"):
        dataset.select(time=slice(1.0, 2.0, 0.5))
    with pytest.raises(TypeError):
        dataset.select(sensors="Cz")
    with pytest.raises(TypeError):
        dataset.select(sensors=[0.5])
    with pytest.raises(TypeError, match="mask"):
        dataset.select(sensors=[True, False])
    dataset.sensors = ["A", "B", "A"]
    with pytest.raises(IndexError, match="several sensors are named 'A'"):
        dataset.select(sensors=["A"])


def test_sensors_have_names_numbers_or_positions(dataset):
    assert dataset.sensors == ["Fp1", "Cz", "O2"] == dataset.column_sensors
    dataset.note = "Sensors: 1 Fp1"  # too few
    assert dataset.sensors == ["21", "22", "23"]
    plain = cxc.Dataset.from_array(np.ones((1, 2, 2)), sensors=["Left, front", "Cz"])
    assert plain.sensors == ["Left, front", "Cz"]
    assert cxc.Dataset.from_array(np.ones((1, 2, 2))).sensors == ["1", "2"]
    assert cxc.Dataset().sensors == []
    # The last would come back as "A" and "B, 2 C".
    for names in (["A"], ["A", ""], ["A", "B\nC"], ["A, 2 B", "C"]):
        with pytest.raises(ValueError):
            plain.sensors = names


@pytest.mark.parametrize("end", ["\n", "\r\n", "\r", "\x0b", "\u2028"])
def test_new_names_replace_those_of_the_note_whatever_ends_its_lines(dataset, end):
    dataset.note = f"How{end}Sensors: 1 A, 2 B, 3 C{end}more"
    dataset.sensors = ["D", "E", "F"]
    assert dataset.sensors == dataset.column_sensors == ["D", "E", "F"]
    assert dataset.note == f"How{end}more\nSensors: 1 D, 2 E, 3 F"
    dataset.note = f"How{end}Row sensors: 1 A, 2 B, 3 C{end}Column sensors: 1 B, 2 C, 3 D"
    dataset.sensors = ["D", "E", "F"]
    assert dataset.sensors == dataset.column_sensors == ["D", "E", "F"]


def test_the_slices_can_be_walked(dataset):
    assert [matrix[0, 1] for matrix in dataset] == dataset.to_array()[:, 0, 1].tolist()


def test_xarray_has_times_names_numbers_and_units(dataset, tmp_path):
    array = dataset.to_xarray()
    assert array.dims == ("time", "row", "column")
    assert array.sel(time=2.0, row="Cz", column="O2").item() == dataset.value(2, 1, 2)
    assert array.coords["column_channel"].values.tolist() == [21, 22, 23]
    assert array.coords["time"].attrs == {"long_name": "latency", "units": "s"}
    assert array.attrs["band_hz"] == [8.0, 13.0] and array.attrs["note"] == NOTE
    array.to_netcdf(tmp_path / "a.nc")
    import xarray

    with xarray.open_dataarray(tmp_path / "a.nc") as back:
        xarray.testing.assert_equal(back, array)
        assert back.attrs["channel_type"] == "EEG Sensor"


def test_pandas_has_a_line_for_each_slice_of_each_pair(dataset):
    table = dataset.to_pandas()
    assert list(table.columns) == ["time", "from", "to", "value"]
    values = dataset.to_array()
    names = ["Fp1", "Cz", "O2"]
    expected = [
        [1.0 + t / 2.0, names[r], names[c], values[t, r, c]]
        for r in range(3)
        for c in range(3)
        for t in range(5)
    ]
    assert table.values.tolist() == expected
    assert table["value"].dtype == np.float64 and table["time"].dtype == np.float64


def test_tables_of_rows_and_columns_that_differ_name_both(dataset):
    table = dataset.select(slices=[2], rows=["O2"], columns=["Fp1", "Cz"]).to_pandas()
    assert table[["from", "to"]].values.tolist() == [["O2", "Fp1"], ["O2", "Cz"]]
    assert table["value"].tolist() == dataset.to_array()[2, 2, :2].tolist()


def test_a_grid_that_is_not_square_has_numbered_columns():
    array = cxc.Dataset.from_array(np.ones((1, 2, 3))).to_xarray()
    assert array.coords["column"].values.tolist() == ["1", "2", "3"]


def test_notebooks_show_a_table_of_escaped_text(dataset):
    dataset.note += "\n<script>"
    cached = dataset.cached_range
    shown = dataset._repr_html_()
    assert "<caption>a &lt;b&gt;</caption>" in shown and "&lt;script&gt;" in shown
    assert "5 slices x 3 x 3 sensors" in shown and "8 to 13 Hz" in shown and "0 to 44" in shown
    assert "<b>" not in shown and "<script>" not in shown
    assert dataset.cached_range == cached  # looking changes nothing
    assert cxc.Dataset()._repr_html_()


def pixels(shown):
    """The colours of the picture in a notebook's table, [row, column, red green blue]."""
    import base64
    import io
    import re

    from matplotlib.image import imread

    data = base64.b64decode(re.search("base64,([^\"]*)", shown)[1])
    return np.rint(imread(io.BytesIO(data))[:, :, :3] * 255).astype(int)


def test_notebooks_show_a_picture_of_the_mean():
    values = np.zeros((4, 2, 3))
    values[1:3] = [[[1.0, 0.5, 0.25], [0.0, 1.0, np.nan]], [[1.0, 0.5, 0.75], [0.0, 1.0, np.nan]]]
    dataset = cxc.Dataset.from_array(values)
    dataset.selection = (1, 2)
    shown = pixels(dataset._repr_html_())
    assert shown.shape == (2, 3, 3)
    assert shown[0, 1].tolist() == shown[0, 2].tolist()  # both 0.5 on the average, the largest
    assert shown[1, 0].sum() > shown[0, 1].sum()  # weak is light
    assert shown[1, 2].tolist() == [200, 200, 200]


def test_pictures_of_differences_have_white_in_the_middle():
    matrix = np.array([[0.0, -1.0], [1.0, 0.0]])
    shown = pixels(cxc.Dataset.from_array(matrix[None])._repr_html_())
    assert shown[0, 0].min() > 235
    assert shown[0, 1].argmax() == 2 and shown[1, 0].argmax() == 0


def test_pictures_count_the_diagonal_where_columns_are_other_sensors():
    matrix = np.array([[1.0, 0.25], [0.25, 1.0]])
    same = cxc.Dataset.from_array(matrix[None])
    other = cxc.Dataset.from_array(matrix[None])
    other.note = "Row sensors: 1 A, 2 B\nColumn sensors: 1 C, 2 D"
    of_same, of_other = pixels(same._repr_html_()), pixels(other._repr_html_())
    assert of_same[0, 1].tolist() == of_same[0, 0].tolist()  # the scale ends with 0.25
    assert of_other[0, 1].sum() > of_other[0, 0].sum()


def test_large_datasets_are_shown_without_waiting_for_their_values(monkeypatch, dataset):
    monkeypatch.setattr("cxc.views._MOST_SHOWN", 44)
    assert "img" not in dataset._repr_html_() and "values" not in dataset._repr_html_()
    monkeypatch.setattr("cxc.views._MOST_SHOWN", 45)
    assert "img" in dataset._repr_html_()


# ---- packages and groups


@pytest.fixture()
def package(dataset):
    control = cxc.Dataset.from_array(np.full((1, 3, 3), 2.0), name="rest", band=(8.0, 13.0),
                                     sensors=["Fp1", "Cz", "O2"])  # fmt: skip
    made = cxc.Package(dataset, control)
    made.name, made.info, made.id, made.current = "subject <1>", "info", 7, 1
    return made


def test_packages_tell_their_shapes_and_band(package):
    assert repr(package) == (
        "<cxc.Package 'subject <1>': active 5 x 3 x 3, control 1 x 3 x 3; 8 to 13 Hz>"
    )
    shown = package._repr_html_()
    assert "subject &lt;1&gt;" in shown and "rest: 1 x 3 x 3, 8 to 13 Hz" in shown
    assert repr(cxc.Package()) == "<cxc.Package 'SnsCohFace': empty>"
    assert dict(package.items()) == {"active": package.active, "control": package.control}


def test_parts_of_packages_leave_a_control_of_one_slice(package):
    part = package.select(slices=slice(1, 3), sensors=["O2", "Cz"])
    assert part.active.shape == (2, 2, 2) and part.control.shape == (1, 2, 2)
    assert part.active.sensors == part.control.sensors == ["O2", "Cz"]
    assert (part.name, part.info, part.id, part.current) == ("subject <1>", "info", 7, 1)
    assert package.active.shape == (5, 3, 3)


def test_packages_become_variables_of_one_xarray(package):
    package.combine("subtract")
    package.act_ctl.sampling_rate, package.act_ctl.latency = 2.0, (1.0, 3.0)
    package.act_ctl.sensors = ["Fp1", "Cz", "O2"]
    arrays = package.to_xarray()
    assert arrays["active"].dims == arrays["act_ctl"].dims == ("time", "row", "column")
    assert arrays["control"].dims == ("control_time", "row", "column")
    difference = arrays["active"] - arrays["control"].isel(control_time=0)
    np.testing.assert_array_equal(difference.values, arrays["act_ctl"].values)
    table = package.to_pandas()
    assert list(table.columns) == ["class", "time", "from", "to", "value"]
    assert table["class"].value_counts().to_dict() == {"active": 45, "act_ctl": 45, "control": 9}
    for empty in (cxc.Package().to_xarray, cxc.Package().to_pandas):
        with pytest.raises(ValueError, match="empty|no dataset"):
            empty()


@pytest.fixture()
def group(dataset):
    other = dataset[:]
    other.name = "second"
    made = cxc.Group([dataset, None, other])
    made.name, made.info = "all & sundry", "info"
    return made


def test_groups_tell_their_shapes_and_band(group, dataset):
    assert repr(group) == "<cxc.Group 'all & sundry': 3 datasets of 5 x 3 x 3; 8 to 13 Hz>"
    group.append(dataset[:2])
    group[3].band = (1.0, 2.0)
    assert repr(group) == "<cxc.Group 'all & sundry': 4 datasets of 2 shapes; 2 bands>"
    shown = group._repr_html_()
    assert "all &amp; sundry" in shown and "empty" in shown and "second: 5 x 3 x 3" in shown
    many = cxc.Group([dataset] * 25)
    assert "and 5 more" in many._repr_html_()
    assert repr(cxc.Group()) == "<cxc.Group 'SnsCohFace': 0 datasets>"


def test_parts_of_groups_are_groups(group):
    part = group.select(time=(2.0, 3.0), sensors=["Cz"])
    assert [None if d is None else d.shape for d in part] == [(3, 1, 1), None, (3, 1, 1)]
    assert part.name == "all & sundry" and part[2].name == "second"


def test_groups_become_one_xarray(group):
    array = group.to_xarray()
    assert array.dims == ("dataset", "time", "row", "column")
    assert array.coords["dataset"].values.tolist() == [0, 2]
    assert array.coords["name"].values.tolist() == ["a <b>", "second"]
    np.testing.assert_array_equal(array.sel(dataset=2).values, group[2].to_array())
    table = group.to_pandas()
    assert list(table.columns) == ["dataset", "name", "time", "from", "to", "value"]
    assert table.groupby("name")["value"].count().to_dict() == {"a <b>": 45, "second": 45}


@pytest.mark.parametrize(
    "change, told",
    [
        (lambda d: d[:4], "dataset 3 has 4 slices, dataset 0 5"),
        (lambda d: d.select(sensors=[0, 1]), "dataset 3 is 2 x 2 sensors, dataset 0 3 x 3 sensors"),
        (lambda d: d.select(sensors=[0, 2, 1]), "dataset 3 has other sensors than dataset 0"),
        (lambda d: setattr(d, "latency", (0.0, 2.0)), "other latencies"),
        (lambda d: setattr(d, "band", (1.0, 2.0)), "another band"),
    ],
)
def test_groups_of_mixed_datasets_are_not_matched_by_position(group, change, told):
    other = group[0][:]
    group.append(change(other) or other)
    with pytest.raises(ValueError, match=told):
        group.to_xarray()
    assert group.to_pandas()["dataset"].nunique() == 3


HEAVY = {
    "matplotlib", "mne", "scipy", "pandas", "xarray", "netCDF4", "h5py", "networkx", "distributed"
}  # fmt: skip


def test_importing_the_package_loads_nothing_heavy_and_takes_a_moment():
    code = (
        "import time; begin = time.process_time(); import cxc; "
        "end = time.process_time(); import sys; "
        f"print(end - begin, sorted({HEAVY} & set(sys.modules)))"
    )
    # Time of the processor, and the best of some: other programs are not what is measured.
    runs = [
        subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=True)
        .stdout.split(maxsplit=1)
        for _ in range(5)
    ]
    assert {loaded for _, loaded in runs} == {"[]\n"}
    assert min(float(seconds) for seconds, _ in runs) < 0.3
