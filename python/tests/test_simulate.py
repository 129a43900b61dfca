"""python -m cxc simulate: recordings of several subjects with known coupling."""

import os

import numpy as np
import pytest

from cxc import simulate
from cxc.cli import main
from cxc.compute import compute
from cxc.recording import open_recording
from cxc.study import subjects_of_folder


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    folder = tmp_path_factory.mktemp("simulated") / "recordings"
    assert main(["simulate", str(folder), "--subjects", "3"]) == 0
    return folder


def test_a_study_finds_its_subjects(folder):
    found = subjects_of_folder(str(folder))
    assert [subject.name for subject in found] == ["S01", "S02", "S03"]
    assert os.path.basename(found[1].active) == "S02_2.fif"
    assert os.path.basename(found[1].control) == "S02_1.fif"
    assert len(os.listdir(folder)) == 6
    assert all(entry.stat().st_size < 300_000 for entry in os.scandir(folder))


def test_the_coupling_is_as_the_help_says(folder):
    labels = list(simulate.LABELS)
    known = {
        simulate.STUDY_BOTH: (True, True),
        simulate.STUDY_ACTIVE: (True, False),
        simulate.STUDY_CONTROL: (False, True),
    }
    pairs = {tuple(sorted(map(labels.index, pair))): where for pair, where in known.items()}
    for subject in subjects_of_folder(str(folder)):
        for which, path in enumerate((subject.active, subject.control)):
            mean = compute(path).values.mean(axis=0)
            coupled = {pair: mean[pair] for pair, where in pairs.items() if where[which]}
            others = [mean[r, c] for c in range(16) for r in range(c) if (r, c) not in coupled]
            assert min(coupled.values()) > 0.4, path
            assert max(others) < 0.3, path


def test_power_does_not_tell_the_conditions_apart(folder):
    for subject in subjects_of_folder(str(folder))[:2]:
        power = []
        for path in (subject.active, subject.control):
            recording = open_recording(path)
            power.append(recording.read(0, recording.points).var(axis=1))
        np.testing.assert_allclose(power[0], power[1], rtol=0.15)


def test_only_active_of_the_last_is_shorter(folder):
    seconds = {
        entry.name: open_recording(entry.path).seconds for entry in os.scandir(folder)
    }
    assert seconds.pop("S03_2.fif") == 24.0
    assert set(seconds.values()) == {30.0}


def test_a_single_subject_is_not_shortened(tmp_path, capsys):
    assert main(["simulate", str(tmp_path), "--subjects", "1"]) == 0
    assert open_recording(tmp_path / "S01_2.fif").seconds == 30.0
    assert capsys.readouterr().out == f"{tmp_path}: 2 recordings of 1 subject\n"


def test_the_ecg_is_left_out(folder):
    recording = open_recording(folder / "S01_1.fif")
    assert recording.labels == list(simulate.LABELS)
    assert recording.left_out == [("ECG", "type ecg")]


def test_a_subject_is_the_same_however_many_there_are(folder, tmp_path):
    assert main(["simulate", str(tmp_path), "--subjects", "2"]) == 0
    one, other = (open_recording(path / "S01_2.fif") for path in (folder, tmp_path))
    np.testing.assert_array_equal(one.read(0, 3000), other.read(0, 3000))
    np.testing.assert_allclose(
        one.read(0, 3000), simulate.simulate_subject(1, True), rtol=1e-6, atol=1e-12
    )


def test_conditions_and_subjects_have_noise_of_their_own():
    one = simulate.simulate_subject(1, True)
    for other in (simulate.simulate_subject(1, False), simulate.simulate_subject(2, True)):
        assert np.abs(np.corrcoef(one[0], other[0])[0, 1]) < 0.1


def test_existing_recordings_are_replaced_only_by_force(tmp_path, capsys):
    kept = tmp_path / "S02_1.fif"
    kept.write_bytes(b"precious")
    arguments = ["simulate", str(tmp_path), "--subjects", "2"]
    assert main(arguments) == 1
    said = capsys.readouterr()
    assert said.out == "" and "--force" in said.err and "S02_1.fif" in said.err
    assert os.listdir(tmp_path) == ["S02_1.fif"] and kept.read_bytes() == b"precious"
    assert main([*arguments, "--force"]) == 0
    assert capsys.readouterr().out == f"{tmp_path}: 4 recordings of 2 subjects\n"
    assert open_recording(kept).seconds == 30.0


@pytest.mark.parametrize("count", ["0", "-1", "many"])
def test_a_number_of_subjects_is_needed(tmp_path, capsys, count):
    with pytest.raises(SystemExit) as ended:
        main(["simulate", str(tmp_path), "--subjects", count])
    assert ended.value.code == 2


def test_a_file_in_place_of_the_folder_is_told(tmp_path, capsys):
    (tmp_path / "f").write_text("")
    assert main(["simulate", str(tmp_path / "f")]) == 1
    assert "f:" in capsys.readouterr().err
