#!/usr/bin/env python3
"""Compares loading, predicting and memory with ONNX Runtime: the same networks, in the same rounds.

    compare.py QUAVIN_PEER_HOST FOLDER [ROUNDS]

FOLDER holds what make_networks.py writes. First both sides must give the same outputs. Then every round starts three
processes: ONNX Runtime, the same again, which shows the machine's noise, and the library. They take turns at every
step, and each round begins with a different one. Prints medians, and medians of the ratios to the first process
within a round, with the quartiles.
"""

import json
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

import numpy as np

HERE = pathlib.Path(__file__).resolve().parent
CALLS = {"mobilenet": 20, "small": 2000}  # predictions per turn, for each network
TOLERANCE = 1e-5  # of the largest output
# ONNX Runtime's threads go on spinning for about a tenth of a second after a call. The next turn begins after that.
PAUSE = 0.2
MIB = 1 << 20


class Host:
    """A child process that loads and predicts. A context manager that ends it."""

    def __init__(self, command):
        self._process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._command = command

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.stdin.close()
        self._process.wait()
        self._process.stdout.close()

    def await_start(self):
        self._answer("its start")

    def ask(self, command):
        try:
            self._process.stdin.write(command + "\n")
            self._process.stdin.flush()
        except BrokenPipeError:
            pass  # it has ended, so there is no answer either
        return self._answer(command)

    def _answer(self, command):
        answer = self._process.stdout.readline()
        if not answer:
            sys.exit(f"compare: {' '.join(self._command)} failed at {command}")
        return json.loads(answer)

    def seconds(self, command, warm_up=None):
        time.sleep(PAUSE)
        if warm_up:
            self.ask(warm_up)
        return self.ask(command)["seconds"]

    def memory(self):
        """The peak of the resident memory, and the anonymous part of what is resident now, in bytes."""
        status = pathlib.Path(f"/proc/{self._process.pid}/status").read_text(encoding="utf-8")
        return [1024 * int(re.search(rf"^{name}:\s+(\d+) kB", status, re.MULTILINE)[1])
                for name in ("VmHWM", "RssAnon")]


@dataclass(frozen=True)
class Row:
    """One figure of all sides: `values[side]` are those of the rounds."""

    name: str
    unit: str
    values: list

    def ratios(self, side):
        return [value / base for value, base in zip(self.values[side], self.values[0])]

    def text(self):
        theirs, ours = (f"{statistics.median(self.values[side]):12.2f} {self.unit:3}" for side in (0, 2))
        ratio, noise = (with_quartiles(self.ratios(side)) for side in (2, 1))
        return f"  {self.name:28}{theirs} {ours}   {ratio:28}   {noise}"


def with_quartiles(values):
    ordered = sorted(values)
    low, high = (ordered[round(share * (len(ordered) - 1))] for share in (0.25, 0.75))
    return f"{statistics.median(ordered):6.3f}x [{low:.3f} .. {high:.3f}]"


def measure(hosts, order, calls):
    """A round: the figures of each host, by name and unit."""
    figures = [{} for _ in hosts]

    def step(name, unit, scale, command, warm_up=None, turns=order, ours=None):
        for index in turns:
            seconds = hosts[index].seconds(ours if ours and index == 2 else command, warm_up)
            figures[index][name, unit] = figures[index].get((name, unit), 0) + scale * seconds

    for host in hosts:
        host.await_start()
    before = [host.memory() for host in hosts]
    step("load", "ms", 1e3, "load")
    step("first prediction", "ms", 1e3, "predict 1")
    # Back and forth, so that a machine that slows down meanwhile slows down all of them.
    step("prediction", "us", 1e6 / (2 * calls), f"predict {calls}", f"predict {calls // 10}",
         [*order, *reversed(order)])
    after = [host.memory() for host in hosts]
    for part, name in enumerate(("peak memory", "anonymous memory")):
        for index, values in enumerate(figures):
            values[name, "MiB"] = after[index][part] / MIB
            values[name + ", growth", "MiB"] = (after[index][part] - before[index][part]) / MIB
    step("load again", "ms", 1e3, "load")
    hosts[2].ask("load cached")  # writes the entry in the first round
    step("load again, ours cached", "ms", 1e3, "load", ours="load cached")
    return figures


def check_outputs(commands):
    """Ends the program if the outputs differ."""
    outputs = []
    for command in commands:
        with tempfile.TemporaryDirectory() as folder, Host(command) as host:
            path = pathlib.Path(folder) / "output"
            host.await_start()
            host.ask("load")
            host.ask(f"output {path}")
            outputs.append(np.fromfile(path, np.float32).astype(np.float64))
    expected, found = outputs
    largest = np.abs(expected).max()
    if expected.shape != found.shape or not np.abs(found - expected).max() <= TOLERANCE * largest or largest == 0:
        sys.exit(f"compare: the outputs of {commands[1][0]} differ: {found[:5]} ..., expected {expected[:5]} ...")


def compare(theirs, ours, calls, rounds):
    """The rows of the table for two commands that start hosts."""
    check_outputs([theirs, ours])
    results = []
    for number in range(rounds):
        order = [(number + turn) % 3 for turn in range(3)]
        with Host(theirs) as first, Host(theirs) as again, Host(ours) as last:
            results.append(measure([first, again, last], order, calls))
    return [Row(name, unit, [[result[side][name, unit] for result in results] for side in range(3)])
            for name, unit in results[0][0]]


def main():
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 21
    print(f"{'':30}{'ONNX Runtime':>16} {'this library':>16}   {'ratio':28}   noise")
    for kind, calls in CALLS.items():
        values = str(folder / f"{kind}.input")
        theirs = [sys.executable, str(HERE / "onnx_host.py"), str(folder / f"{kind}.onnx"), values]
        with tempfile.TemporaryDirectory() as cache:
            rows = compare(theirs, [program, str(folder / kind), values, cache], calls, rounds)
        print(f"{kind} ({rounds} rounds)")
        for row in rows:
            print(row.text(), flush=True)


if __name__ == "__main__":
    main()
