"""Video effects and transitions over numpy arrays.

    import qv
    wave = qv.Effect("QVWaveMTIFilter", effectValue=0.7)
    picture = wave(frame, t=1.5)                  # uint8, height x width x 3 or 4
    mixed = qv.Transition("QVWaveTransitionMTIFilter")(a, b, 0.5)

`qv.classes()` lists the classes, `qv.describe(name)` tells everything about one, `help(effect)` its properties. A filter
is used by one thread at a time; different ones may run on different threads, and calls leave the interpreter's lock
while they draw.
"""

from ._filters import Chain, Effect, Transition
from ._library import Error
from ._records import classes, describe, find, version

__all__ = ["Chain", "Effect", "Error", "Transition", "classes", "describe", "find", "version"]
