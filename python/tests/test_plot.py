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


def test_sensors_stand_on_the_circle_as_on_the_head():
    labels = ["O2", "Fz", "T7", "Fp1", "Pz", "Fp2", "T8", "O1"]
    angles = plot._angles(labels)
    x, y = np.cos(angles), np.sin(angles)
    at = labels.index
    assert y.argmax() == at("Fz") and y.argmin() == at("Pz")
    assert all(x[at(left)] < -0.1 for left in ("Fp1", "T7", "O1"))
    assert all(x[at(right)] > 0.1 for right in ("Fp2", "T8", "O2"))
    for left, right in (("Fp1", "Fp2"), ("T7", "T8"), ("O1", "O2")):
        assert x[at(left)] == pytest.approx(-x[at(right)])
        assert y[at(left)] == pytest.approx(y[at(right)])
    np.testing.assert_allclose(np.diff(np.sort(angles)), np.pi / 4)


def test_lines_of_neighbours_stay_near_the_rim_and_of_opposites_cross_the_middle():
    def depth(degrees):
        angle = np.radians(degrees)
        bend = plot._bend(np.array([1.0, 0.0]), np.array([np.cos(angle), np.sin(angle)]))
        return np.hypot(*bend)

    depths = [depth(degrees) for degrees in (6, 45, 90, 135, 180)]
    assert depths == sorted(depths, reverse=True)
    assert depths[0] > 0.75 and depths[-1] < 1e-6


def test_older_names_of_sites_stand_where_the_newer_ones_do():
    newer = ["F7", "T7", "C3", "P7", "P3", "O1", "F8", "T8", "C4", "P8", "P4", "O2"]
    older = ["F7", "T3", "C3", "T5", "P3", "O1", "F8", "T4", "C4", "T6", "P4", "O2"]
    np.testing.assert_array_equal(plot._angles(older), plot._angles(newer))
    heights = np.sin(plot._angles(older))
    assert heights[older.index("C3")] > heights[older.index("T5")]
