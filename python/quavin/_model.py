"""Models, and predicting with them."""

from __future__ import annotations

import contextlib
import threading
from collections.abc import Iterator, Mapping
from dataclasses import dataclass
from types import TracebackType
from typing import Any

import numpy.typing as npt

from quavin._engine import EngineInfo, read_engine_info
from quavin._errors import QuavinError, Status
from quavin._inputs import checked_inputs
from quavin._library import ffi, lib, sized, text
from quavin._outputs import arrays_over
from quavin._ports import Port, printable, read_ports, table
from quavin._runtime import attempt, call, is_forked, owned, require_usable, settle, turn


@dataclass(frozen=True)
class Metadata:
    """The identity of a model, from its manifest; what that leaves out is "" or 0."""

    id: str
    name: str
    author: str
    description: str
    sdk_version: str
    version: int


class Model:
    """A loaded model, made by `load` or `clone`.

    Predictions of one model take turns: the second waits for the first. Threads that predict at the same time
    use clones. While a model predicts, loads or clones, other Python threads run.

    Close it, or use it as a context manager, to free its memory at a certain point; otherwise that happens when
    the object goes. Outputs live on in either case.
    """

    metadata: Metadata
    """Who the model is."""
    inputs: tuple[Port, ...]
    """What `predict` takes, in the package's order."""
    outputs: tuple[Port, ...]
    """What `predict` returns, in the package's order."""

    def __init__(self, handle: Any) -> None:
        """Not for hosts: takes over a handle."""
        self._handle = owned(handle, lib.quavin_model_release)
        self._turn = threading.RLock()  # a signal handler may close the model
        self.metadata = _read_metadata(handle)
        self.inputs = read_ports(handle, lib.quavin_model_get_input_count, lib.quavin_model_get_input)
        self.outputs = read_ports(handle, lib.quavin_model_get_output_count, lib.quavin_model_get_output)

    def predict(self, inputs: Mapping[str, npt.ArrayLike], *, cast: bool = False) -> dict[str, npt.NDArray[Any]]:
        """Runs one inference.

        `inputs` has an array for each input by its name, which is read in place: it must have the input's dtype
        and shape, and be contiguous. With `cast`, whatever NumPy can turn into such an array without changing
        the kind of its numbers is converted, and copied only if it has to be; shapes never change. No other
        thread may write to the arrays until the call returns.

        Returns an array for each output by its name, over the engine's own memory. It stays as it is, whatever
        the model does next, and may be written to.

        Raises TypeError or ValueError if an input is unusable, and QuavinError if the model is closed or the
        engine fails.
        """
        arrays = checked_inputs(self.inputs, inputs, cast)
        memories = [ffi.NULL if array is None else ffi.from_buffer(array) for array in arrays]
        pointers = ffi.new("const void *[]", memories)
        sizes = ffi.new("size_t[]", [0 if array is None else array.nbytes for array in arrays])
        made = ffi.new("quavin_outputs **")
        with self._in_use() as handle:
            outcome = attempt(lib.quavin_predict, handle, pointers, sizes, len(arrays), made)
        settle(outcome)
        return arrays_over(owned(made[0], lib.quavin_outputs_release))

    def clone(self) -> Model:
        """A second model over the same compiled network, for another thread. It costs little.

        Load the original with hint="throughput", or the two wait for each other inside the engine. Either may
        be closed first.

        Raises QuavinError if the model is closed or the engine fails.
        """
        made = ffi.new("quavin_model **")
        with turn():
            outcome = attempt(lib.quavin_clone, self._open_handle(), made)
        settle(outcome)
        return Model(made[0])

    def close(self) -> None:
        """Frees the model, once a prediction that runs on another thread has ended. May be called again."""
        if is_forked():  # the lock may belong to a thread that does not exist here
            self._handle = None
            return
        with self._turn:
            handle, self._handle = self._handle, None
            if handle is not None:
                ffi.release(handle)

    @property
    def closed(self) -> bool:
        """Whether the model was closed."""
        return self._handle is None

    def engine_info(self) -> EngineInfo:
        """What computes the predictions.

        Raises QuavinError if the model is closed.
        """
        made = ffi.new("quavin_engine_info **")
        with self._in_use() as handle:
            outcome = attempt(lib.quavin_model_get_engine_info, handle, made)
        return read_engine_info(outcome, made)

    def describe(self) -> str:
        """A few lines for people: who the model is, its inputs and outputs, and what computes it.

        Raises QuavinError if the model is closed.
        """
        who, engine = self.metadata, self.engine_info()
        lines = [f"{who.name} ({who.id}, version {who.version})", who.description]
        lines += ["inputs:", *(f"  {line}" for line in table(self.inputs))]
        lines += ["outputs:", *(f"  {line}" for line in table(self.outputs))]
        lines += [f"engine: {engine.precision}, threads: {engine.threads}, streams: {engine.streams}"]
        return "\n".join(printable(line) for line in lines if line)

    @contextlib.contextmanager
    def _in_use(self) -> Iterator[Any]:
        """The handle, while no other thread uses or closes it."""
        require_usable()
        with self._turn:
            yield self._open_handle()

    def _open_handle(self) -> Any:
        handle = self._handle
        if handle is None:
            raise QuavinError(Status.MODEL_NOT_LOADED, "The model is closed")
        return handle

    def __enter__(self) -> Model:
        return self

    def __exit__(
        self, kind: type[BaseException] | None, error: BaseException | None, trace: TracebackType | None
    ) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<quavin.Model {self.metadata.name!r}{', closed' if self.closed else ''}>"


def _read_metadata(handle: Any) -> Metadata:
    struct = sized("quavin_metadata")
    call(lib.quavin_model_get_metadata, handle, struct)
    return Metadata(
        id=text(struct.id),
        name=text(struct.name),
        author=text(struct.author),
        description=text(struct.description),
        sdk_version=text(struct.sdk_version),
        version=struct.version,
    )
