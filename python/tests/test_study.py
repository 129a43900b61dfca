"""The study command: subjects found, combined, averaged and reported; uneven lengths said."""

import os

import mne
import numpy as np
import pytest

import cxc
from cxc.cli import main
from cxc.coherence import coherence, make_plan
from cxc.errors import CommandError
from cxc.study import Subject, subjects_of

RATE = 100.0
OPTIONS = ["--window", "2", "--step", "1", "--segment", "0.5"]


def write(path, seed, seconds, names=("Fp1", "Fp2", "O1")):
    data = np.random.default_rng(seed).normal(size=(len(names), int(seconds * RATE)))
    data += 0.5 * data[0]
    info = mne.create_info(list(names), RATE, "eeg", verbose="ERROR")
    mne.io.RawArray(data * 1e-6, info, verbose="ERROR").save(
        path, fmt="double", overwrite=True, verbose="ERROR"
    )
    return data * 1e-6


@pytest.fixture
def folder(tmp_path):
    """Two subjects, the second shorter."""
    made = tmp_path / "data"
    made.mkdir()
    samples = {}
    for name, seconds in [("s1", 8), ("s2", 5)]:
        for k, role in enumerate(("control_eeg", "active_eeg")):
            path = made / f"{name}_{role}.fif"
            samples[name, role] = write(path, k + seconds, seconds)
    return made, samples


def suffixes():
    return ["--active-suffix", "_active_eeg", "--control-suffix", "_control_eeg"]


def values_of(samples):
    plan = make_plan(RATE, samples.shape[1], window=2, step=1, segment=0.5)
    return coherence(samples, plan)


def test_a_study_is_what_numpy_makes_of_it(folder, tmp_path, capsys):
    data, samples = folder
    out = tmp_path / "out"
    assert main(["study", str(data), "--out", str(out), *suffixes(), *OPTIONS]) == 0
    assert "2 subjects, 3 sensors, 7 slices" in capsys.readouterr().out
    expected = []
    for name in ("s1", "s2"):
        package = cxc.Package.open(out / f"{name}.cxcpkg")
        active = values_of(samples[name, "active_eeg"])
        control = values_of(samples[name, "control_eeg"])
        mean = np.cumsum(control, axis=0)[-1:] / len(control)
        np.testing.assert_allclose(package.active.to_array(), active, atol=1e-12)
        combined = package.active.to_array() - package.control.to_array()
        np.testing.assert_array_equal(package.act_ctl.to_array(), combined)
        np.testing.assert_allclose(package.control.to_array(), mean, atol=1e-12)
        assert package.act_ctl.name == f"{name} Act-Ctl"
        assert package.act_ctl.channels_a[:, 0].tolist() == [1, 2, 3]
        expected.append(combined)
    total = expected[0].copy()
    total[:4] += expected[1]
    average = cxc.open(out / "average.cxc")
    np.testing.assert_array_equal(average.to_array(), total / 2)
    group = cxc.Group.open(out / "group.cxcgrp")
    assert [d.name for d in group] == [
        "s1 Act-Ctl",
        "s2 Act-Ctl",
        "Average2 Result",
        "Cxc2 Minimum",
        "Cxc2 Mean",
        "Cxc2 Max",
    ]
    np.testing.assert_array_equal(group[4].to_array(), total / 2)


def test_the_report_names_everything_and_says_where_zeros_count(folder, tmp_path):
    data, _ = folder
    out = tmp_path / "out"
    assert main(["study", str(data), "--out", str(out), *suffixes(), *OPTIONS]) == 0
    report = (out / "report.md").read_text()
    for words in (
        "| s1 | s1_active_eeg.fif | 7 |",
        "1 Fp1, 2 Fp2, 3 O1",
        "count as zeros",
        "- s2: 4 slices, zero in slices 5 to 7",
    ):
        assert words in report
    assert sorted(os.listdir(out)) == [
        "average-circle.png",
        "average-heatmap.png",
        "average.cxc",
        "group.cxcgrp",
        "report.md",
        "s1-heatmap.png",
        "s1.cxcpkg",
        "s2-heatmap.png",
        "s2.cxcpkg",
        "subjects.json",
    ]


