"""Pictures: what is drawn is what was given."""

import numpy as np
import pytest

from cxc import plot


def matrix(count, seed=1):
    values = np.random.default_rng(seed).uniform(size=(count, count))
    return (values + values.T) / 2


@pytest.mark.parametrize("count", [2, 19, 64])
@pytest.mark.parametrize("draw", [plot.heatmap, plot.circle])
def test_pictures_are_written_whole_for_few_and_many_sensors(tmp_path, draw, count):
    path = tmp_path / "a.png"
    draw(matrix(count), [f"S{i}" for i in range(count)], str(path), title="title")
    assert path.read_bytes().startswith(b"\x89PNG")
    assert [entry.name for entry in tmp_path.iterdir()] == ["a.png"]


def test_values_that_are_no_numbers_and_zeros_are_borne(tmp_path):
    values = np.zeros((3, 3))
    values[0, 1] = values[1, 0] = np.nan
    for draw in (plot.heatmap, plot.circle):
        draw(values, ["A", "B", "C"], str(tmp_path / "a.png"), title="t", signed=True)


def test_the_strongest_pairs_come_first():
    values = np.array([[1.0, 0.1, 0.9], [0.1, 1.0, 0.5], [0.9, 0.5, 1.0]])
    assert {tuple(sorted(map(int, pair))) for pair in plot._strongest(values, 2)} == {
        (0, 2),
        (1, 2),
    }
