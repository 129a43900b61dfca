"""`pip install .` into an environment of its own."""

import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]


def test_an_installed_package_needs_nothing_of_the_source_tree(tmp_path):
    environment = tmp_path / "environment"
    subprocess.run(
        [sys.executable, "-m", "venv", "--system-site-packages", "--without-pip", environment],
        check=True,
    )
    plain = {k: v for k, v in os.environ.items() if not k.startswith("PYTHON")}
    # Compiled once for all runs of the tests; the environment is new each time.
    plain["CXC_BUILD"] = os.environ.get("CXC_PIP_BUILD", str(tmp_path / "build"))
    python = environment / "bin" / "python"
    subprocess.run(
        [python, "-m", "pip", "install", "--no-build-isolation", "--no-index", "--no-deps",
         "--quiet", ROOT],
        check=True, env=plain, cwd=tmp_path,
    )  # fmt: skip
    code = (
        "import numpy as np, cxc; "
        "cxc.Dataset.from_array(np.eye(3)[None], name='x').save('a.cxc'); "
        "print(cxc.__file__, cxc.open('a.cxc').to_array().trace(axis1=1, axis2=2))"
    )
    told = subprocess.run(
        [python, "-c", code], check=True, env=plain, cwd=tmp_path, capture_output=True, text=True
    ).stdout.split()
    assert told[0].startswith(str(environment))
    assert told[1:] == ["[3.]"]
    command = subprocess.run(
        [python, "-m", "cxc", "info", "a.cxc"], env=plain, cwd=tmp_path, capture_output=True
    )
    assert command.returncode == 0
