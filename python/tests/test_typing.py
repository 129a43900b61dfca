"""The types that the package promises hold."""

import pathlib
import subprocess
import sys

PACKAGE = pathlib.Path(__file__).resolve().parents[1] / "cxc"


def test_the_package_is_typed_without_a_contradiction(tmp_path):
    told = subprocess.run(
        ["mypy", "--ignore-missing-imports", "--python-executable", sys.executable,
         "--cache-dir", tmp_path, PACKAGE],
        capture_output=True, text=True,
    )  # fmt: skip
    assert told.returncode == 0, told.stdout
    assert (PACKAGE / "py.typed").exists()
