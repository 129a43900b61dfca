"""Results over datasets that come one after another are those over all of them at once."""

import numpy as np
import pytest

import cxc
from cxc.across import Summary, group_file


def datasets():
    """Of different extents, a different value in every cell, NaN among them."""
    random = np.random.default_rng(7)
    made = []
    for number, shape in enumerate([(3, 2, 5), (7, 3, 5), (1, 3, 2)]):
        values = random.normal(size=shape)
        if number == 1:
            values[2, 1, 3] = np.nan
        made.append(cxc.Dataset.from_array(values, name=f"D{number}", band=(8, 13)))
    return made


def test_a_running_summary_is_the_summary_of_the_group():
    summary = Summary(7, 3, 5)
    for dataset in datasets():
        summary.take(dataset)
    for made, expected in zip(summary.finish(), cxc.Group(datasets()).summary()):
        assert made.to_array().tobytes() == expected.to_array().tobytes()
    with pytest.raises(cxc.CxcError, match="finished"):
        summary.take(datasets()[0])


def test_one_dataset_is_its_own_mean():
    summary = Summary(3, 2, 5)
    summary.take(datasets()[0])
    for made in summary.finish():
        np.testing.assert_array_equal(made.to_array(), datasets()[0].to_array())


def test_sizes_that_are_none_are_refused():
    with pytest.raises(cxc.CxcError):
        Summary(0, 2, 2)


def test_a_group_written_one_by_one_is_the_file_of_a_group(tmp_path):
    group = cxc.Group(datasets())
    group.name, group.current = "Gruppe \U0001f9e0", 2
    group.save(tmp_path / "whole.cxcgrp")
    with group_file(tmp_path / "parts.cxcgrp", 3, name=group.name, current=2) as append:
        for dataset in datasets():
            append(dataset)
    assert (tmp_path / "parts.cxcgrp").read_bytes() == (tmp_path / "whole.cxcgrp").read_bytes()


def test_a_group_that_is_not_complete_is_not_left(tmp_path):
    with pytest.raises(ValueError, match="2 datasets for a group of 3"):
        with group_file(tmp_path / "g.cxcgrp", 3, name="") as append:
            for dataset in datasets()[:2]:
                append(dataset)
    with pytest.raises(KeyboardInterrupt):
        with group_file(tmp_path / "g.cxcgrp", 1, name="") as append:
            append(datasets()[0])
            raise KeyboardInterrupt
    assert list(tmp_path.iterdir()) == []
