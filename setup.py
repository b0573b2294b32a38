# SPDX-License-Identifier: MIT
"""Builds the native half of the Python module with CMake; everything else is in pyproject.toml."""

import os
import pathlib
import re
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

ROOT = pathlib.Path(__file__).resolve().parent


class CMakeBuild(build_ext):
    def build_extension(self, ext):
        package = pathlib.Path(self.get_ext_fullpath(ext.name)).resolve().parent
        build = ROOT / "build" / "python"
        options = {
            "BUILD_SHARED_LIBS": "OFF",
            "GLYPHMOTION_PROGRAM": "OFF",
            "GLYPHMOTION_PYTHON": "ON",
            "GLYPHMOTION_PYTHON_DATA": "ON",
            "GLYPHMOTION_PYTHON_FOLDER": ".",
            "CMAKE_BUILD_TYPE": "Release",
            "CMAKE_INSTALL_PREFIX": "/usr/local",
            "Python3_EXECUTABLE": sys.executable,
        }
        try:  # pip's own environment has pybind11 as a Python package
            import pybind11

            options["pybind11_DIR"] = pybind11.get_cmake_dir()
        except ImportError:
            pass
        run = lambda *words: subprocess.run(["cmake", *map(str, words)], check=True)
        run("-S", ROOT, "-B", build, *(f"-D{key}={value}" for key, value in options.items()), *os.environ.get("CMAKE_ARGS", "").split())
        run("--build", build, "--target", "glyphmotion_python", "--parallel", os.cpu_count() or 1)
        run("--install", build, "--component", "python", "--prefix", package.parent)


version = re.search(r'GLYPHMOTION_VERSION "(.+)"', (ROOT / "include/glyphmotion/version.h").read_text())[1]
setup(version=version, ext_modules=[Extension("glyphmotion._core", sources=[])], cmdclass={"build_ext": CMakeBuild})
