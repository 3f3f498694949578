"""The shared library and its C interface, see qv.h."""

import ctypes
import os
from ctypes import POINTER, c_char_p, c_double, c_int, c_int32, c_size_t, c_uint32, c_void_p
from pathlib import Path


class Error(Exception):
    """What the library refused, and why, in one line."""


class Frame(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("format", c_int32), ("width", c_int32), ("height", c_int32),
                ("matrix", c_int32), ("full_range", c_int32), ("planes", c_void_p * 4), ("strides", c_size_t * 4)]


#: Release(user): the library no longer reads the memory of a frame.
Release = ctypes.CFUNCTYPE(None, c_void_p)

_ERROR = (c_char_p, c_size_t)
_FUNCTIONS = {
    "qv_api_level": (c_uint32, ()),
    "qv_version": (c_char_p, ()),
    "qv_set_bundle": (None, (c_char_p,)),
    "qv_class_count": (c_size_t, ()),
    "qv_class_name": (c_char_p, (c_size_t,)),
    "qv_class_find": (c_char_p, (c_char_p, *_ERROR)),
    "qv_class_json": (c_char_p, (c_char_p, *_ERROR)),
    "qv_filter_create": (c_void_p, (c_char_p, *_ERROR)),
    "qv_filter_destroy": (None, (c_void_p,)),
    "qv_filter_set": (c_int, (c_void_p, c_char_p, c_char_p, *_ERROR)),
    "qv_filter_get": (c_size_t, (c_void_p, c_char_p, c_char_p, c_size_t, *_ERROR)),
    "qv_filter_set_moment": (None, (c_void_p, c_double, c_double, c_double)),
    "qv_filter_set_input": (c_int, (c_void_p, c_char_p, c_void_p, *_ERROR)),
    "qv_filter_output": (c_void_p, (c_void_p, *_ERROR)),
    "qv_image_from_frame": (c_void_p, (POINTER(Frame), Release, c_void_p, *_ERROR)),
    "qv_image_destroy": (None, (c_void_p,)),
    "qv_render": (c_int, (c_void_p, c_void_p, POINTER(Frame), *_ERROR)),
}


def _load() -> ctypes.CDLL:
    """The library that the environment variable QV_LIBRARY names, the one beside the package, or the system's."""
    beside = Path(__file__).with_name("libqv.so.1")
    library = ctypes.CDLL(os.environ.get("QV_LIBRARY") or (str(beside) if beside.exists() else "libqv.so.1"))
    for name, (result, arguments) in _FUNCTIONS.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments
    return library


library = _load()


def call(function, *arguments):
    """The result of a function that takes a buffer for its error last. Raises Error when that is 0 or NULL."""
    message = ctypes.create_string_buffer(1024)
    result = function(*arguments, message, len(message))
    if not result:
        raise Error(message.value.decode())
    return result
