"""Pictures between numpy arrays and the library."""

import ctypes

import numpy as np

from ._library import Error, Frame, Release, call, library

#: Formats of qv.h by the number of channels; 0 is a plane without a channel axis.
_FORMATS = {"rgb": {0: 1, 3: 100, 4: 0}, "bgr": {0: 1, 3: 101, 4: 102}}


def frame_of(array: np.ndarray, order: str) -> Frame:
    """The array's memory, which must outlive the frame."""
    if not isinstance(array, np.ndarray) or array.dtype != np.uint8:
        raise Error("a picture is a numpy array of uint8")
    channels = 0 if array.ndim == 2 else array.shape[2] if array.ndim == 3 else -1
    if channels not in _FORMATS[order]:
        raise Error(f"a picture is height x width x 3 or 4, a mask height x width, not {array.shape}")
    packed = array.strides[1:] == ((channels, 1) if channels else (1,))
    if not packed or array.strides[0] < 0:
        raise Error("the pixels of a row have to lie one after the other; see numpy.ascontiguousarray")
    frame = Frame(ctypes.sizeof(Frame), _FORMATS[order][channels], array.shape[1], array.shape[0])
    frame.planes[0], frame.strides[0] = array.ctypes.data, array.strides[0]
    return frame


class Image:
    """A picture of the library's, freed with this object."""

    def __init__(self, handle: int):
        self.handle = handle

    def __del__(self):
        library.qv_image_destroy(self.handle)

    @classmethod
    def from_array(cls, array: np.ndarray, order: str) -> "Image":
        """A copy of the array's pixels."""
        if isinstance(array, np.ndarray) and (array.ndim < 2 or array.strides[0] < 0 or not array.flags.c_contiguous):
            array = np.ascontiguousarray(array)
        return cls(call(library.qv_image_from_frame, frame_of(array, order), Release(), None))

    def render(self, out: np.ndarray, order: str) -> np.ndarray:
        if not out.flags.writeable:
            raise Error("the output array is read-only")
        call(library.qv_render, None, self.handle, frame_of(out, order))
        return out