def test_all_pictures_share_one_colour_scale(folder, tmp_path, monkeypatch):
    data, _ = folder
    drawn = []

    def note(values, labels, path, *, top, **options):
        drawn.append((os.path.basename(path), np.abs(values).max(), top))

    monkeypatch.setattr("cxc.plot.heatmap", note)
    monkeypatch.setattr("cxc.plot.circle", note)
    assert main(["study", str(data), "--out", str(tmp_path / "out"), *suffixes(), *OPTIONS]) == 0
    assert [name for name, _, _ in drawn] == [
        "s1-heatmap.png",
        "s2-heatmap.png",
        "average-heatmap.png",
        "average-circle.png",
    ]
    tops = {top for _, _, top in drawn}
    assert len(tops) == 1 and tops.pop() >= max(largest for _, largest, _ in drawn)


def test_a_csv_names_the_subjects(folder, tmp_path):
    data, _ = folder
    table = data / "subjects.csv"
    table.write_text(
        "subject,active,control\n"
        "Anna,s2_active_eeg.fif,s2_control_eeg.fif\n"
        "Bob,s1_active_eeg.fif,s1_control_eeg.fif\n"
    )
    out = tmp_path / "out"
    assert main(["study", str(table), "--out", str(out), *OPTIONS]) == 0
    group = cxc.Group.open(out / "group.cxcgrp")
    assert [d.name for d in group][:2] == ["Anna Act-Ctl", "Bob Act-Ctl"]


def test_folders_and_tables_that_do_not_fit_are_named(tmp_path):
    def refused(source, words):
        with pytest.raises(CommandError, match=words):
            subjects_of(str(source))

    refused(tmp_path / "missing.csv", "No such file")
    refused(tmp_path, "no recordings named")
    (tmp_path / "a_1.edf").touch()
    refused(tmp_path, "a has no active recording")
    (tmp_path / "a_2.edf").touch()
    assert [s.name for s in subjects_of(str(tmp_path))] == ["a"]
    for name in ("b c_1.edf", "b c_2.edf", "b_c_1.edf", "b_c_2.edf"):
        (tmp_path / name).touch()
    refused(tmp_path, "b_c stands more than once")
    for name in ("b c_1.edf", "b c_2.edf"):
        (tmp_path / name).unlink()
    (tmp_path / "a_2.bdf").touch()
    refused(tmp_path, "second active")
    table = tmp_path / "t.csv"
    table.write_text("subject,active,control\n")
    refused(table, "no subjects")
    table.write_text("subject,active,control\nA,x.edf,\n")
    refused(table, "line 2: no control")
    table.write_text("subject,active,control\nA,x,y\nA,x,y\n")
    refused(table, "more than once")
    table.write_text("subject,active,control\nA,x,y\naverage,x,y\n")
    refused(table, "name average is kept")
    table.write_bytes(b"\xff\xfe\x00\x00")
    refused(table, "not a CSV file")
    table.write_text("subject,active,control\nA,x.edf,/y.edf\n")
    assert subjects_of(str(table)) == [Subject("A", str(tmp_path / "x.edf"), "/y.edf")]


def test_subjects_with_other_sensors_are_not_averaged_by_position(tmp_path, capsys):
    data = tmp_path / "data"
    data.mkdir()
    for name, names in [("a", ("Fp1", "Fp2", "O1")), ("b", ("Fp1", "Fp2", "O2"))]:
        for suffix in ("_1", "_2"):
            # FIF names end in "_eeg"; the suffix is what the folder is searched for.
            write(data / f"{name}{suffix}_eeg.fif", 1, 5, names)
    arguments = ["--active-suffix", "_2_eeg", "--control-suffix", "_1_eeg", *OPTIONS]
    assert main(["study", str(data), "--out", str(tmp_path / "out"), *arguments]) == 1
    error = capsys.readouterr().err
    assert error.count("\n") == 1 and "O2" in error and "differ in their sensors" in error
