"""The commands as a user runs them: files made, one line on errors, nothing half-written."""

import os
import subprocess
import sys

import mne
import numpy as np
import pytest

import cxc
from cxc import simulate
from cxc.cli import main


def write_recording(path, data, rate=100.0, names=None, types="eeg"):
    names = names or [f"E{i}" for i in range(data.shape[0])]
    info = mne.create_info(names, rate, types, verbose="ERROR")
    raw = mne.io.RawArray(data * 1e-6, info, verbose="ERROR")
    raw.save(path, overwrite=True, verbose="ERROR")


@pytest.fixture
def recording(tmp_path):
    path = tmp_path / "rest_eeg.fif"
    write_recording(path, np.random.default_rng(1).normal(size=(5, 1000)))
    return path


def failed(capsys, *arguments):
    """The one line of an error."""
    assert main([str(argument) for argument in arguments]) == 1
    out, err = capsys.readouterr()
    assert out == ""
    lines = err.strip().splitlines()
    assert len(lines) == 1 and lines[0].startswith("cxc: "), err
    return lines[0]


def test_compute_writes_a_described_dataset(recording, tmp_path, capsys):
    output = tmp_path / "rest.cxc"
    arguments = ["--band", "5", "15", "--window", "2", "--step", "0.5", "--segment", "0.5"]
    assert main(["compute", str(recording), "-o", str(output), *arguments]) == 0
    out, err = capsys.readouterr()
    assert "17 slices of 5 x 5 sensors" in out and err == ""
    dataset = cxc.open(output)
    assert dataset.shape == (cxc.slice_count(1000, 50, 200), 5, 5)
    assert dataset.sampling_rate == 2.0
    assert dataset.band == (5.0, 15.0)
    assert dataset.latency == (1.0, 9.0)
    assert dataset.channel_type == 2
    assert dataset.name == "rest_eeg"
    assert dataset.channels_a[:, 0].tolist() == [1, 2, 3, 4, 5]
    assert dataset.header.largest_slice_count == 17
    for words in ("rest_eeg.fif", "5 to 15 Hz", "Window: 2 s", "hann", "1 E0", cxc.__version__):
        assert words in dataset.note
    assert sorted(os.listdir(tmp_path)) == ["rest.cxc", "rest_eeg.fif"]


def test_the_default_output_stands_in_the_current_folder(recording, tmp_path, monkeypatch):
    folder = tmp_path / "work"
    folder.mkdir()
    monkeypatch.chdir(folder)
    assert main(["compute", str(recording)]) == 0
    assert os.listdir(folder) == ["rest_eeg.cxc"]


def test_an_existing_output_is_replaced_only_by_force(recording, tmp_path, capsys):
    output = tmp_path / "out.cxc"
    output.write_bytes(b"precious")
    assert "--force" in failed(capsys, "compute", recording, "-o", output)
    assert output.read_bytes() == b"precious"
    assert main(["compute", str(recording), "-o", str(output), "--force"]) == 0
    assert len(cxc.open(output)) > 0


def test_bad_recordings_are_one_line_each(tmp_path, capsys):
    out = tmp_path / "out.cxc"
    noise = np.random.default_rng(1).normal(size=(3, 1000))
    garbage = tmp_path / "garbage.edf"
    garbage.write_bytes(b"nothing of the kind" * 100)
    empty = tmp_path / "empty.edf"
    empty.write_bytes(b"")
    unknown = tmp_path / "notes.txt"
    unknown.write_text("hello")
    hearts = tmp_path / "hearts_raw.fif"
    write_recording(hearts, noise, types="ecg")
    named = tmp_path / "named_raw.fif"
    write_recording(named, noise, names=["ECG ECG", "EEG A2-A1", "EOG left"])
    single = tmp_path / "single_raw.fif"
    write_recording(single, noise[:1])
    short = tmp_path / "short_raw.fif"
    write_recording(short, noise[:, :300])
    for path, words in [
        (tmp_path / "missing.edf", "no such file"),
        (tmp_path, "is a directory"),
        (garbage, "garbage.edf"),
        (empty, "empty.edf"),
        (unknown, "notes.txt"),
        (hearts, "no EEG or MEG sensors"),
        (named, "no EEG or MEG sensors"),
        (single, "only one sensor"),
        (short, "longer than the recording"),
    ]:
        assert words in failed(capsys, "compute", path, "-o", out)
        assert not out.exists()


def test_bad_outputs_are_found_before_the_work(recording, tmp_path, capsys):
    for output, words in [
        (tmp_path / "no" / "a.cxc", "no such folder"),
        (tmp_path, "is a folder"),
        (recording / "a.cxc", "not a folder"),
    ]:
        assert words in failed(capsys, "compute", recording, "-o", output)


def test_force_does_not_replace_pipes_and_devices(recording, tmp_path, capsys):
    pipe = tmp_path / "pipe.cxc"
    os.mkfifo(pipe)
    assert "device or a pipe" in failed(capsys, "compute", recording, "-o", pipe, "--force")
    assert not pipe.is_file()


@pytest.mark.parametrize("option", ["--step", "--window", "--segment"])
@pytest.mark.parametrize("seconds", ["1e300", "1e308", "inf", "nan", "0", "-1"])
def test_lengths_that_make_no_sense_are_one_line(recording, tmp_path, capsys, option, seconds):
    output = tmp_path / "out.cxc"
    line = failed(capsys, "compute", recording, "-o", output, f"{option}={seconds}")
    assert option.strip("-") in line
    assert not output.exists()


