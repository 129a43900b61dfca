"""Datasets in memory: what goes in comes out, and what does not fit is said."""

import gc
import threading

import numpy as np
import pytest

import cxc


def cube(slices=3, rows=5, columns=5, seed=1):
    return np.random.default_rng(seed).normal(size=(slices, rows, columns))


def test_values_come_back_bit_for_bit():
    values = cube(7, 5, 3)
    values[0, 0, 0] = -0.0
    values[1, 2, 1] = np.inf
    values[2].view(np.uint64)[0, 0] = 0x7FF8000000000123
    dataset = cxc.Dataset.from_array(values)
    assert dataset.to_array().tobytes() == values.tobytes()
    assert dataset.shape == (7, 5, 3)
    assert len(dataset) == 7


@pytest.mark.parametrize("shape", [(1, 1, 1), (1, 9, 9), (129, 3, 17), (257, 2, 8), (5, 33, 7)])
def test_every_tile_of_the_exchange_is_copied(shape):
    values = np.arange(np.prod(shape), dtype=float).reshape(shape)
    dataset = cxc.Dataset.from_array(values)
    np.testing.assert_array_equal(dataset.to_array(), values)
    np.testing.assert_array_equal(dataset.pair(shape[1] - 1, 0), values[:, -1, 0])


def test_other_layouts_and_types_are_converted():
    values = cube()
    for other in (np.asfortranarray(values), values[:, :, ::-1], values.astype(np.float32)):
        np.testing.assert_array_equal(cxc.Dataset.from_array(other).to_array(), other)
    whole = np.arange(8).reshape(2, 2, 2)
    np.testing.assert_array_equal(cxc.Dataset.from_array(whole.tolist()).to_array(), whole)


def test_arrays_are_copies_both_ways():
    values = cube()
    kept = values.copy()
    dataset = cxc.Dataset.from_array(values)
    values[:] = 0
    np.testing.assert_array_equal(dataset.to_array(), kept)
    out = dataset.to_array()
    pair = dataset.pair(1, 2)
    out[:] = 0
    pair[:] = 0
    np.testing.assert_array_equal(dataset.to_array(), kept)
    pair = dataset.pair(1, 2)
    del dataset
    gc.collect()
    np.testing.assert_array_equal(pair, kept[:, 1, 2])


def test_an_array_is_of_one_moment_while_another_thread_replaces_the_grid():
    values = cube(60, 150, 150)
    one = cxc.Dataset.from_array(values)
    one.accumulate_time()
    mean = one.to_array()
    for _ in range(5):
        dataset = cxc.Dataset.from_array(values)
        begun = threading.Event()

        def replace():
            begun.set()
            dataset.accumulate_time()

        thread = threading.Thread(target=replace)
        thread.start()
        begun.wait()
        seen = []
        while thread.is_alive():
            seen.append(dataset.to_array())
        thread.join()
        seen.append(dataset.to_array())
        for array in seen:
            np.testing.assert_array_equal(array, values if len(array) == 60 else mean)


@pytest.mark.parametrize(
    "bad", [np.zeros((3, 3)), np.zeros((0, 3, 3)), np.zeros((2, 0, 3)), np.zeros((2, 3, 3, 1)), 5.0]
)
def test_other_shapes_are_refused(bad):
    with pytest.raises(ValueError):
        cxc.Dataset.from_array(bad)


@pytest.mark.parametrize(
    "bad",
    [
        np.zeros((2, 2, 2), complex),
        np.zeros((2, 2, 2), bool),
        np.zeros((2, 2, 2), "m8[s]"),
        np.full((2, 2, 2), "x"),
    ],
)
def test_other_kinds_of_values_are_refused(bad):
    with pytest.raises(ValueError, match="real numbers"):
        cxc.Dataset.from_array(bad)


def test_masked_values_do_not_slip_in():
    values = np.ma.masked_array(cube(), mask=False)
    np.testing.assert_array_equal(cxc.Dataset.from_array(values).to_array(), values.data)
    values[1, 2, 3] = np.ma.masked
    with pytest.raises(ValueError, match="masked"):
        cxc.Dataset.from_array(values)


def test_more_values_than_memory_are_a_memory_error():
    with pytest.raises(MemoryError):
        cxc.Dataset.from_array(np.broadcast_to(0.0, (10**6, 20000, 20000)))


