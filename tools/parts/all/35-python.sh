#!/bin/sh
# the Python package as it is built: its form, its types, its tests
# packages: python3-pybind11 python3-dev python3-setuptools python3-wheel python3-venv python3-pytest python3-pandas mypy black patchelf
set -eu
export PYTHONDONTWRITEBYTECODE=1
python=/usr/bin/python3
sources=$PWD/bindings/python
cmake --preset release -DTARNLET_PYTHON=ON
cmake --build --preset release --target tarnlet_python tarnlet_tool -j "$JOBS"
$python -m black --check "$sources"
(cd "$sources" && $python -m mypy tarnlet)
(cd build/release/python && $python -m mypy.stubtest tarnlet._native --mypy-config-file "$sources/pyproject.toml")
$python -m pytest "$sources" --junit-xml "$RESULTS/results.xml"
