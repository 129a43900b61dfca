"""Studies over processes and over a cluster: same bytes, failures, interrupts, lost workers."""

import json
import os
import signal
import subprocess
import sys
import time

import mne
import numpy as np
import pytest

import cxc
from cxc import study_runs
from cxc.cli import main
from cxc.study_work import Subject, Task

RATE = 100.0
OPTIONS = ["--window", "2", "--step", "1", "--segment", "0.5"]
# Enough slices that a subject takes a good part of a second.
SLOW = ["--window", "2", "--step", "0.02", "--segment", "0.1", "--overlap", "0.9"]
NAMES = ("Fp1", "Fp2", "C3", "C4", "O1")


def write(path, seed, seconds=6.0):
    data = np.random.default_rng(seed).normal(size=(len(NAMES), int(seconds * RATE)))
    data += 0.5 * data[0]
    info = mne.create_info(list(NAMES), RATE, "eeg", verbose="ERROR")
    raw = mne.io.RawArray(data * 1e-6, info, verbose="ERROR")
    raw.save(path, fmt="double", overwrite=True, verbose="ERROR")


def make_folder(folder, subjects, seconds=6.0):
    folder.mkdir()
    for number in range(subjects):
        # The last subject is the shortest, so that the average has zeros.
        length = seconds - (number == subjects - 1)
        write(folder / f"s{number}_1_raw.fif", 2 * number, length)
        write(folder / f"s{number}_2_raw.fif", 2 * number + 1, length)
    return str(folder)


def study(folder, out, *more, options=OPTIONS):
    return [
        "study", folder, "--out", str(out), "--active-suffix", "_2_raw", "--control-suffix",
        "_1_raw", *options, *more,
    ]  # fmt: skip


def files_of(out):
    return {name: (out / name).read_bytes() for name in sorted(os.listdir(out))}


