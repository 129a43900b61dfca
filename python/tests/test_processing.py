"""Every operation against a plain NumPy computation of the same on random data.

Sums run in row, column, slice order with fixed divisors, so the results are compared bit for bit:
np.cumsum adds one value after the other, where np.sum would add in pairs.
"""

import numpy as np
import pytest

import cxc

SHAPES = [(1, 2, 2), (3, 5, 5), (7, 2, 5), (10, 6, 3), (33, 9, 9)]


def cube(shape, seed):
    return np.random.default_rng(seed).normal(size=shape) * 10 ** (seed % 5 - 2)


def ordered_sum(values) -> float:
    """The sum from the first to the last value."""
    flat = np.ravel(values)
    return float(np.cumsum(flat)[-1]) if flat.size else 0.0


def by_row(values, figure) -> float:
    """Adds figure(row's values [slice, column]) over the rows."""
    return ordered_sum([figure(values[:, r, :]) for r in range(values.shape[1])])


@pytest.fixture(params=[(shape, seed) for shape in SHAPES for seed in range(3)], ids=str)
def values(request):
    return cube(*request.param)


def test_normalize_rms(values):
    slices, rows, columns = values.shape
    # Within a row the library walks the columns, and in each the slices.
    square = by_row(values, lambda row: ordered_sum(row.T**2) / (columns * slices)) / rows
    rms = np.sqrt(square)
    dataset = cxc.Dataset.from_array(values)
    assert dataset.rms is None
    dataset.normalize_rms()
    assert dataset.rms == rms
    np.testing.assert_array_equal(dataset.to_array(), values / dataset.rms)


def test_normalize_rms_of_zeros_is_refused():
    dataset = cxc.Dataset.from_array(np.zeros((2, 3, 3)))
    with pytest.raises(cxc.CxcError, match="RMS value in leadfields is smaller than zero!\\?"):
        dataset.normalize_rms()
    assert dataset.rms is None


def test_data_range(values):
    slices, rows, columns = values.shape
    low, high, mean = cxc.Dataset.from_array(values).data_range()
    assert (low, high) == (values.min(), values.max())
    expected = by_row(values, lambda row: ordered_sum(row.T) / (columns * slices)) / rows
    assert mean == expected


def test_range_takes_vector_means_and_divides_by_all_columns(values):
    slices, rows, columns = values.shape
    dataset = cxc.Dataset.from_array(values)
    for diagonal in (True, False):
        keep = np.ones((rows, columns), bool) if diagonal else ~np.eye(rows, columns, dtype=bool)
        assert dataset.range(diagonal=diagonal) == (values[:, keep].min(), values[:, keep].max())
        mean = 0.0
        for r in range(rows):
            row = 0.0
            for c in range(columns):
                if keep[r, c]:
                    row += ordered_sum(values[:, r, c]) / slices
            mean += row / columns
        assert dataset.cached_range[2] == mean / rows


def test_range_of_some_slices_leaves_the_cache(values):
    dataset = cxc.Dataset.from_array(values)
    first, last = values.shape[0] // 3, values.shape[0] - 1
    part = values[first : last + 1]
    assert dataset.range(first, last) == (part.min(), part.max())
    assert dataset.cached_range == (0.0, 0.0, 0.0)
    with pytest.raises(cxc.CxcError):
        dataset.range(0, values.shape[0])
    for begin, end in [(-1, 0), (2, 1)]:
        with pytest.raises(IndexError):
            dataset.range(begin, end)
        with pytest.raises(IndexError):
            dataset.abs_range(begin, end)


def test_abs_range_caches_in_both_modes(values):
    dataset = cxc.Dataset.from_array(values)
    magnitude = np.abs(values)
    low, high = dataset.abs_range()
    assert (low, high) == (magnitude.min(), magnitude.max())
    assert dataset.cached_abs_range == (low, high, (low + high) * 0.5)
    low, high = dataset.abs_range(0, 0)
    assert (low, high) == (magnitude[0].min(), magnitude[0].max())
    assert dataset.cached_abs_range == (low, high, (low + high) * 0.5)


def test_statistics_and_their_text(values):
    slices, rows, columns = values.shape
    means = absolutes = roots = 0.0
    for r in range(rows):
        mean = absolute = square = 0.0
        for c in range(columns):
            pair = values[:, r, c]
            mean += ordered_sum(pair) / slices
            absolute += ordered_sum(np.abs(pair)) / slices
            rms = np.sqrt(ordered_sum(pair * pair) / slices)
            square += rms * rms
        means += mean / columns
        absolutes += absolute / columns
        roots += np.sqrt(square / columns)
    dataset = cxc.Dataset.from_array(values, name="some name")
    figures = dataset.statistics()
    assert figures["min"] == values.min()
    assert figures["max"] == values.max()
    assert figures["mean"] == means / rows
    assert figures["abs_mean"] == absolutes / rows
    assert figures["rms"] == np.sqrt(roots / rows)  # the second root is the library's own
    text = dataset.statistics_text()
    assert text == "some name Min: %f\tMean: %f Max: %f AbsSum: %f RmsSum: %f \n" % (
        figures["min"],
        figures["mean"],
        figures["max"],
        figures["abs_mean"],
        figures["rms"],
    )
    assert dataset.cached_range == (figures["min"], figures["max"], figures["mean"])


def test_zero_diagonal_and_its_note(values):
    dataset = cxc.Dataset.from_array(values, note="made")
    dataset.zero_diagonal()
    expected = values.copy()
    size = min(values.shape[1:])
    expected[:, np.arange(size), np.arange(size)] = 0.0
    np.testing.assert_array_equal(dataset.to_array(), expected)
    dataset.zero_diagonal()
    assert dataset.note == "made" + 2 * "\nSet Diagonal value to 0"


def test_add():
    for shape in [(3, 5, 5), (7, 2, 5)]:
        a, b = cube(shape, 1), cube(shape, 2)
        dataset = cxc.Dataset.from_array(a)
        dataset.add(cxc.Dataset.from_array(b))
        expected = a + b
        # The library takes the grid for a square: columns beyond the row count stay.
        expected[:, :, shape[1] :] = a[:, :, shape[1] :]
        np.testing.assert_array_equal(dataset.to_array(), expected)


def test_add_refuses_other_slices_and_rows_and_changes_nothing():
    values = cube((3, 5, 5), 1)
    dataset = cxc.Dataset.from_array(values)
    for other in [(4, 5, 5), (3, 4, 4)]:
        with pytest.raises(cxc.CxcError):
            dataset.add(cxc.Dataset.from_array(cube(other, 2)))
    np.testing.assert_array_equal(dataset.to_array(), values)


def test_accumulate_time(values):
    slices, rows, columns = values.shape
    dataset = cxc.Dataset.from_array(values, channels=range(rows) if rows == columns else None)
    dataset.accumulate_time()
    expected = np.cumsum(values, axis=0)[-1:] / slices
    np.testing.assert_array_equal(dataset.to_array(), expected)
    assert dataset.selection == (0, 0)
    np.testing.assert_array_equal(dataset.backup(0, columns - 1), expected[:, 0, columns - 1])
    if rows == columns:
        assert dataset.channels_a[:, 0].tolist() == list(range(rows))
