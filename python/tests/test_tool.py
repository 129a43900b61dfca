"""The program cxc as a process: interrupts, pipes, full disks, terminals, memory."""

import json
import os
import pty
import resource
import signal
import subprocess
import sys
import time

import numpy as np
import pytest

import cxc

TOOL = os.environ["CXC_TOOL"]


@pytest.fixture()
def files(tmp_path):
    random = np.random.default_rng(3)
    paths = []
    for i in range(3):
        path = tmp_path / f"s{i}.cxc"
        values = random.random((4, 5, 5))
        cxc.Dataset.from_array(values, band=(8, 13), name=f"S{i}").save(path)
        paths.append(str(path))
    return paths


def run(*arguments, **options):
    return subprocess.run(
        [TOOL, *arguments], capture_output=True, encoding="utf-8", errors="surrogateescape",
        **options,
    )  # fmt: skip


def test_the_average_is_that_of_numpy(files, tmp_path):
    out = tmp_path / "mean.cxc"
    assert run("average", *files, "-o", out).returncode == 0
    arrays = [cxc.open(path).to_array() for path in files]
    expected = (((0.0 + arrays[0]) + arrays[1]) + arrays[2]) / 3
    np.testing.assert_array_equal(cxc.open(out).to_array(), expected)


def test_the_summary_is_that_of_numpy(files, tmp_path):
    assert run("summary", *files, "-o", tmp_path / "s.cxc").returncode == 0
    arrays = np.array([cxc.open(path).to_array() for path in files])
    for what, expected in [("min", arrays.min(0)), ("max", arrays.max(0))]:
        made = cxc.open(tmp_path / f"s_{what}.cxc").to_array()
        np.testing.assert_array_equal(made, expected)


def test_info_is_json_that_other_programs_read(files):
    told = json.loads(run("info", "--json", *files).stdout)
    assert [entry["datasets"][0]["name"] for entry in told] == ["S0", "S1", "S2"]
    assert told[0]["datasets"][0]["slices"] == 4


def test_csv_holds_every_digit(files, tmp_path):
    out = tmp_path / "a.csv"
    assert run("export", files[0], "--format", "csv", "-o", out).returncode == 0
    table = np.genfromtxt(out, delimiter=",", names=True)
    values = cxc.open(files[0]).to_array()
    slices, rows, columns = (table[name].astype(int) for name in ("slice", "row", "column"))
    np.testing.assert_array_equal(values[slices, rows - 1, columns - 1], table["value"])
    assert len(table) == values.size


def wait_until_it_reads(work):
    """Until the process is past its start and has read some of its files."""
    reads = 0
    while reads < 1 << 20:
        assert work.poll() is None
        time.sleep(0.01)
        with open(f"/proc/{work.pid}/io", encoding="ascii") as told:
            reads = int(told.readline().split()[1])


def test_an_interrupt_ends_the_work_and_leaves_nothing(tmp_path):
    path = tmp_path / "large.cxc"
    cxc.Dataset.from_array(np.zeros((200, 100, 100))).save(path)
    out = tmp_path / "mean.cxc"
    work = subprocess.Popen(
        [TOOL, "average", *[path] * 3000, "-o", out], stderr=subprocess.PIPE, text=True
    )
    wait_until_it_reads(work)
    work.send_signal(signal.SIGINT)
    _, err = work.communicate(timeout=60)
    assert (work.returncode, err) == (130, "cxc: interrupted\n")
    assert os.listdir(tmp_path) == ["large.cxc"]


def test_a_terminal_that_is_closed_ends_the_work_and_leaves_nothing(tmp_path):
    path = tmp_path / "large.cxc"
    cxc.Dataset.from_array(np.zeros((200, 100, 100))).save(path)
    out = tmp_path / "mean.cxc"
    for under_nohup, told in [(False, (130, "cxc: interrupted\n")), (True, (0, ""))]:
        answer = signal.SIG_IGN if under_nohup else signal.SIG_DFL
        work = subprocess.Popen(
            [TOOL, "average", *[path] * (400 if under_nohup else 3000), "-o", out],
            stderr=subprocess.PIPE, text=True,
            preexec_fn=lambda: signal.signal(signal.SIGHUP, answer),
        )  # fmt: skip
        wait_until_it_reads(work)
        work.send_signal(signal.SIGHUP)
        _, err = work.communicate(timeout=120)
        assert (work.returncode, err) == told
        left = ["large.cxc", "mean.cxc"] if under_nohup else ["large.cxc"]
        assert sorted(os.listdir(tmp_path)) == left


def test_processes_that_write_the_same_output_do_not_meet(files, tmp_path):
    out = tmp_path / "o" / "mean.cxc"
    out.parent.mkdir()
    large = tmp_path / "large.cxc"
    cxc.Dataset.from_array(np.ones((50, 100, 100))).save(large)
    pair = [(large, (50, 100, 100)), (files[0], (4, 5, 5))]
    for _ in range(5):
        works = [
            subprocess.Popen([TOOL, "average", path, "-o", out, "--force"], stderr=subprocess.PIPE)
            for path, _ in pair * 4
        ]
        assert [(work.communicate()[1], work.returncode) for work in works] == [(b"", 0)] * 8
        assert cxc.open(out).shape in [shape for _, shape in pair]
        assert os.listdir(out.parent) == ["mean.cxc"]


