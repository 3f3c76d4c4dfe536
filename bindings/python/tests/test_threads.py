"""Threads, processes, and the start of one."""

import multiprocessing
import os
import subprocess
import sys
import threading
from concurrent.futures import ThreadPoolExecutor

import tarnlet
from conftest import BUILD, EXAMPLES


def document(path):
    return tarnlet.read(path).to_dict()


def test_eight_threads_read_what_one_reads(corpus):
    paths = [*EXAMPLES, *(path for path in corpus if path.stat().st_size < 100_000)]
    alone = [document(path) for path in paths]
    with ThreadPoolExecutor(8) as pool:
        assert [*pool.map(document, paths)] == alone


def test_a_device_is_asked_by_many_threads_at_once():
    for _ in range(20):
        device = tarnlet.read(EXAMPLES[0])
        begin = threading.Barrier(8)

        def ask():
            begin.wait()
            return device.cells, device.instructions, device.pins, device.ports

        with ThreadPoolExecutor(8) as pool:
            answers = [each.result() for each in [pool.submit(ask) for _ in range(8)]]
        assert all(a is b for answer in answers for a, b in zip(answer, answers[0], strict=True))


def test_a_device_is_closed_while_others_ask():
    for _ in range(20):
        device = tarnlet.read(EXAMPLES[0])
        begin = threading.Barrier(2)

        def ask():
            begin.wait()
            try:
                return len(device.cells) > 0
            except ValueError as error:
                return "closed" in str(error)

        with ThreadPoolExecutor(2) as pool:
            answer = pool.submit(ask)
            begin.wait()
            device.close()
            assert answer.result()


def test_what_few_need_is_not_imported():
    script = (
        "import sys; before = {*sys.modules}; import tarnlet; new = {*sys.modules} - before;"
        "assert not new & {'pandas', 'pathlib', 'dataclasses', 'difflib', 'tarnlet.families'}, new"
    )
    environment = {**os.environ, "PYTHONPATH": str(BUILD / "python")}
    subprocess.run([sys.executable, "-S", "-c", script], env=environment, check=True)


def test_processes():
    for method in ("fork", "spawn"):
        with multiprocessing.get_context(method).Pool(2) as pool:
            assert pool.map(document, EXAMPLES) == [*map(document, EXAMPLES)]