def test_the_description_is_kept():
    dataset = cxc.Dataset.from_array(
        cube(4),
        sampling_rate=2.5,
        latency=(0.5, 9.5),
        band=(8, 12),
        name="α rest",
        note="made here",
        channels=[2, 3, 5, 7, 11],
        channel_type=2,
    )
    assert dataset.name == "α rest"
    assert dataset.note == "made here"
    assert dataset.sampling_rate == 2.5
    assert dataset.latency == (0.5, 9.5)
    assert dataset.latency_of(5) == 2.5
    assert dataset.band == (8.0, 12.0)
    assert dataset.channel_type == 2
    assert dataset.type_name == "EEG Sensor"
    assert dataset.selection == (0, 3)
    assert dataset.header.largest_slice_count == 4
    assert dataset.channels_a[:, 0].tolist() == [2, 3, 5, 7, 11]
    assert dataset.channels_b[0].tolist() == [2, 3, 5, 7, 11]
    assert "α rest" in repr(dataset) and "8 to 12 Hz" in repr(dataset)


def test_the_defaults_are_the_librarys():
    dataset = cxc.Dataset()
    assert dataset.name == "CxcTrial"
    assert dataset.note == "CxC ComputeInfo"
    assert dataset.band == (0.1, 1.0)
    assert dataset.shape == (0, 0, 0)
    assert dataset.basic_color == (255, 125, 125)
    assert dataset.active_color == (255, 0, 0)
    assert dataset.suppressive_color == (0, 0, 255)
    assert dataset.cached_abs_range == (0.0, 1.0, 0.0)


def test_channels_must_fit_the_sensors():
    with pytest.raises(ValueError):
        cxc.Dataset.from_array(cube(), channels=[1, 2])
    with pytest.raises(ValueError):
        cxc.Dataset.from_array(cube(3, 5, 4), channels=[1, 2, 3, 4, 5])
    with pytest.raises(ValueError, match="whole"):
        cxc.Dataset.from_array(cube(), channels=[1, 2, 3, 4, 5.5])
    with pytest.raises(ValueError, match="whole"):
        cxc.Dataset.from_array(cube(), channels=["1", "2", "3", "4", "5"])
    with pytest.raises(ValueError):
        cxc.Dataset.from_array(cube()).channels_a = np.zeros((2, 2), int)


def test_single_values_are_checked():
    values = cube(3, 5, 4)
    dataset = cxc.Dataset.from_array(values)
    assert dataset.value(2, 4, 3) == values[2, 4, 3]
    for bad in [(3, 0, 0), (0, 5, 0), (0, 0, 4), (-1, 0, 0)]:
        with pytest.raises(IndexError):
            dataset.value(*bad)
    with pytest.raises(IndexError):
        dataset.pair(5, 0)
    with pytest.raises(IndexError):
        dataset.pair(0, -1)


def test_the_selection_is_clamped_as_the_library_does():
    dataset = cxc.Dataset.from_array(cube(10))
    dataset.selection = (-3, 2)
    assert dataset.selection == (0, 2)
    dataset.selection = (8, 20)
    assert dataset.selection == (8, 9)
    dataset.selection = (5, 1)
    assert dataset.selection == (5, 5)


def test_a_dataset_without_values_says_so(tmp_path):
    empty = cxc.Dataset()
    for use in (
        empty.to_array,
        empty.normalize_rms,
        empty.data_range,
        empty.range,
        empty.abs_range,
        empty.zero_diagonal,
        empty.statistics,
        empty.accumulate_time,
        lambda: empty.channels_a,
        lambda: empty.pair(0, 0),
        lambda: empty.export_text(tmp_path / "a.txt"),
        lambda: empty.add(empty),
    ):
        with pytest.raises(cxc.CxcError):
            use()
    assert not list(tmp_path.iterdir())


def test_slices_are_counted_as_the_library_does():
    assert cxc.slice_count(100, 10, 100) == 1
    assert cxc.slice_count(50, 10, 100) == 1
    assert cxc.slice_count(101, 10, 100) == 2
    assert cxc.slice_count(1000, 100, 200) == 9
    assert cxc.slice_count(1000, 100, 250) == 9
    with pytest.raises(ValueError):
        cxc.slice_count(1000, 0, 200)


def test_colours_are_red_green_blue():
    dataset = cxc.Dataset()
    dataset.active_color = (1, 2, 3)
    assert dataset.active_color == (1, 2, 3)
    assert dataset.header.active_color == 0x030201
    with pytest.raises(ValueError):
        dataset.active_color = (256, 0, 0)
