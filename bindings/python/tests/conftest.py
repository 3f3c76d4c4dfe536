"""Tests of the package as it is built: TARNLET_BUILD names the build folder."""

import os
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[3]
BUILD = Path(os.environ.get("TARNLET_BUILD") or ROOT / "build" / "release").resolve()
sys.path.insert(0, str(BUILD / "python"))

EXAMPLES = sorted(path for path in (ROOT / "examples").iterdir() if path.suffix in (".bsd", ".prg"))
CORPUS = Path(os.environ.get("TARNLET_CORPUS") or ROOT.parent / "shared" / "corpus")


@pytest.fixture
def demo():
    import tarnlet

    return tarnlet.read(ROOT / "examples" / "demo.bsd")


@pytest.fixture(scope="session")
def corpus():
    if not CORPUS.is_dir():
        pytest.skip("no folder of real descriptions")
    return sorted(path for path in CORPUS.iterdir() if path.suffix.lower().startswith(".bsd"))
