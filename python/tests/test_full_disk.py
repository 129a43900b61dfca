"""A disk that is really full: a memory disk of 96 KiB in a namespace of its own."""

import os
import shutil
import subprocess
import sys

import numpy as np
import pytest

import cxc

TOOL = os.environ.get("CXC_TOOL", "")
SPACE = ["unshare", "--user", "--map-root-user", "--mount"]


def runs(command):
    return subprocess.run(command, capture_output=True).returncode == 0


pytestmark = pytest.mark.skipif(
    not shutil.which("unshare") or not runs([*SPACE, "mount", "-t", "tmpfs", "none", "/mnt"]),
    reason="this system does not let a test mount a disk",
)


def on_small_disk(tmp_path, command):
    """Runs the command where `disk` is small and holds kept.cxc; returns it and what is left."""
    disk = tmp_path / "disk"
    disk.mkdir(exist_ok=True)
    script = (
        f'mount -t tmpfs -o size=96k none "{disk}" && cp "{tmp_path}/small.cxc" "{disk}/kept.cxc" '
        f'&& cd "{tmp_path}" && {command}; code=$?; ls -A "{disk}" >left; '
        f'cmp -s "{disk}/kept.cxc" small.cxc || echo changed >>left; exit $code'
    )
    told = subprocess.run([*SPACE, "sh", "-c", script], capture_output=True, text=True)
    return told, (tmp_path / "left").read_text().split()


@pytest.fixture
def files(tmp_path):
    values = np.random.default_rng(1).uniform(size=(60, 20, 20))
    cxc.Dataset.from_array(values, sampling_rate=1.0).save(tmp_path / "large.cxc")
    cxc.Dataset.from_array(values[:1, :3, :3]).save(tmp_path / "small.cxc")
    return tmp_path


PYTHON = f'"{sys.executable}" -m cxc'


@pytest.mark.parametrize(
    "command",
    [
        f'"{TOOL}" average large.cxc large.cxc -o disk/out.cxc',
        f'"{TOOL}" average large.cxc -o disk/kept.cxc --force',
        f'"{TOOL}" summary large.cxc large.cxc -o disk/out.cxc',
        f'"{TOOL}" select large.cxc -o disk/out.cxc --slices 0-50',
        f'"{TOOL}" upgrade large.cxc -o disk/out.cxc',
        f'"{TOOL}" pack large.cxc small.cxc -o disk/out.cxcgrp',
        f'"{TOOL}" export large.cxc -o disk/out.txt',
        f'"{TOOL}" convert large.cxc disk/out.csv',
        f"{PYTHON} convert large.cxc disk/out.npz",
        f"{PYTHON} convert large.cxc disk/out.nc",
        f"{PYTHON} page large.cxc -o disk/out.html",
        f"{PYTHON} plot multiples large.cxc -o disk/out.png --dpi 600",
    ],
)
def test_one_line_tells_of_it_and_nothing_is_lost_or_half_there(files, command):
    if command.startswith('"" '):
        pytest.skip("the native program was not built")
    told, left = on_small_disk(files, command)
    assert told.returncode == 1, told.stderr
    lines = told.stderr.splitlines()
    assert len(lines) == 1 and lines[0].startswith("cxc: disk/"), told.stderr
    assert left == ["kept.cxc"]


def test_a_dataset_is_usable_after_a_full_disk(files):
    script = (
        "import cxc; d = cxc.open('large.cxc')\n"
        "try: d.save('disk/out.cxc')\n"
        "except OSError as error: print(error.strerror)\n"
        "d.save('again.cxc')\n"
    )
    (files / "script.py").write_text(script)
    told, left = on_small_disk(files, f'"{sys.executable}" script.py')
    assert (told.returncode, told.stderr) == (0, "")
    assert told.stdout == "No space left on device\n"
    assert left == ["kept.cxc"]
    assert (files / "again.cxc").read_bytes() == (files / "large.cxc").read_bytes()
