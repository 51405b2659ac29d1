"""The animation sample stream: encoding samples to bytes and decoding bytes
to (header, sample) pairs, the sample cast to its unit's own class."""

import ctypes as C

from ._core import Error, Object, function, register

# Unit types: the class names of their samples.
UNIT_CLASSES = {0: "ConfigAnimationSample", 1: "BlendshapeAnimationSample", 2: "JointAnimationSample",
                3: "LandmarkAnimationSample", 4: "TextureAnimationSample", 5: "SilentAnimationSample"}
END, UNIT, MORE = -1, 0, 1


@register("sorvane_arf_AnimationSampleStream")
class SampleStream(Object):
    @classmethod
    def create(cls, little_endian=False):
        return function("sorvane_arf_AnimationSampleStream_create")(bool(little_endian))

    def add(self, sample, timestamp=0.0):
        """Appends one unit; `sample` is any sample class or a unit sample."""
        with _unit(sample) as unit:
            if not self._call("addUnitSampleTimestamp", float(timestamp), unit):
                raise Error(f"sample not encoded (stream state {self.state})")

    def add_with_header(self, header, sample):
        with _unit(sample) as unit:
            if not self._call("addUnitSample", header, unit):
                raise Error(f"sample not encoded (stream state {self.state})")

    def flush(self):
        """The encoded bytes so far, taken out of the stream."""
        size = (self._call("getBitSize") + 7) // 8
        buf = C.create_string_buffer(max(size, 1))
        n = self._call("flush", buf, size)
        return buf.raw[:n]

    @property
    def state(self):
        return self._call("getState")

    def __iter__(self):
        """The whole units fed so far: (header, sample) pairs."""
        while True:
            header, unit = self._call("nextUnitSample")
            if unit is None:
                if header is not None:
                    header.delete()
                state = self.state
                if state in (END, UNIT, MORE):
                    return
                raise Error(f"stream decoding stopped (state {state}): {self._call('getErrorMsg')}")
            yield header, _concrete(unit)


class _unit:
    """The sample as a UnitAnimationSample handle for the duration of a call."""

    def __init__(self, sample):
        self.sample = sample

    def __enter__(self):
        if self.sample._c_name == "sorvane_arf_UnitAnimationSample":
            return self.sample
        return self.sample._call("toUnitAnimationSample")

    def __exit__(self, *exc):
        return False


def _concrete(unit):
    """The sample under its own class; the unit handle is handed over to it."""
    name = UNIT_CLASSES.get(unit._call("getUnitType"))
    if name is None:
        return unit
    sample = unit._call("to" + name)
    # The cast is the same object: make the new handle the owner and retire the old one.
    sample.__dict__["_owner"] = None
    unit.__dict__["_owner"] = sample
    return sample


def decode(data, little_endian=False, chunk=None):
    """(header, sample) pairs of a whole stream given as bytes."""
    stream = SampleStream.create(little_endian)
    units = []
    step = chunk or max(len(data), 1)
    for i in range(0, len(data), step):
        stream.feed(data[i:i + step])
        units += list(stream)
    return units


def encode(samples, little_endian=False):
    """Bytes of a stream of (timestamp, sample) pairs."""
    with SampleStream.create(little_endian) as stream:
        for timestamp, sample in samples:
            stream.add(sample, timestamp)
        return stream.flush()
