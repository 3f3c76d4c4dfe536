"""The model against what the tool prints, and the ways to ask it."""

import json
import pickle
import subprocess

import pytest
import tarnlet
from conftest import BUILD, EXAMPLES, ROOT
from tarnlet.codes import CellFunction, DisableResult, PinType
from tarnlet.records import Idcode

TOOL = BUILD / "bin" / "tarnlet"


def info(path):
    run = subprocess.run([TOOL, "info", "--json", path], capture_output=True, check=False)
    return json.loads(run.stdout) if run.stdout else None


@pytest.mark.parametrize("path", EXAMPLES, ids=lambda path: path.name)
def test_model_equals_info(path):
    assert tarnlet.read(path).to_dict() == info(path)


def test_model_equals_info_over_real_descriptions(corpus):
    for path in corpus:
        if document := info(path):
            assert tarnlet.read(str(path)).to_dict() == document, path


def test_ports_and_pins(demo):
    assert demo.ports["addr"][1] is demo.pins["4"]
    assert [pin.number for pin in demo.ports["ADDR"]] == ["3", "4", "5", "6"]
    assert demo.ports["ADDR"][1:3] == demo.ports["ADDR"].bits[1:3]
    assert demo.ports["ADDR"].type is PinType.IN
    assert demo.ports["CLK"].numbers == ("1",) and not demo.ports["CLK"].is_vector
    assert demo.pins["3"].port == "ADDR(0)" and demo.pins["3"].port.subscript == 0
    assert len(demo.pins) == len({pin.number for pin in demo.pins.rows if pin.number})
    assert list(demo.ports)[:2] == ["CLK", "OE_N"] and dict(demo.ports)["CLK"] == demo.ports["CLK"]


def test_nested_iteration_sees_every_pair(demo):
    cells = [(a.number, b.number) for a in demo.cells for b in demo.cells]
    assert len(set(cells)) == len(demo.cells) ** 2
    names = [(a, b) for a in demo.instructions for b in demo.instructions.values()]
    assert len(names) == len(demo.instructions) ** 2


def test_cells(demo):
    merged = demo.cells[5]
    assert [row.function for row in merged.rows] == [CellFunction.INPUT, CellFunction.CONTROL]
    assert merged.port == "OE_N" and merged.safe == "X" and merged.control is None
    output = next(cell for cell in demo.cells if cell.control == 5)
    assert output.disable == (5, "1", DisableResult.Z)
    assert demo.cells[-1].number == len(demo.cells) - 1
    assert [cell.number for cell in demo.cells[2:8:2]] == [2, 4, 6]
    assert [cell.number for cell in demo.cells[::-1]][:2] == [25, 24]
    assert len(demo.cells.rows) == len(demo.cells) + 1


def test_instructions_and_idcodes(demo):
    assert demo.instructions["extest"].opcodes == ("000000",)
    assert demo.registers["BYPASS"].instructions == ("CLAMP", "HIGHZ", "BYPASS")
    idcode = demo.idcodes[0]
    assert idcode.matches(0x3692D52D) and not idcode.matches(0x3692D52C)
    with_x = Idcode("XXXX" + idcode.pattern[4:], "", None, None, None)
    assert with_x.matches(0xF692D52D) and not with_x.matches(0xF692D52F)
    assert not with_x.matches(-1) and not with_x.matches(1 << 32)
    assert not Idcode("01", "", None, None, None).matches(1)


def test_procedures_flows_and_activities():
    isc = tarnlet.read(ROOT / "examples" / "isc_2002.bsd").isc
    erase = next(action for action in isc.actions if action.name == "ERASE")
    call = erase.procedures[1]
    blocks = isc.procedure(call.procedure.lower(), call.data).flows[0].blocks
    assert any(step.kind == "activity" for block in blocks for step in block.activities)
    with pytest.raises(KeyError):
        isc.procedure("PROC_NONE")


def test_equal_files_give_equal_records(demo):
    again = tarnlet.read(ROOT / "examples" / "demo.bsd")
    assert again.cells == demo.cells and again.pins == demo.pins and again.ports == demo.ports
    assert again.cells[3] == demo.cells[3] != demo.cells[4]
    assert len({*again.cells, *demo.cells}) == len(demo.cells)


def test_what_is_pickled_is_the_same_again(demo):
    for value in (demo.ports, demo.cells, demo.instructions, demo.tap, demo.idcodes):
        assert pickle.loads(pickle.dumps(value)) == value
    assert pickle.loads(pickle.dumps(demo.cells[5])).rows[0].function is CellFunction.INPUT
    with pytest.raises(TypeError, match="cannot be pickled"):
        pickle.dumps(demo)


def test_frames(demo):
    pytest.importorskip("pandas")
    frame = demo.to_frame("cells")
    assert list(frame["number"]) == [row.number for row in demo.cells.rows]
    assert set(frame["function"]) == {str(row.function) for row in demo.cells.rows}
    with pytest.raises(ValueError, match="pins, cells"):
        demo.to_frame("chips")


def test_ebst_file_is_the_one_of_the_tool_every_time(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    source = ROOT / "examples" / "isc_2002.bsd"
    device = tarnlet.read(source)
    subprocess.run([TOOL, "ebst", source, "-o", "a.dsh"], check=True, capture_output=True)
    expected = (tmp_path / "a.dsh").read_text()
    for _ in range(2):
        device.write_ebst("a.dsh")
        written = (tmp_path / "a.dsh").read_text()
        assert [*map(without_time, written.splitlines())] == [
            *map(without_time, expected.splitlines())
        ]
    with pytest.raises(OSError, match="a.dsh"):
        device.write_ebst(tmp_path / "none" / "a.dsh")


def without_time(line):
    return "" if " GMT" in line else line


def test_diff_is_that_of_the_tool():
    for a in EXAMPLES:
        for b in EXAMPLES:
            command = [TOOL, "diff", "--json", a, b]
            run = subprocess.run(command, capture_output=True, check=False)
            changes = [change._asdict() for change in tarnlet.diff(*map(tarnlet.read, (a, b)))]
            assert changes == json.loads(run.stdout)["changes"], (a, b)


def test_find(tmp_path):
    source = (ROOT / "examples" / "demo.bsd").read_text()
    (tmp_path / "b").mkdir()
    (tmp_path / "b" / "x.BSDL").write_text(source.replace('"0011" &', '"XXXX" &'))
    (tmp_path / "a.bsd").write_text(source)
    (tmp_path / "not.txt").write_text(source)
    (tmp_path / "broken.bsd").write_text("entity")
    assert tarnlet.find(0x3692D52D, tmp_path) == [f"{tmp_path}/a.bsd", f"{tmp_path}/b/x.BSDL"]
    assert tarnlet.find(0x1692D52D, str(tmp_path)) == [f"{tmp_path}/b/x.BSDL"]
    with pytest.raises(OSError):
        tarnlet.find(0, tmp_path / "nowhere")
