"""What is handed in wrongly, and what a file has wrong."""

import gc
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

import pytest
import tarnlet
from conftest import BUILD, ROOT

DEMO = (ROOT / "examples" / "demo.bsd").read_text()


def test_mistakes_are_findings():
    text = DEMO.replace("(000100)", "(00100)", 1)
    device = tarnlet.read_text(text, name="mine.bsd")
    (finding,) = [each for each in device.findings if each.severity == "error"]
    assert finding.rule == "opcode-length" and finding.place.file == "mine.bsd"
    assert text.splitlines()[finding.place.line - 1].strip().startswith('"CLAMP')
    assert not device.ok and device.check.errors == 1
    assert str(finding).startswith(f"mine.bsd:{finding.place.line}:")
    with pytest.raises(ValueError, match="has errors"):
        device.write_ebst("never.dsh")


def test_a_package_that_is_missing_is_a_finding():
    text = DEMO.replace("use STD_1149_1_2001.all;", "use STD_1149_1_2001.all; use NOWHERE.all;", 1)
    assert any("NOWHERE" in finding.text.upper() for finding in tarnlet.read_text(text).findings)


def test_packages_are_found_in_folders_that_are_named():
    golden = ROOT / "tests" / "ebst" / "golden"
    text = (golden / "cells.bsd").read_text()
    assert not tarnlet.read_text(text).packages.files
    for folders in ([golden], ["/nowhere", str(golden)]):
        device = tarnlet.read_text(text, include=folders)
        assert device.packages.files == (str(golden / "UCELLS.all"),)


@pytest.mark.parametrize("text", ["", b"", "entity", b"\0\xff\xfe", "\0" * 100, "(" * 100_000])
def test_text_that_is_no_description(text):
    device = tarnlet.read_text(text)
    assert device.findings and not device.ok
    assert device.component is None and not device.ports and not device.cells and not device.pins
    assert device.to_dict()["boundary"] == {"length": None, "cells": []}
    assert repr(device.ports) == "<Ports: 0 ()>"


def test_text_may_be_bytes_and_hold_latin_1():
    text = DEMO.replace("tarn_demo", "tarn_demo", 1).replace("entity", "-- \xe4\nentity", 1)
    device = tarnlet.read_text(text.encode("latin-1"))
    assert device.ok and device.encoding == "latin-1" and device.fixed_text() == text
    assert tarnlet.read_text(text).fixed_text() == text


@pytest.mark.parametrize(
    "arguments, error",
    [
        ({"text": None}, TypeError),
        ({"text": bytearray(b"x")}, TypeError),
        ({"text": "", "name": 7}, TypeError),
        ({"text": "", "name": "a\0b"}, ValueError),
        ({"text": "", "package": 7}, TypeError),
        ({"text": "", "package": "a\0b"}, ValueError),
        ({"text": "", "include": [7]}, TypeError),
        ({"text": "", "include": ["a\0b"]}, ValueError),
        ({"text": "\ud800"}, ValueError),
    ],
)
def test_arguments_of_other_kinds(arguments, error):
    with pytest.raises(error):
        tarnlet.read_text(**arguments)


def test_files_that_cannot_be_read(tmp_path):
    with pytest.raises(FileNotFoundError):
        tarnlet.read(tmp_path / "none.bsd")
    with pytest.raises(IsADirectoryError):
        tarnlet.read(tmp_path)


def test_names_and_numbers_that_are_not_there(demo):
    with pytest.raises(KeyError, match="no port ADR; did you mean ADDR"):
        demo.ports["ADR"]
    with pytest.raises(KeyError, match="EXTEST"):
        demo.instructions["EXTST"]
    for strange in (3, None, b"CLK", "A" * 1_000_000):
        with pytest.raises(KeyError):
            demo.ports[strange]
        assert strange not in demo.ports
    for huge in (26, -27, 1 << 31, 1 << 64, -(1 << 64)):
        with pytest.raises(IndexError):
            demo.cells[huge]
        with pytest.raises(IndexError):
            demo.ports["ADDR"][huge]
    assert demo.cells[1 << 70 :] == () and len(demo.cells[: 1 << 70]) == 26
    with pytest.raises(IndexError, match="no vector"):
        demo.ports["CLK"][0]


def test_a_boundary_register_with_gaps():
    device = tarnlet.read_text(DEMO.replace('" 25  (', '" 2147483647  (', 1))
    assert device.cells[2147483647] == device.cells[-1]
    assert [cell.number for cell in device.cells[::-1]][:2] == [2147483647, 24]
    with pytest.raises(IndexError):
        device.cells[25]


def test_a_data_file_that_fails_is_asked_like_any_other():
    text = (ROOT / "examples" / "two_taps.prg").read_text().replace("PROC_", "PROX_")
    device = tarnlet.read_text(text)
    with ThreadPoolExecutor(1) as other_thread:
        assert not device.ok and other_thread.submit(lambda: device.prg.programs).result()


def test_closed_device(demo):
    cell = demo.cells[3]
    with demo:
        pass
    for ask in (lambda: demo.cells, lambda: demo.isc, lambda: demo.findings, demo.to_dict):
        with pytest.raises(ValueError, match="closed"):
            ask()
    with pytest.raises(ValueError, match="closed"):
        demo.write_ebst("never.dsh")
    demo.close()
    assert "closed" in repr(demo)
    assert cell.rows[0].number == 3


def test_parts_outlive_their_device():
    device = tarnlet.read_text(DEMO.replace("(000100)", "(00100)", 1))
    kept = device.cells, device.pins["1"], device.findings, device.tap, device.to_dict()
    expected = repr(kept)
    del device
    gc.collect()
    tarnlet.read_text(DEMO)
    assert repr(kept) == expected


def test_a_garbage_collector_that_asks_the_same_device(demo):
    class Asks:
        def __del__(self):
            demo.instructions

    for _ in range(200):
        cycle = Asks()
        cycle.self = cycle
    del cycle
    gc.set_threshold(1)
    try:
        assert len(demo.cells) == 26
    finally:
        gc.set_threshold(700)


def test_control_c_ends_the_interpreter_as_usual():
    # A background job of a shell ignores the signal, and so would the interpreter in it.
    script = (
        "import os, signal; signal.signal(signal.SIGINT, signal.default_int_handler);"
        "import tarnlet; os.kill(os.getpid(), signal.SIGINT); tarnlet.read_text('')"
    )
    run = subprocess.run(
        [sys.executable, "-c", script],
        env={**os.environ, "PYTHONPATH": str(BUILD / "python")},
        capture_output=True,
        check=False,
    )
    assert b"KeyboardInterrupt" in run.stderr
