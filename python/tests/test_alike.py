"""What is taken together by position is compared, and results say what they were made from."""

import warnings

import numpy as np
import pytest

import cxc


def dataset(**other):
    told = {"sampling_rate": 2.0, "latency": (1.0, 2.5), "band": (8.0, 13.0), "name": "a"}
    values = np.full((4, 2, 2), 0.5)
    made = cxc.Dataset.from_array(values, **{**told, "note": "Sensors: 1 Fz, 2 Cz", **other})
    return made


def told_by(call):
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        result = call()
    return result, [str(w.message) for w in caught]


def test_datasets_that_agree_are_averaged_without_a_word():
    average, told = told_by(cxc.Group([dataset(), None, dataset(name="b")]).average)
    assert told == []
    assert average.band == (8.0, 13.0)
    assert average.latency == (1.0, 2.5)
    assert average.sampling_rate == 2.0
    assert average.sensors == ["Fz", "Cz"]
    assert average.note.startswith("Mean of 2 datasets, value by value\n")
    assert average.selection == (0, 3)
    assert average.name == "Average2 Result"


@pytest.mark.parametrize(
    "other, what",
    [
        ({"band": (4.0, 8.0)}, "band (4 to 8 Hz, not 8 to 13 Hz)"),
        ({"latency": (0.0, 1.5)}, "latency (0 to 1.5, not 1 to 2.5)"),
        ({"sampling_rate": 1.0}, "slices per second (1, not 2)"),
        ({"note": "Sensors: 1 Fz, 2 Pz"}, "the names of its sensors"),
    ],
)
def test_each_difference_is_warned_of(other, what):
    group = cxc.Group([dataset(), None, dataset(**other)])
    for call in (group.average, group.summary):
        _, told = told_by(call)
        assert told[0].startswith(f"dataset 2 differs from dataset 0 in {what};")
        group = cxc.Group([dataset(), None, dataset(**other)])


def test_the_three_of_a_summary_are_described_each():
    made, told = told_by(cxc.Group([dataset(), dataset()]).summary)
    assert told == []
    assert [one.note.split(" ")[0] for one in made] == ["Minimum", "Mean", "Maximum"]
    assert all(one.band == (8.0, 13.0) for one in made)


def test_what_was_combined_has_the_description_of_active():
    control = dataset(latency=(0.0, 9.0), sampling_rate=1.0)
    package = cxc.Package(dataset(), control)
    made, told = told_by(lambda: package.combine("subtract", accumulate_control=True))
    assert told == []
    assert (made.band, made.latency, made.sampling_rate) == ((8.0, 13.0), (1.0, 2.5), 2.0)
    assert made.sensors == ["Fz", "Cz"]
    assert made.note.startswith(
        "Active subtract Control, Control being the mean of its 4 slices\n"
    )


def test_a_control_of_another_band_is_warned_of():
    package = cxc.Package(dataset(), dataset(band=(1.0, 4.0))[:1])
    _, told = told_by(lambda: package.combine("divide"))
    assert told == [
        "control differs from active in band (1 to 4 Hz, not 8 to 13 Hz); "
        "pairs are taken by position"
    ]
