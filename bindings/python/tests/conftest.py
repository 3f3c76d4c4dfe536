"""Tests of the package as it is built: TARNLET_BUILD names the build folder."""

import os
import re
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[3]
BUILD = Path(os.environ.get("TARNLET_BUILD") or ROOT / "build" / "release").resolve()
sys.path.insert(0, str(BUILD / "python"))

EXAMPLES = sorted(path for path in (ROOT / "examples").iterdir() if path.suffix in (".bsd", ".prg"))


def corpus_folder():
    """Real descriptions, as the build was told."""
    told = re.search(r"^TARNLET_CORPUS:\w+=(.+)$", (BUILD / "CMakeCache.txt").read_text(), re.M)
    return os.environ.get("TARNLET_CORPUS") or (told and told[1])


@pytest.fixture
def demo():
    import tarnlet

    return tarnlet.read(ROOT / "examples" / "demo.bsd")


@pytest.fixture(scope="session")
def corpus():
    folder = corpus_folder()
    if not folder:
        pytest.skip("no folder of real descriptions")
    return sorted(path for path in Path(folder).iterdir() if path.suffix.lower().startswith(".bsd"))
