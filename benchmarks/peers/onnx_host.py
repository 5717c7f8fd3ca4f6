#!/usr/bin/env python3
"""ONNX Runtime's side of compare.py: takes and answers the same commands as quavin_peer_host.cpp.

    onnx_host.py NETWORK.onnx INPUT

Only the session's creation and its calls are timed. The arrays are made once and bound to the session: a call with
arrays as arguments takes longer.
"""

import json
import sys
import time

import numpy as np
import onnxruntime


class Host:
    def __init__(self, network, input_path):
        self._network = network
        self._input_path = input_path
        self._session = None
        self._binding = None
        self._output = None

    def load(self):
        self._session = self._binding = self._output = None
        start = time.perf_counter()
        self._session = onnxruntime.InferenceSession(self._network, providers=["CPUExecutionProvider"])
        seconds = time.perf_counter() - start
        (only_input,), (only_output,) = self._session.get_inputs(), self._session.get_outputs()
        values = np.fromfile(self._input_path, np.float32).reshape(only_input.shape)
        make = onnxruntime.OrtValue
        self._output = make.ortvalue_from_numpy(np.empty(only_output.shape, np.float32))
        self._binding = self._session.io_binding()
        self._binding.bind_ortvalue_input(only_input.name, make.ortvalue_from_numpy(values))
        self._binding.bind_ortvalue_output(only_output.name, self._output)
        return {"seconds": seconds}

    def predict(self, count):
        run, binding = self._session.run_with_iobinding, self._binding
        start = time.perf_counter()
        for _ in range(int(count)):
            run(binding)
        return {"seconds": time.perf_counter() - start}

    def output(self, path):
        self.predict(1)
        self._output.numpy().tofile(path)
        return {}


def main():
    host = Host(*sys.argv[1:])
    commands = {"load": host.load, "predict": host.predict, "output": host.output}
    print("{}", flush=True)
    for line in sys.stdin:
        command, *argument = line.rstrip("\n").split(" ", 1)
        print(json.dumps(commands[command](*argument)), flush=True)


if __name__ == "__main__":
    main()
