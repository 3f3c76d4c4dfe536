"""The page of the package: its examples run, and a type checker accepts them."""

import doctest
import subprocess
import sys

from conftest import BUILD, ROOT

PAGE = ROOT / "docs" / "python.md"
OPTIONS = doctest.ELLIPSIS | doctest.NORMALIZE_WHITESPACE


def test_examples_run(monkeypatch):
    monkeypatch.chdir(ROOT)
    failed, run = doctest.testfile(str(PAGE), module_relative=False, optionflags=OPTIONS)
    assert run > 20 and not failed


def test_examples_have_the_right_types(tmp_path):
    script = tmp_path / "page.py"
    script.write_text(doctest.script_from_examples(PAGE.read_text()))
    config = ROOT / "bindings" / "python" / "pyproject.toml"
    run = subprocess.run(
        [sys.executable, "-m", "mypy", "--config-file", config, script],
        env={"MYPYPATH": str(BUILD / "python"), "PATH": "/usr/bin:/bin"},
        capture_output=True,
        text=True,
        check=False,
    )
    assert not run.returncode, run.stdout + run.stderr
