"""Packages and groups: shared datasets, the library's operations, records."""

import gc
import struct
import threading
import time

import numpy as np
import pytest

import cxc


def dataset(shape, seed=1, **options):
    values = np.random.default_rng(seed).normal(size=shape)
    return cxc.Dataset.from_array(values, **options)


# ---- packages


def test_a_package_gives_back_what_was_put_in():
    package = cxc.Package()
    assert len(package) == 0 and list(package) == [] and package.active is None
    active, control = dataset((4, 3, 3)), dataset((1, 3, 3), 2)
    package.active = active
    package["control"] = control
    assert package.active == active and package[0] == active and package["active"] == active
    assert package[1] == control
    assert list(package) == [active, control] and len(package) == 2
    del package[0]
    assert package.active is None and len(package) == 1
    with pytest.raises(KeyError):
        package["mixed"]
    with pytest.raises(IndexError):
        package[3]


def test_datasets_outlive_their_package_and_packages_their_variables():
    values = np.random.default_rng(1).normal(size=(2, 3, 3))
    package = cxc.Package(active=cxc.Dataset.from_array(values))
    gc.collect()
    taken = package.active
    package.active = None
    del package
    gc.collect()
    np.testing.assert_array_equal(taken.to_array(), values)


def test_a_change_is_seen_everywhere():
    shared = dataset((2, 3, 3))
    package, group = cxc.Package(active=shared), cxc.Group([shared, shared])
    shared.zero_diagonal()
    assert package.active.value(0, 1, 1) == 0.0
    assert group[1].value(0, 2, 2) == 0.0


@pytest.mark.parametrize(
    "operation, combined",
    [
        ("subtract", np.subtract),
        ("add", np.add),
        ("multiply", np.multiply),
        ("divide", np.divide),
    ],
)
def test_combine_is_numpys_of_the_one_control_slice(operation, combined):
    active, control = dataset((5, 4, 4)), dataset((1, 4, 4), 2)
    package = cxc.Package(active, control)
    result = package.combine(operation)
    assert package.act_ctl == result
    np.testing.assert_array_equal(
        result.to_array(), combined(active.to_array(), control.to_array())
    )
    again = package.combine(operation)
    assert again == result  # the dataset in the slot is used again


def test_division_by_zero_of_either_sign_gives_zero():
    active = cxc.Dataset.from_array(np.ones((2, 2, 2)))
    control = cxc.Dataset.from_array([[[0.0, -0.0], [2.0, np.nan]]])
    result = cxc.Package(active, control).combine("divide").to_array()
    np.testing.assert_array_equal(result, [[[0, 0], [0.5, np.nan]]] * 2)


def test_a_control_of_several_slices_is_accumulated_only_when_allowed():
    active, control = dataset((5, 3, 3)), dataset((4, 3, 3), 2)
    package = cxc.Package(active, control)
    with pytest.raises(cxc.CxcError, match="requires Control dataset has 1 slice"):
        package.combine("subtract")
    assert len(control) == 4 and package.act_ctl is None
    mean = np.cumsum(control.to_array(), axis=0)[-1:] / 4
    result = package.combine("subtract", accumulate_control=True)
    assert len(control) == 1
    np.testing.assert_array_equal(result.to_array(), active.to_array() - mean)


def test_combining_what_does_not_fit_is_refused_in_the_librarys_words():
    with pytest.raises(cxc.CxcError, match="requires  both Active and Control"):
        cxc.Package(dataset((2, 3, 3))).combine("subtract")
    with pytest.raises(cxc.CxcError, match="have the same size"):
        cxc.Package(dataset((2, 3, 3)), dataset((1, 4, 4))).combine("subtract")
    with pytest.raises(ValueError):
        cxc.Package().combine("modulo")


def test_one_dataset_in_two_slots_is_safe():
    shared = dataset((1, 3, 3))
    package = cxc.Package(shared, shared)
    np.testing.assert_array_equal(package.combine("subtract").to_array(), np.zeros((1, 3, 3)))
    package.act_ctl = shared
    package.combine("add")
    del package
    gc.collect()
    assert shared.shape == (1, 3, 3)