def test_sensors_are_cleaned_and_others_left_out_with_a_reason(tmp_path, capsys):
    path = tmp_path / "mixed_raw.fif"
    names = ["EEG Fp1", "Fc5.", "EEG A2-A1", "ECG ECG", "EEG O2"]
    write_recording(path, np.random.default_rng(2).normal(size=(5, 1000)), names=names)
    output = tmp_path / "out.cxc"
    assert main(["compute", str(path), "-o", str(output)]) == 0
    note = cxc.open(output).note
    assert "1 Fp1, 2 Fc5, 3 O2" in note
    assert "EEG A2-A1 (reference" in note and "ECG ECG (" in note


def test_windows_without_signal_are_zero_and_said_once(tmp_path, capsys):
    data = np.random.default_rng(3).normal(size=(3, 1200))
    data[1, 600:] = 0.0
    path = tmp_path / "flat_raw.fif"
    write_recording(path, data)
    output = tmp_path / "out.cxc"
    assert main(["compute", str(path), "-o", str(output), "--window", "4", "--step", "4"]) == 0
    warning = capsys.readouterr().err
    assert warning.count("warning") == 1 and "window 3" in warning and "E1" in warning
    values = cxc.open(output).to_array()
    assert np.isfinite(values).all()
    assert not values[2, 1].any() and values[2, 0, 2] > 0.0


def test_info_tells_what_a_file_holds(recording, tmp_path, capsys):
    output = tmp_path / "a.cxc"
    assert main(["compute", str(recording), "-o", str(output)]) == 0
    capsys.readouterr()
    assert main(["info", str(output)]) == 0
    out = capsys.readouterr().out
    for words in ("7 slices of 5 x 5 sensors", "8 to 13 Hz", "EEG Sensor", "Welch"):
        assert words in out
    assert "corrupted" in failed(capsys, "info", recording)
    assert "No such file" in failed(capsys, "info", tmp_path / "missing.cxc")


def test_the_command_runs_as_a_module_and_is_silent_in_a_pipe(recording, tmp_path):
    result = subprocess.run(
        [sys.executable, "-m", "cxc", "compute", str(recording), "-o", str(tmp_path / "a.cxc")],
        capture_output=True,
        text=True,
    )
    assert result.returncode == 0 and result.stderr == ""
    assert subprocess.run([sys.executable, "-m", "cxc"], capture_output=True).returncode == 2


def run_module(*arguments, **options):
    return subprocess.run([sys.executable, "-m", "cxc", *map(str, arguments)], **options)


def test_names_from_files_do_not_steer_the_terminal(tmp_path):
    path = tmp_path / "a.cxc"
    cxc.Dataset.from_array(
        np.zeros((1, 2, 2)), name="red\x1b[31m\nname: false", note="a\x07b \ud800"
    ).save(path)
    result = run_module(
        "info", path, capture_output=True, env={**os.environ, "PYTHONIOENCODING": "ascii"}
    )
    assert result.returncode == 0 and result.stderr == b""
    lines = result.stdout.decode("ascii").splitlines()
    assert r"name: red\x1b[31m\x0aname: false" in lines
    assert "name: false" not in lines
    assert not any(byte < 32 and byte != 10 for byte in result.stdout)


def test_streams_may_be_closed(tmp_path):
    path = tmp_path / "a.cxc"
    cxc.Dataset.from_array(np.zeros((1, 2, 2))).save(path)
    run = dict(capture_output=True, text=True)
    shell = 'exec "$0" -m cxc info "$1" '
    silent = subprocess.run(["sh", "-c", shell + ">&-", sys.executable, path], **run)
    assert (silent.returncode, silent.stderr) == (0, "")
    missing = tmp_path / "no.cxc"
    wrong = subprocess.run(["sh", "-c", shell + "2>&-", sys.executable, missing], **run)
    assert (wrong.returncode, wrong.stdout) == (1, "")


def test_a_reader_that_goes_away_is_no_error_message(recording, tmp_path):
    output = tmp_path / "a.cxc"
    read, write = os.pipe()
    os.close(read)
    with os.fdopen(write, "wb") as nobody:
        result = run_module(
            "compute", recording, "-o", output, stdout=nobody, stderr=subprocess.PIPE
        )
    assert result.returncode == 141 and result.stderr == b""
    assert cxc.open(output).shape == (7, 5, 5)


def test_the_demo_makes_everything_and_checks_it(tmp_path, capsys):
    out = tmp_path / "out"
    assert main(["demo", "--out", str(out)]) == 0
    assert "6 checks passed" in capsys.readouterr().out
    names = sorted(os.listdir(out))
    assert names == [
        "simulated_eeg-circle.png",
        "simulated_eeg-heatmap.png",
        "simulated_eeg-report.md",
        "simulated_eeg.cxc",
    ]
    for name in names[:2]:
        assert (out / name).read_bytes().startswith(b"\x89PNG")
    report = (out / "simulated_eeg-report.md").read_text()
    assert "FAILED" not in report and "F3 - P3" in report
    values = cxc.open(out / "simulated_eeg.cxc").to_array()
    label = simulate.LABELS.index
    assert values[:, label("F3"), label("P3")].min() > 0.5
    assert main(["demo", "--out", str(out)]) == 0  # once more replaces the results


def test_the_demo_takes_any_recording(recording, tmp_path, capsys):
    assert main(["demo", str(recording), "--out", str(tmp_path / "out")]) == 0
    assert "3 checks passed" in capsys.readouterr().out
    assert "no such file" in failed(capsys, "demo", tmp_path / "no.edf", "--out", tmp_path)


def test_a_simulated_recording_is_the_same_every_time():
    np.testing.assert_array_equal(simulate.simulate_samples(), simulate.simulate_samples())
