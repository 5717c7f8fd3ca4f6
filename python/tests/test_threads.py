import threading
import time
from concurrent.futures import ThreadPoolExecutor

import networks
import numpy as np
import packages
from conftest import Y

import quavin

SIZE = 1024
ROUNDS = 200


def squares(times):
    """y = x, squared as a matrix so many times: something that takes long."""
    net = networks.Network("squares")
    port = net.parameter("x", (SIZE, SIZE))
    for i in range(times):
        data = {"transpose_a": False, "transpose_b": False}
        port = net.layer("MatMul", f"y{i}", [port, port], (SIZE, SIZE), **data)
    net.result(port)
    return net


def test_other_threads_run_while_a_model_predicts(load):
    model = load(squares(4), threads=1)
    identity = np.eye(SIZE, dtype=np.float32)
    model.predict({"x": identity})  # the first is slower
    span, ticks = [], []

    def predict():
        span.append(time.perf_counter())
        result = model.predict({"x": identity})["y3"]
        span.append(time.perf_counter())
        np.testing.assert_array_equal(result, identity)

    with ThreadPoolExecutor(1) as pool:
        running = pool.submit(predict)
        while not running.done():
            ticks.append(time.perf_counter())
            time.sleep(0.001)
        running.result()
    # With the GIL held there would be none but in the first and last few milliseconds.
    begin, end = span
    assert end - begin > 0.05
    assert sum(begin + (end - begin) / 3 < tick < end - (end - begin) / 3 for tick in ticks) >= 3


def test_four_clones_predict_on_four_threads(load):
    model = load(hint="throughput")
    clones = [model.clone() for _ in range(4)]
    start = threading.Barrier(len(clones))

    def predict(clone, factor):
        x = np.float32([[1, 2, 3, -4]]) * factor
        start.wait()
        return [clone.predict({"x": x})["y"] for _ in range(ROUNDS)]

    with ThreadPoolExecutor(len(clones)) as pool:
        results = list(pool.map(predict, clones, range(4)))
    for factor, outputs in enumerate(results):
        expected = [[2 * factor + 0.5, 4 * factor + 1, 6 * factor + 1.5, -8 * factor + 2]]
        assert all(y.tolist() == expected for y in outputs)
    for clone in clones:
        clone.close()


def test_predictions_of_one_model_on_several_threads_take_turns(model):
    def predict(factor):
        x = np.float32([[1, 1, 1, 1]]) * factor
        return [model.predict({"x": x})["y"][0, 0] for _ in range(ROUNDS)]

    with ThreadPoolExecutor(4) as pool:
        for factor, results in enumerate(pool.map(predict, range(4))):
            assert results == [2 * factor + 0.5] * ROUNDS


def test_models_are_loaded_cloned_and_closed_on_several_threads(tmp_path, x):
    directories = [packages.write_package(tmp_path / str(i)) for i in range(4)]

    def use(directory):
        for _ in range(10):
            with quavin.load(directory) as model, model.clone() as clone:
                assert clone.predict({"x": x})["y"].tolist() == Y
        return True

    with ThreadPoolExecutor(4) as pool:
        assert all(pool.map(use, directories))


def test_a_model_can_be_closed_while_another_thread_predicts(load, x):
    for _ in range(20):
        model = load()
        started = threading.Event()

        def predict(model=model, started=started):
            while True:
                assert model.predict({"x": x})["y"].tolist() == Y
                started.set()

        with ThreadPoolExecutor(1) as pool:
            running = pool.submit(predict)
            started.wait(30)
            model.close()
            error = running.exception(30)
        assert isinstance(error, quavin.QuavinError)
        assert error.status == quavin.Status.MODEL_NOT_LOADED


def test_outputs_can_be_dropped_on_another_thread(model, x):
    outputs = [model.predict({"x": x}) for _ in range(50)]

    def drop():
        while outputs:
            outputs.pop()

    with ThreadPoolExecutor(2) as pool:
        for done in [pool.submit(drop), pool.submit(drop)]:
            done.result()
    assert model.predict({"x": x})["y"].tolist() == Y