def test_selections_are_matched_as_the_library_does():
    package = cxc.Package(dataset((30, 2, 2)), dataset((100, 2, 2)))
    assert package.match_selections((10, 20), (5, 8)) == ((10, 20), (1, 11))
    with pytest.raises(cxc.CxcError, match="selected data range is wrong"):
        package.match_selections((3, 3), (5, 2))


def test_a_package_comes_back_from_its_file(tmp_path):
    package = cxc.Package(dataset((3, 2, 2), name="a"), None, dataset((3, 2, 2), 2, name="x"))
    package.name, package.info, package.id, package.show = "näme", "info", 7, True
    package.current = 2
    path = tmp_path / "p.cxcpkg"
    package.save(path)
    again = cxc.Package.open(path)
    assert [d.name for d in again] == ["a", "x"] and again.control is None
    assert (again.name, again.info, again.id, again.show) == ("näme", "info", 7, True)
    assert again.current == 2
    np.testing.assert_array_equal(again.act_ctl.to_array(), package.act_ctl.to_array())
    again.save(tmp_path / "q.cxcpkg")
    assert (tmp_path / "q.cxcpkg").read_bytes() == path.read_bytes()
    with pytest.raises(cxc.CxcError, match="Unknown Coherence file!"):
        cxc.Group.open(path)


def test_an_empty_package_has_exactly_these_bytes(tmp_path):
    path = tmp_path / "p.cxcpkg"
    cxc.Package().save(path)

    def text(value):
        return b"\xff\xfe\xff" + bytes([len(value)]) + value.encode("utf-16-le")

    assert path.read_bytes() == (
        text("SNSCOHFACE")
        + struct.pack("<Ii3i", 20121016, -1, 0, 0, 0)
        + struct.pack("<i", 0)
        + text("SnsCohFace")
        + text("Unknown")
        + b"\0"
    )


def test_a_file_cut_anywhere_raises_and_leaves_the_datasets_valid(tmp_path):
    package = cxc.Package(dataset((2, 2, 2)), dataset((1, 2, 2)))
    whole = tmp_path / "whole"
    package.save(whole)
    data = whole.read_bytes()
    cut = tmp_path / "cut"
    for size in range(0, len(data), 11):
        cut.write_bytes(data[:size])
        with pytest.raises(cxc.CxcError):
            cxc.Package.open(cut)
    assert len(package) == 2


# ---- groups


def test_a_group_is_a_sequence():
    a, b, c = (dataset((2, 3, 3), k) for k in range(3))
    group = cxc.Group([a])
    group.append(b)
    group.extend([None, c])
    assert len(group) == 4 and group[0] == a and group[-1] == c and group[2] is None
    assert group[:2] == [a, b] and list(group) == [a, b, None, c]
    group[2] = a
    del group[0]
    assert list(group) == [b, a, c]
    with pytest.raises(IndexError):
        group[3]
    group.clear()
    assert len(group) == 0 and group.current == -1


def test_average_is_the_ordered_mean_and_is_appended():
    members = [dataset((4, 3, 3), k) for k in range(5)]
    group = cxc.Group(members)
    group.current = 0
    result = group.average()
    total = np.zeros((4, 3, 3))
    for member in members:
        total += member.to_array()
    np.testing.assert_array_equal(result.to_array(), total / 5)
    assert result.name == "Average5 Result"
    assert len(group) == 6 and group[-1] == result


def test_smaller_datasets_count_as_zeros():
    large, small = dataset((4, 3, 3)), dataset((2, 3, 3), 2)
    group = cxc.Group([large, None, small])
    result = group.average().to_array()
    np.testing.assert_array_equal(result[2:], large.to_array()[2:] / 2)
    np.testing.assert_array_equal(result[:2], (large.to_array()[:2] + small.to_array()) / 2)


def test_summary_is_minimum_mean_maximum():
    members = [dataset((3, 2, 2), k) for k in range(4)]
    group = cxc.Group(members)
    low, mean, high = group.summary()
    arrays = np.array([member.to_array() for member in members])
    np.testing.assert_array_equal(low.to_array(), arrays.min(axis=0))
    np.testing.assert_array_equal(high.to_array(), arrays.max(axis=0))
    np.testing.assert_array_equal(mean.to_array(), np.cumsum(arrays, axis=0)[-1] / 4)
    assert [d.name for d in (low, mean, high)] == ["Cxc4 Minimum", "Cxc4 Mean", "Cxc4 Max"]


