"""Builds the extension and the libraries with CMake and puts them beside the modules.

CXC_BUILD names a build folder to use again, instead of one made for the purpose.
"""

import os
import pathlib
import shutil
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent


class CMakeBuild(build_ext):
    def build_extension(self, extension):
        package = pathlib.Path(self.get_ext_fullpath(extension.name)).resolve().parent
        build = pathlib.Path(os.environ.get("CXC_BUILD", pathlib.Path(self.build_temp) / "cmake"))
        installed = pathlib.Path(self.build_temp).resolve() / "installed"
        run = subprocess.check_call
        run([
            "cmake", "-S", ROOT, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
            "-DCXC_TESTS=OFF", "-DCXC_TOOLS=OFF", "-DCXC_PYTHON=ON",
            f"-DPython3_EXECUTABLE={sys.executable}",
            f"-DPYTHON_EXECUTABLE={sys.executable}", "-DCXC_PYTHON_RPATH=$ORIGIN",
            "-DCMAKE_INSTALL_LIBDIR=lib",
        ])  # fmt: skip
        run(["cmake", "--build", build])
        run(["cmake", "--install", build, "--prefix", installed])
        package.mkdir(parents=True, exist_ok=True)
        for library in installed.glob("lib/*.so.0"):
            shutil.copy(library, package)
        for core in installed.glob("lib/python3/dist-packages/cxc/_core*.so"):
            shutil.copy(core, package)


setup(ext_modules=[Extension("cxc._core", [])], cmdclass={"build_ext": CMakeBuild})
