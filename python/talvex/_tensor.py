"""Blocks of numbers handed out as numpy arrays when numpy is installed, and
as memoryviews with shape and format otherwise."""

import ctypes as C

try:
    import numpy
except ImportError:  # numpy is optional
    numpy = None

# ScalarType numbers of the library: struct format characters.
SCALAR_FORMATS = {1: "?", 2: "B", 3: "b", 4: "H", 5: "h", 6: "I", 7: "i", 8: "Q", 9: "q", 10: "f", 11: "d"}
# glTF component type numbers, used for ARF payload element types.
COMPONENT_FORMATS = {5120: "b", 5121: "B", 5122: "h", 5123: "H", 5125: "I", 5126: "f"}
FORMAT_SCALARS = {v: k for k, v in SCALAR_FORMATS.items()}
FORMAT_COMPONENTS = {v: k for k, v in COMPONENT_FORMATS.items()}
ITEMSIZE = {"?": 1, "B": 1, "b": 1, "H": 2, "h": 2, "I": 4, "i": 4, "Q": 8, "q": 8, "f": 4, "d": 8}


def empty(fmt, shape, use_numpy=True):
    """A writable block for `shape` values of `fmt`, and the address to fill."""
    count = 1
    for s in shape:
        count *= s
    if numpy is not None and use_numpy:
        arr = numpy.empty(tuple(shape), dtype=numpy.dtype(fmt))
        return arr, arr.ctypes.data
    # A ctypes block is calloc'ed: fresh zero pages, not a memset of the whole
    # block as bytearray does, which costs more than the read itself.
    block = (C.c_char * (count * ITEMSIZE[fmt]))()
    return block, C.addressof(block) if count else 0


def finish(block, fmt, shape):
    """The array (numpy) or a memoryview of `block` with its format and shape."""
    if not isinstance(block, (C.Array, bytearray)):
        return block
    view = memoryview(block).cast("B").cast(fmt)
    if len(shape) > 1 and all(shape):
        view = view.cast("B").cast(fmt, list(shape))
    return view


def as_block(values):
    """(contiguous bytes-like, format, shape) of an array, a memoryview or a nested sequence of floats."""
    if numpy is not None and isinstance(values, numpy.ndarray):
        arr = numpy.ascontiguousarray(values)
        return arr, arr.dtype.char if arr.dtype.char != "l" else "q", list(arr.shape)
    try:
        mv = memoryview(values)
        fmt = mv.format.lstrip("@=<")
        fmt = {"l": "q", "L": "Q"}.get(fmt, fmt)
        return mv, fmt, list(mv.shape)
    except TypeError:
        pass
    shape, flat = [], list(values)
    shape.append(len(flat))
    while flat and isinstance(flat[0], (list, tuple)):
        shape.append(len(flat[0]))
        flat = [x for row in flat for x in row]
    arr = (C.c_float * len(flat))(*flat)
    return memoryview(arr).cast("B").cast("f"), "f", shape