def processes_of(text):
    """Processes whose command line or environment holds `text`: none may outlive a study."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        for part in ("cmdline", "environ"):
            try:
                with open(f"/proc/{pid}/{part}", "rb") as file:
                    if text.encode() in file.read():
                        found.append(int(pid))
            except OSError:
                pass
    return set(found)


def wait_until(condition, what, seconds=60):
    end = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < end, f"waited in vain: {what}"
        time.sleep(0.02)


def start(tmp_path, *arguments):
    """The command in a process group of its own, as a shell starts it."""
    return subprocess.Popen(
        [sys.executable, "-m", "cxc", *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
        text=True, start_new_session=True, env={**os.environ, "CXC_TEST_MARK": str(tmp_path)},
        preexec_fn=_hear_interrupts,
    )  # fmt: skip


def _hear_interrupts():
    """Tests that run in the background were told not to."""
    signal.signal(signal.SIGINT, signal.SIG_DFL)


# -- local processes


def test_the_number_of_processes_changes_no_byte(tmp_path, capsys):
    folder = make_folder(tmp_path / "data", 3)
    for jobs in ("1", "3"):
        assert main(study(folder, tmp_path / jobs, "--jobs", jobs)) == 0
    assert main(study(folder, tmp_path / "default")) == 0
    assert capsys.readouterr().err == ""
    assert files_of(tmp_path / "1") == files_of(tmp_path / "3") == files_of(tmp_path / "default")


def test_processes_calculate_with_one_thread_and_leave_ctrl_c_to_their_parent(tmp_path):
    with study_runs._processes(1) as pool:
        with study_runs._shielded():
            asked = pool.submit(os.getenv, "OPENBLAS_NUM_THREADS")
            masked = pool.submit(signal.pthread_sigmask, signal.SIG_BLOCK, [])
        assert asked.result() == "1"
        assert signal.SIGINT in masked.result()
    assert signal.SIGINT not in signal.pthread_sigmask(signal.SIG_BLOCK, [])


def test_a_failed_subject_is_named_and_the_others_are_kept(tmp_path, capsys):
    folder = make_folder(tmp_path / "data", 3)
    broken = tmp_path / "data" / "s1_2_raw.fif"
    broken.write_bytes(b"no recording")
    out = tmp_path / "out"
    assert main(study(folder, out)) == 1
    said, err = capsys.readouterr()
    lines = err.splitlines()
    assert said == "" and len(lines) == 2
    assert lines[0].startswith("cxc: warning: s1 failed: s1_2_raw.fif: cannot be read")
    assert lines[1] == (
        "cxc: 1 of 3 subjects failed: s1; the other 2 are kept, and --resume goes on with them"
    )
    assert sorted(os.listdir(out)) == ["s0.cxcpkg", "s2.cxcpkg", "subjects.json"]
    assert cxc.Package.open(out / "s0.cxcpkg").act_ctl is not None

    # Once it is mended, the rest is done and nothing else, with the bytes of an undisturbed run.
    write(broken, 3)
    before = os.stat(out / "s0.cxcpkg").st_ino
    assert main(study(folder, out, "--resume")) == 0
    assert os.stat(out / "s0.cxcpkg").st_ino == before
    assert main(study(folder, tmp_path / "new")) == 0
    assert files_of(out) == files_of(tmp_path / "new")


def test_going_on_computes_again_what_has_changed(tmp_path):
    folder = make_folder(tmp_path / "data", 2)
    out = tmp_path / "out"
    assert main(study(folder, out)) == 0
    kept = {name: os.stat(out / name).st_ino for name in ("s0.cxcpkg", "s1.cxcpkg")}
    write(tmp_path / "data" / "s1_1_raw.fif", 99)
    assert main(study(folder, out, "--resume")) == 0
    assert os.stat(out / "s0.cxcpkg").st_ino == kept["s0.cxcpkg"]
    assert os.stat(out / "s1.cxcpkg").st_ino != kept["s1.cxcpkg"]
    # Other options are another study.
    assert main(study(folder, out, "--resume", "--band", "5", "12")) == 0
    assert os.stat(out / "s0.cxcpkg").st_ino != kept["s0.cxcpkg"]
    assert cxc.open(out / "average.cxc").band == (5.0, 12.0)


def test_results_are_replaced_only_when_asked(tmp_path, capsys):
    folder = make_folder(tmp_path / "data", 2)
    out = tmp_path / "out"
    out.mkdir()
    (out / "s1.cxcpkg").write_bytes(b"mine")
    assert main(study(folder, out)) == 1
    assert "s1.cxcpkg: exists already; --force replaces" in capsys.readouterr().err
    assert files_of(out) == {"s1.cxcpkg": b"mine"}
    assert main(study(folder, out, "--force")) == 0
    assert cxc.Package.open(out / "s1.cxcpkg").name == "s1"


def test_a_process_that_is_killed_fails_its_subject_alone(tmp_path, monkeypatch):
    """As the system does where memory runs out."""
    tasks = [Task(Subject(name, name, ""), {}, "") for name in ("a", "kill", "b", "c")]
    monkeypatch.setattr(study_runs, "work", work_or_die)
    outcomes = dict(study_runs.locally(tasks, str(tmp_path), 2))
    assert sorted(outcomes) == [0, 1, 2, 3]
    assert "ended from outside" in outcomes[1].error
    assert [outcomes[n].error for n in (0, 2, 3)] == ["", "", ""]


def work_or_die(task, target):
    if task.subject.name == "kill":
        os.kill(os.getpid(), signal.SIGKILL)
    time.sleep(0.1)
    return study_runs.Outcome(task.subject.name)


def test_ctrl_c_leaves_whole_files_and_no_process(tmp_path):
    folder = make_folder(tmp_path / "data", 5, seconds=20.0)
    out = tmp_path / "out"
    process = start(tmp_path, *study(folder, out, "--jobs", "2", options=SLOW))
    wait_until(lambda: (out / "subjects.json").exists(), "a first subject")
    assert len(processes_of(str(tmp_path))) >= 3
    os.killpg(process.pid, signal.SIGINT)
    said, err = process.communicate(timeout=30)
    assert process.returncode == 130
    assert (said, err) == ("", "cxc: interrupted\n")
    wait_until(lambda: not processes_of(str(tmp_path)), "all processes have ended", 10)
    left = sorted(os.listdir(out))
    packages = [name for name in left if name != "subjects.json"]
    assert "subjects.json" in left and 1 <= len(packages) < 5
    assert set(json.loads((out / "subjects.json").read_text())) <= {n[:2] for n in packages}
    for name in packages:
        assert cxc.Package.open(out / name).act_ctl is not None


def test_processes_end_with_a_parent_that_is_killed(tmp_path):
    folder = make_folder(tmp_path / "data", 4, seconds=20.0)
    out = tmp_path / "out"
    process = start(tmp_path, *study(folder, out, "--jobs", "2", options=SLOW))
    wait_until(lambda: len(processes_of(str(tmp_path))) >= 3, "processes")
    process.kill()
    process.communicate()
    wait_until(lambda: not processes_of(str(tmp_path)), "all processes have ended", 10)


# -- a Dask cluster


class Cluster:
    """A real scheduler and workers on loopback, each a process."""

    def __init__(self, folder):
        self._folder = folder
        folder.mkdir()
        file = folder / "scheduler.json"
        self._scheduler = self._start("scheduler", "--port", "0", "--scheduler-file", str(file))
        wait_until(lambda: file.exists() and file.read_text().strip()[-1:] == "}", "a scheduler")
        self.address = json.loads(file.read_text())["address"]
        self.workers = {}

    def add_worker(self, name):
        place = self._folder / name
        self.workers[name] = self._start(
            "worker", self.address, "--name", name, "--nthreads", "1", "--no-nanny",
            "--local-directory", str(place), "--memory-limit", "0",
        )  # fmt: skip

    def _start(self, what, *arguments):
        log = open(self._folder / f"{what}.log", "ab")
        environment = {**os.environ, "OMP_NUM_THREADS": "1", "OPENBLAS_NUM_THREADS": "1"}
        with log:
            return subprocess.Popen(
                [sys.executable, "-m", f"distributed.cli.dask_{what}", "--host", "127.0.0.1",
                 "--no-dashboard", *arguments],
                stdout=log, stderr=log, cwd=self._folder, env=environment,
            )  # fmt: skip

    def stop_scheduler(self):
        self._scheduler.kill()
        self._scheduler.wait()

    def stop(self):
        for process in (*self.workers.values(), self._scheduler):
            process.kill()
            process.wait()


@pytest.fixture
def cluster(tmp_path):
    made = Cluster(tmp_path / "cluster")
    try:
        yield made
    finally:
        made.stop()


def test_a_study_survives_the_loss_of_a_worker_with_the_same_bytes(tmp_path, cluster):
    from distributed import Client

    folder = make_folder(tmp_path / "data", 6, seconds=20.0)
    cluster.add_worker("a")
    cluster.add_worker("b")
    out = tmp_path / "dask"
    process = start(tmp_path, *study(folder, out, "--dask", cluster.address, options=SLOW))
    with Client(cluster.address, set_as_default=False) as client:
        wait_until(lambda: len(client.scheduler_info()["workers"]) == 2, "two workers")
        address = {w["name"]: a for a, w in client.scheduler_info()["workers"].items()}["a"]
        wait_until(lambda: client.processing().get(address), "worker a has a subject")
        # Stopped, it cannot finish the subject before it is killed.
        cluster.workers["a"].send_signal(signal.SIGSTOP)
        held = client.processing()[address]
        assert held
        cluster.workers["a"].kill()
        said, err = process.communicate(timeout=90)
        assert (process.returncode, err) == (0, "")
        assert "6 subjects" in said
        assert list(client.scheduler_info()["workers"]) != [address]
        assert len(client.scheduler_info()["workers"]) == 1
    assert main(study(folder, tmp_path / "local", options=SLOW)) == 0
    assert files_of(out) == files_of(tmp_path / "local")


def test_a_subject_that_fails_on_a_worker_is_named(tmp_path, cluster, capsys):
    folder = make_folder(tmp_path / "data", 2)
    (tmp_path / "data" / "s1_2_raw.fif").write_bytes(b"no recording")
    cluster.add_worker("a")
    out = tmp_path / "out"
    assert main(study(folder, out, "--dask", cluster.address)) == 1
    lines = capsys.readouterr().err.splitlines()
    assert lines[0].startswith("cxc: warning: s1 failed: s1_2_raw.fif: cannot be read")
    assert lines[1].startswith("cxc: 1 of 2 subjects failed: s1; the other 1 ")
    assert sorted(os.listdir(out)) == ["s0.cxcpkg", "subjects.json"]


def test_ctrl_c_takes_the_work_from_the_cluster(tmp_path, cluster):
    from distributed import Client

    folder = make_folder(tmp_path / "data", 4, seconds=20.0)
    cluster.add_worker("a")
    out = tmp_path / "out"
    process = start(tmp_path, *study(folder, out, "--dask", cluster.address, options=SLOW))
    with Client(cluster.address, set_as_default=False) as client:
        wait_until(lambda: (out / "subjects.json").exists(), "a first subject")
        os.killpg(process.pid, signal.SIGINT)
        said, err = process.communicate(timeout=30)
        assert (process.returncode, said, err) == (130, "", "cxc: interrupted\n")
        wait_until(lambda: not any(client.processing().values()), "nothing is left to do")
    assert all(name.endswith((".cxcpkg", ".json")) for name in os.listdir(out))


def test_a_cluster_that_is_not_there_is_one_line(tmp_path, cluster, capsys, monkeypatch):
    folder = make_folder(tmp_path / "data", 1)
    monkeypatch.setattr(study_runs, "_PATIENCE", 1)
    assert main(study(folder, tmp_path / "out", "--dask", cluster.address)) == 1
    assert capsys.readouterr().err == f"cxc: {cluster.address}: the Dask scheduler has no workers\n"
    cluster.stop_scheduler()
    assert main(study(folder, tmp_path / "out", "--dask", cluster.address)) == 1
    err = capsys.readouterr().err
    assert err.startswith(f"cxc: {cluster.address}: no Dask scheduler answers") and "\n" in err
    assert err.count("\n") == 1
    assert main(study(folder, tmp_path / "out", "--dask", "nonsense://x")) == 1
    assert capsys.readouterr().err.count("\n") == 1
    assert os.listdir(tmp_path / "out") == []


def test_processes_and_a_cluster_exclude_each_other(tmp_path, capsys):
    for wrong in (["--jobs", "0"], ["--jobs", "2", "--dask", "x"], ["--force", "--resume"]):
        with pytest.raises(SystemExit) as ended:
            main(study(str(tmp_path), tmp_path / "out", *wrong))
        assert ended.value.code == 2
