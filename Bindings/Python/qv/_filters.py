"""Effects and transitions."""

from typing import Any, Sequence

import numpy as np

from ._frames import Image
from ._library import Error, call, library
from ._records import _record, documentation, find

#: A property's value as qv_filter_set takes it: numbers, switches, a variant's name, "#ff8800", or a list of these.
Value = bool | int | float | str | Sequence[float] | Sequence[str]


def _text(value: Value) -> str:
    if isinstance(value, bool | np.bool_):
        return "true" if value else "false"
    if isinstance(value, str | int):
        return str(value)
    if isinstance(value, float | np.number):
        return repr(float(value)) if not float(value).is_integer() else str(int(value))
    return ",".join(_text(each) for each in value)


class _Filter:
    """A filter with its class's properties as attributes."""

    _kinds: tuple[str, ...] = ()

    def __init__(self, name: str, *, order: str = "rgb", **properties: Value):
        if order not in ("rgb", "bgr"):
            raise Error(f"the order of channels is 'rgb' or 'bgr', not '{order}'")
        record = _record(find(name))
        if record["kind"] not in self._kinds:
            raise Error(f"{record['name']} is of kind {record['kind']}, not {' or '.join(self._kinds)}")
        object.__setattr__(self, "_handle", call(library.qv_filter_create, record["name"].encode()))
        object.__setattr__(self, "_names", {entry["name"]: entry["type"] for entry in record["properties"]})
        object.__setattr__(self, "_order", order)
        object.__setattr__(self, "name", record["name"])
        object.__setattr__(self, "__doc__", documentation(record))
        self.set(**properties)

    def __del__(self):
        library.qv_filter_destroy(self.__dict__.get("_handle"))

    def __dir__(self):
        return [*super().__dir__(), *self._names]

    def __repr__(self):
        return f"{type(self).__name__}({self.name!r})"

    def set(self, **properties: Value) -> None:
        """Sets properties; refused outside their ranges."""
        for name, value in properties.items():
            call(library.qv_filter_set, self._handle, name.encode(), _text(value).encode())

    def get(self, name: str) -> Any:
        """A property: a bool, a number, a colour "#rrggbb", or a list."""
        from ctypes import create_string_buffer
        needed = call(library.qv_filter_get, self._handle, name.encode(), None, 0)
        text = create_string_buffer(needed)
        call(library.qv_filter_get, self._handle, name.encode(), text, needed)
        kind, value = self._names[name], text.value.decode()
        convert = {"bool": lambda each: each == "true", "int": int, "color": str, "colors": str}.get(kind, float)
        if kind in ("bool", "int", "float", "color"):
            return convert(value)
        return [convert(each) for each in value.split(",")] if value else []

    def __setattr__(self, name: str, value: Value) -> None:
        self.set(**{name: value})

    def __getattr__(self, name: str) -> Any:
        if name not in self.__dict__.get("_names", ()):
            raise AttributeError(f"{self!r} has no property '{name}'")
        return self.get(name)

    def _give(self, role: str, image: Image | None) -> None:
        call(library.qv_filter_set_input, self._handle, role.encode(), image and image.handle)

    def _picture(self) -> Image:
        return Image(call(library.qv_filter_output, self._handle))

    def _draw(self, like: np.ndarray, out: np.ndarray | None) -> np.ndarray:
        return self._picture().render(np.empty_like(like, order="C") if out is None else out, self._order)


class Effect(_Filter):
    """An effect over one clip: `Effect(name, effectValue=0.7)(frame, t)`. The name may be short, properties are
    attributes. With order="bgr" pictures have blue first, as OpenCV has them."""

    _kinds = ("effect", "auxiliary")

    def __call__(self, frame: np.ndarray, t: float = 0, *, start: float = 0, end: float = 3,
                 mask: np.ndarray | None = None, out: np.ndarray | None = None) -> np.ndarray:
        """The frame with the effect, `t` seconds into the timeline; effects that come and go do so from `start` to
        `end`. `mask`: height x width, white where the subject is. `out` takes the result, of the frame's size."""
        self._prepare(Image.from_array(frame, self._order), t, start, end, mask)
        return self._draw(frame, out)

    def _prepare(self, image: Image, t: float, start: float, end: float, mask: np.ndarray | None) -> None:
        self._give("frame", image)
        if mask is not None and any(each["role"] == "mask" for each in _record(self.name)["inputs"]):
            self._give("mask", Image.from_array(mask, self._order))
        library.qv_filter_set_moment(self._handle, t, start, end)


class Transition(_Filter):
    """A transition: `Transition(name)(outgoing, incoming, progress)`."""

    _kinds = ("transition",)

    def __call__(self, outgoing: np.ndarray, incoming: np.ndarray, progress: float, *, duration: float = 1,
                 out: np.ndarray | None = None) -> np.ndarray:
        """The picture at `progress`, 0 (the outgoing frame) to 1 (the incoming one), of the outgoing frame's size.
        `duration`: of the whole transition, seconds."""
        self._give("frame", Image.from_array(outgoing, self._order))
        self._give("incoming", Image.from_array(incoming, self._order))
        library.qv_filter_set_moment(self._handle, progress * duration, 0, duration)
        return self._draw(outgoing, out)


class Chain:
    """Effects one after the other, drawn in as few passes as they allow: `Chain(Effect("snow"), Effect("rgb"))(frame, t)`."""

    def __init__(self, *effects: Effect):
        if not effects:
            raise Error("a chain has at least one effect")
        if len({each._order for each in effects}) > 1:
            raise Error("the effects of a chain have one order of channels")
        self.effects = effects

    def __call__(self, frame: np.ndarray, t: float = 0, *, start: float = 0, end: float = 3,
                 mask: np.ndarray | None = None, out: np.ndarray | None = None) -> np.ndarray:
        """As Effect."""
        image = Image.from_array(frame, self.effects[0]._order)
        for effect in self.effects:
            effect._prepare(image, t, start, end, mask)
            image = effect._picture()
        return image.render(np.empty_like(frame, order="C") if out is None else out, self.effects[0]._order)
