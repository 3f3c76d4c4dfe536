#!/usr/bin/python3
"""What the Python package costs beside the library, as medians of pairwise runs.

usage: python_bench.py [BUILD]

BUILD is a release build with TARNLET_PYTHON. A folder of real descriptions, TARNLET_CORPUS, is read
by one thread and by two.
"""

import ctypes
import os
import resource
import statistics
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

BUILD = Path(sys.argv[1] if len(sys.argv) > 1 else "build/release").resolve()
sys.path.insert(0, str(BUILD / "python"))
CELLS = 100_000
REPEATS = 11

import tarnlet  # noqa: E402


def seconds(work):
    begin = time.perf_counter()
    work()
    return time.perf_counter() - begin


def ratio(a, b):
    """Median of a by b, each pair taken close together, and the medians of both."""
    pairs = [(seconds(a), seconds(b)) for _ in range(REPEATS)]
    medians = [statistics.median(each) for each in zip(*pairs)]
    return statistics.median(x / y for x, y in pairs), *medians


def description(cells):
    join = ', " &\n    "'.join
    pins = join(str(n) for n in range(5, cells + 5))
    rows = join(f"{n} (BC_1, D({n}), INPUT, X)" for n in range(cells))
    return f"""entity big is
    generic (PHYSICAL_PIN_MAP : string := "P");
    port (TDI, TMS, TCK : in bit; TDO : out bit; D : in bit_vector(0 to {cells - 1}));
    use STD_1149_1_2001.all;
    attribute COMPONENT_CONFORMANCE of big : entity is "STD_1149_1_2001";
    attribute PIN_MAP of big : entity is PHYSICAL_PIN_MAP;
    constant P : PIN_MAP_STRING := "TDI:1, TMS:2, TCK:3, TDO:4, D:({pins})";
    attribute TAP_SCAN_IN of TDI : signal is true;
    attribute TAP_SCAN_MODE of TMS : signal is true;
    attribute TAP_SCAN_OUT of TDO : signal is true;
    attribute TAP_SCAN_CLOCK of TCK : signal is (1.0e6, BOTH);
    attribute INSTRUCTION_LENGTH of big : entity is 2;
    attribute INSTRUCTION_OPCODE of big : entity is
        "BYPASS (11), EXTEST (00), SAMPLE (01), PRELOAD (01)";
    attribute INSTRUCTION_CAPTURE of big : entity is "01";
    attribute BOUNDARY_LENGTH of big : entity is {cells};
    attribute BOUNDARY_REGISTER of big : entity is "{rows}";
end big;
""".encode()


def reading(text):
    library = ctypes.CDLL(str(BUILD / "lib" / "libtarnlet.so"))
    library.bsdlDiagnose.restype = ctypes.c_void_p
    library.bsdlDiagnosisRelease.argtypes = [ctypes.c_void_p]

    def host():
        diagnosis = library.bsdlDiagnose(text, ctypes.c_size_t(len(text)), b"big.bsd", None)
        library.bsdlDiagnosisRelease(diagnosis)

    result, package, library_alone = ratio(lambda: tarnlet.read_text(text).close(), host)
    print(f"read and check {CELLS} cells: {package:.3f} s, the library alone {library_alone:.3f} s")
    print(f"  ratio {result:.3f} (bound 1.15)")


def walking(text):
    rows = []

    def walk():
        device = tarnlet.read_text(text)
        begin = time.process_time()
        for row in device.cells.rows:
            for _ in row:
                pass
        rows.append(time.process_time() - begin)

    for _ in range(REPEATS):
        walk()
    field = statistics.median(rows) / (CELLS * 8) * 1e6
    print(f"walk all rows of cells: {field:.3f} us a field (bound 0.5)")


def importing():
    environment = {**os.environ, "PYTHONPATH": str(BUILD / "python")}
    # The modules are compiled once, as when they are installed.
    environment.pop("PYTHONDONTWRITEBYTECODE", None)

    def processor_time(code):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        subprocess.run([sys.executable, "-c", code], env=environment, check=True)
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime

    def median(code):
        return statistics.median(processor_time(code) for _ in range(REPEATS)) * 1e3

    median("import tarnlet")
    package, bare = median("import tarnlet"), median("pass")
    print(f"import: {package - bare:.1f} ms above {bare:.1f} ms (bound 30)")


def threads(folder):
    paths = [*tarnlet.descriptions(folder)] * 2

    def read_with(count):
        def read_all():
            with ThreadPoolExecutor(count) as pool:
                [*pool.map(lambda path: tarnlet.read(path).close(), paths)]

        return read_all

    result, one, two = ratio(read_with(1), read_with(2))
    print(f"read {len(paths)} files: {one:.2f} s, with two threads {two:.2f} s")
    print(f"  {result:.2f} times as fast (bound 1.7, on two processors)")


big = description(CELLS)
assert tarnlet.read_text(big).ok
reading(big)
walking(big)
importing()
if corpus := os.environ.get("TARNLET_CORPUS"):
    threads(corpus)
