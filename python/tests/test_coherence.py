"""Coherence against SciPy's own for one pair, and where there is no signal."""

import numpy as np
import pytest
from scipy import signal

import cxc
from cxc.coherence import coherence, make_plan
from cxc.errors import CommandError

RATE = 200.0


def samples(sensors=4, seconds=10.0, seed=1):
    random = np.random.default_rng(seed)
    common = random.standard_normal(round(seconds * RATE))
    return 0.7 * common + random.standard_normal((sensors, common.size))


@pytest.mark.parametrize("overlap, taper", [(0.5, "hann"), (0.0, "boxcar"), (0.75, "hamming")])
def test_each_pair_is_scipys(overlap, taper):
    data = samples()
    plan = make_plan(
        RATE, data.shape[1], band=(5, 20), window=4, step=1, segment=1, overlap=overlap, taper=taper
    )
    values = coherence(data, plan)
    for t in range(plan.slices):
        part = data[:, plan.begin(t) : plan.begin(t) + plan.window]
        for a in range(4):
            for b in range(4):
                f, expected = signal.coherence(
                    part[a],
                    part[b],
                    fs=RATE,
                    window=taper,
                    nperseg=plan.segment,
                    noverlap=plan.segment - plan.hop,
                    detrend="constant",
                )
                inside = (f >= 5) & (f <= 20)
                assert values[t, a, b] == pytest.approx(expected[inside].mean(), abs=1e-12)


def test_slices_are_symmetric_with_a_diagonal_of_one_and_lie_between_0_and_1():
    data = samples(7)
    values = coherence(data, make_plan(RATE, data.shape[1]))
    np.testing.assert_array_equal(values, values.transpose(0, 2, 1))
    np.testing.assert_array_equal(np.diagonal(values, axis1=1, axis2=2), 1.0)
    assert values.min() >= 0.0 and values.max() <= 1.0


@pytest.mark.parametrize("points", [800, 801, 999, 1000, 1001, 1999, 2000])
def test_there_are_exactly_as_many_slices_as_the_library_says(points):
    plan = make_plan(RATE, points, window=4, step=1)
    assert plan.slices == cxc.slice_count(points, 200, 800)
    assert plan.begin(plan.slices - 1) + plan.window <= points
    data = samples(3, points / RATE)
    assert coherence(data, plan).shape == (plan.slices, 3, 3)


def test_a_last_window_that_would_pass_the_end_is_moved_back():
    data = samples(2, 4.6)
    plan = make_plan(RATE, data.shape[1], window=4, step=1)
    assert plan.slices == 2 and plan.shifted == 80
    values = coherence(data, plan)
    tail = make_plan(RATE, 800, window=4, step=1)
    np.testing.assert_array_equal(values[1], coherence(data[:, -800:], tail)[0])


def test_coherence_does_not_depend_on_scale():
    data = samples(3)
    plan = make_plan(RATE, data.shape[1])
    scaled = data * np.array([[1e-13], [1.0], [1e9]])
    np.testing.assert_allclose(coherence(scaled, plan), coherence(data, plan), atol=1e-12)


def test_no_signal_is_zero_and_never_nan():
    data = samples(4)
    data[1] = 0.0
    data[2] = 5.0
    data[3, 900] = np.nan
    plan = make_plan(RATE, data.shape[1], window=4, step=4)
    values = coherence(data, plan)
    assert np.isfinite(values).all()
    assert not values[:, 1].any() and not values[:, :, 2].any()
    assert values[0, 0, 3] > 0.0  # the sample that is no number lies in the second window
    assert values[1, 0, 3] == 0.0 and values[1, 3, 3] == 0.0


@pytest.mark.parametrize(
    "options, words",
    [
        ({"window": 11}, "longer than the recording"),
        ({"band": (20, 101)}, "half the recording's sampling rate"),
        ({"band": (20, 10)}, "not a range"),
        ({"band": (8.1, 8.2)}, "no frequency bin"),
        ({"overlap": 1.0}, "overlap"),
        ({"overlap": -0.1}, "overlap"),
        ({"taper": "nonsense"}, "unknown taper"),
        ({"step": 0}, "step"),
        ({"window": float("nan")}, "window"),
        ({"segment": 4, "window": 4}, "fewer than two segments"),
    ],
)
def test_options_that_do_not_fit_are_named(options, words):
    with pytest.raises(CommandError, match=words):
        make_plan(RATE, 2000, **options)