def test_a_name_may_be_as_long_as_the_system_allows(files, tmp_path):
    out = tmp_path / ("n" * 251 + ".cxc")
    assert run("average", *files, "-o", out).returncode == 0
    assert len(cxc.open(out)) == 4


def test_a_link_to_nothing_is_not_replaced(files, tmp_path):
    link = tmp_path / "link.cxc"
    link.symlink_to("nowhere")
    for force in ([], ["--force"]):
        result = run("average", *files, "-o", link, *force)
        assert result.returncode == 1
        assert result.stderr.endswith("link.cxc: is a symbolic link to nothing\n")
    assert os.readlink(link) == "nowhere"


@pytest.mark.parametrize("command", ["info", "verify", "average"])
def test_a_pipe_is_no_file(files, tmp_path, command):
    pipe = tmp_path / "pipe"
    os.mkfifo(pipe)
    out = ["-o", tmp_path / "mean.cxc"] if command == "average" else []
    result = run(command, pipe, *out, timeout=10)
    assert result.returncode == 1
    assert result.stderr.endswith("pipe: is a device or a pipe, not a file\n")


def test_nobody_reads_the_output(files):
    read, write = os.pipe()
    os.close(read)
    result = subprocess.run([TOOL, "info", *files], stdout=write, stderr=subprocess.PIPE)
    os.close(write)
    assert result.returncode in (1, -signal.SIGPIPE)


def test_an_output_on_a_full_device_is_an_error(files):
    with open("/dev/full", "w") as full:
        result = subprocess.run(
            [TOOL, "info", *files], stdout=full, stderr=subprocess.PIPE, text=True
        )
    assert (result.returncode, result.stderr) == (1, "cxc: the output cannot be written\n")


def test_a_full_disk_keeps_the_existing_output(files, tmp_path):
    out = tmp_path / "mean.cxc"
    out.write_bytes(b"kept")

    def no_room():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))

    result = run("average", *files, "-o", out, "--force", preexec_fn=no_room)
    assert result.returncode == 1
    assert result.stderr.count("\n") == 1 and "mean.cxc: " in result.stderr
    assert out.read_bytes() == b"kept"
    assert sorted(os.listdir(tmp_path)) == ["mean.cxc", "s0.cxc", "s1.cxc", "s2.cxc"]


def test_an_output_that_is_replaced_keeps_its_permissions_and_its_link(files, tmp_path):
    real = tmp_path / "real.cxc"
    real.write_bytes(b"old")
    real.chmod(0o640)
    link = tmp_path / "link.cxc"
    link.symlink_to(real)
    assert run("average", *files, "-o", link, "--force").returncode == 0
    assert link.is_symlink()
    assert real.stat().st_mode & 0o777 == 0o640
    assert len(cxc.open(real)) == 4


def test_a_terminal_sees_a_bar_and_a_pipe_does_not(files, tmp_path):
    assert run("average", *files, "-o", tmp_path / "a.cxc").stderr == ""
    mine, its = pty.openpty()
    subprocess.run(
        [TOOL, "average", *files, "-o", tmp_path / "b.cxc"], stderr=its, stdout=subprocess.PIPE
    )
    os.close(its)
    shown = os.read(mine, 10000).decode()
    os.close(mine)
    assert "] 2/3 " in shown
    assert shown.endswith("\r")


def test_memory_is_that_of_the_result(tmp_path):
    values = np.zeros((100, 200, 200))
    path = tmp_path / "a.cxc"
    cxc.Dataset.from_array(values).save(path)

    # A process starts with the peak of the one that started it: a small one stands between.
    between = (
        "import os, sys; pid = os.posix_spawn(sys.argv[1], sys.argv[1:], os.environ); "
        "print(os.wait4(pid, 0)[2].ru_maxrss)"
    )

    def peak(*arguments):
        told = subprocess.run(
            [sys.executable, "-SEc", between, TOOL, *arguments],
            capture_output=True, text=True, check=True,
        )  # fmt: skip
        return int(told.stdout.split()[-1]) * 1024

    one = values.nbytes + 64 * 200 * 200 + 16 * 200 * 200
    resting = peak("--version")
    used = peak("average", *[path] * 30, "-o", tmp_path / "m.cxc") - resting
    assert 0.75 * one < used < 1.25 * one


def test_an_address_of_bytes_that_are_no_text(tmp_path, files):
    odd = os.fsencode(tmp_path) + b"/odd\xff.cxc"
    assert run("average", *files, "-o", odd).returncode == 0
    assert run("verify", odd).returncode == 0


def test_bash_takes_the_completion(tmp_path):
    script = 'eval "$($0 completion bash)"; COMP_WORDS=(cxc se); COMP_CWORD=1; _cxc; '
    result = subprocess.run(
        ["bash", "-c", script + 'echo "${COMPREPLY[@]}"', TOOL], capture_output=True, text=True
    )
    assert result.stdout == "select\n"
