import logging
import pickle
import re

import packages
import pytest
from conftest import ROOT, Y

import quavin

HEADER = (ROOT / "include" / "quavin" / "c.h").read_text(encoding="utf-8")


def test_the_status_codes_are_those_of_the_header():
    codes = re.search(r"enum \{\n(    QUAVIN_SUCCESS.*?)\};", HEADER, re.DOTALL)[1]
    declared = {name: int(number) for name, number in re.findall(r"QUAVIN_(\w+) = (\d+)", codes)}
    assert {status.name: status.value for status in quavin.Status} == declared


def test_every_function_of_the_header_can_be_called():
    from quavin._library import lib

    functions = re.findall(r"^QUAVIN_API [\w *]+?(\w+)\(", HEADER, re.MULTILINE)
    assert len(functions) == HEADER.count("\nQUAVIN_API ")
    for function in functions:
        assert callable(getattr(lib, function))


def test_an_error_tells_its_status_text_and_details():
    error = quavin.QuavinError(3, "File error!", ("one", "two"))
    assert error.status is quavin.Status.FILE_ERROR
    assert str(error) == "FILE_ERROR: File error! (one; two)"
    assert str(quavin.QuavinError(2, "")) == "FAILURE"


def test_a_status_of_a_newer_library_stays_a_number():
    error = quavin.QuavinError(99, "News")
    assert error.status == 99
    assert str(error) == "status 99: News"


def test_an_error_can_be_pickled():
    error = quavin.QuavinError(3, "File error!", ("one",))
    copy = pickle.loads(pickle.dumps(error))
    assert (copy.status, copy.text, copy.details) == (error.status, error.text, error.details)


def failed_load(package):
    """What a load without the weights raises."""
    (package / "net.bin").unlink()
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.load(package)
    return failure.value


def test_a_failure_tells_its_hidden_cause(make_package):
    error = failed_load(make_package())
    assert error.text == "File error!"
    (detail,) = error.details
    assert "net.bin" in detail
    assert "No such file or directory" in detail


def test_a_failure_does_not_repeat_the_details_of_the_one_before(make_package):
    package = make_package()
    error = failed_load(packages.write_package(package.parent / "other"))
    assert error.details
    with pytest.raises(quavin.QuavinError) as failure:
        quavin.load(package, threads=-1)
    assert failure.value.details == ()


def test_what_the_library_reports_is_logged(make_package, caplog):
    with caplog.at_level(logging.INFO, "quavin"):
        error = failed_load(make_package())
    assert [(r.name, r.levelname, r.getMessage()) for r in caplog.records] == [("quavin", "INFO", error.details[0])]


def test_a_report_without_a_failure_is_logged_too(load, tmp_path, x, caplog):
    with caplog.at_level(logging.INFO, "quavin"):
        model = load(cache=tmp_path / "none")
    assert model.predict({"x": x})["y"].tolist() == Y
    (record,) = caplog.records
    assert f'with the cache "{tmp_path}/none"' in record.getMessage()


def test_a_handler_of_the_log_may_use_the_library(make_package, x):
    package = make_package()
    results = []

    class Handler(logging.Handler):
        def emit(self, record):
            with quavin.load(package) as model:
                results.append(model.predict({"x": x})["y"].tolist())

    logger, handler = logging.getLogger("quavin"), Handler(logging.INFO)
    logger.addHandler(handler)
    logger.setLevel(logging.INFO)
    try:
        with pytest.raises(quavin.QuavinError):
            quavin.load(package / "none")
    finally:
        logger.setLevel(logging.NOTSET)
        logger.removeHandler(handler)
    assert results == [Y]


def test_a_percent_sign_is_logged_as_it_is(make_package, caplog):
    with caplog.at_level(logging.INFO, "quavin"), pytest.raises(quavin.QuavinError):
        quavin.load(make_package() / "%s%d")
    assert "%s%d" in caplog.records[0].getMessage()