def test_nothing_to_average_is_an_error_and_changes_nothing():
    for group in (cxc.Group(), cxc.Group([None]), cxc.Group([cxc.Dataset()])):
        count = len(group)
        with pytest.raises(cxc.CxcError):
            group.average()
        with pytest.raises(cxc.CxcError):
            group.summary()
        assert len(group) == count


def test_a_group_comes_back_from_its_file_without_its_gaps(tmp_path):
    group = cxc.Group([dataset((2, 2, 2), name="a"), None, dataset((3, 2, 2), name="b")])
    group.name, group.current = "all", 2
    path = tmp_path / "g.cxcgrp"
    group.save(path)
    again = cxc.Group.open(path)
    assert [d.name for d in again] == ["a", "b"]
    assert again.name == "all" and again.current == 2
    np.testing.assert_array_equal(again[1].to_array(), group[2].to_array())
    with pytest.raises(cxc.CxcError, match="Unknown Coherence file!"):
        cxc.Package.open(path)


def test_datasets_outlive_their_group():
    group = cxc.Group([dataset((2, 3, 3), k) for k in range(3)])
    result = group.average()
    del group
    gc.collect()
    assert result.shape == (2, 3, 3)


# ---- other threads


def beside(work, meddle, delay):
    """Calls `meddle` while another thread is, most likely, in `work`.

    Returns what `work` made; None when `meddle` came first and nothing was left for it.
    """
    results = []

    def run():
        try:
            results.append(work())
        except cxc.CxcError:
            results.append(None)

    thread = threading.Thread(target=run)
    thread.start()
    time.sleep(delay)
    meddle()
    gc.collect()
    thread.join()
    return results[0]


def test_a_package_may_be_emptied_while_another_thread_combines_it():
    for k in range(8):
        package = cxc.Package(dataset((200, 80, 80)), dataset((1, 80, 80), 2))
        expected = package.active.to_array() - package.control.to_array()

        def meddle():
            package.active = package.control = None

        result = beside(lambda: package.combine("subtract"), meddle, 0.0005 * k)
        assert package.active is None and package.control is None and package.act_ctl == result
        if result is not None:
            np.testing.assert_array_equal(result.to_array(), expected)


def test_a_group_may_be_emptied_while_another_thread_averages_it():
    arrays = np.random.default_rng(1).normal(size=(20, 40, 60, 60))
    expected = np.cumsum(arrays, axis=0)[-1] / 20
    for k in range(8):
        group = cxc.Group(cxc.Dataset.from_array(values) for values in arrays)
        result = beside(group.average, group.clear, 0.001 * k)
        assert len(group) == 0
        if result is not None:
            np.testing.assert_array_equal(result.to_array(), expected)


def test_what_another_thread_appends_while_a_group_is_averaged_is_a_member():
    for k in range(8):
        group = cxc.Group(dataset((40, 60, 60), n) for n in range(12))
        late = dataset((1, 2, 2))
        result = beside(group.average, lambda: group.append(late), 0.001 * k)
        assert len(group) == 14 and late in list(group) and result in list(group)
        assert result.name == "Average12 Result" or group[12] == late


def test_two_threads_may_combine_one_package():
    active, control = dataset((100, 60, 60)), dataset((1, 60, 60), 2)
    package = cxc.Package(active, control)
    a, c = active.to_array(), control.to_array()
    for _ in range(10):
        results = [None, None]

        def combine(k, operation):
            for _ in range(5):
                package.act_ctl = None
                results[k] = package.combine(operation)

        first = threading.Thread(target=combine, args=(0, "add"))
        second = threading.Thread(target=combine, args=(1, "multiply"))
        first.start(), second.start()
        first.join(), second.join()
        sums = [np.array_equal(result.to_array(), a + c) for result in results]
        products = [np.array_equal(result.to_array(), a * c) for result in results]
        assert all(s or p for s, p in zip(sums, products))
