"""Images: PNG and JPEG files and bytes to DataTree image objects (the keys
"imageFormat", "pixelFormat" and "pixels") and back."""

import os

from ._core import Error, function
from ._datatree import DataTree

UINT8 = 2  # ScalarType of 8-bit pixels
XYC, YXC, CYX = 1, 2, 3  # pixel layouts; YXC is numpy's (height, width, channels)


def load_image(path, scalar_type=UINT8, image_format=YXC):
    """The image of a .png, .jpg or .jpeg file as a DataTree object."""
    return _need("sorvane_loadImagePtr")(os.fspath(path), scalar_type, image_format)


def decode_image(data, name="", scalar_type=UINT8, image_format=YXC):
    """The image of PNG or JPEG bytes as a DataTree object."""
    return _need("sorvane_createImagePtr")(data, name, scalar_type, image_format)


def save_image(path, image):
    """Writes a DataTree image object (or a dict of its keys) as PNG."""
    if isinstance(image, DataTree):
        return _need("sorvane_saveImage")(os.fspath(path), image)
    with DataTree.from_python(image) as tree:
        return _need("sorvane_saveImage")(os.fspath(path), tree)


def pixels(image, use_numpy=True):
    """The pixel tensor of an image object."""
    with image._call("getObjectItem", "pixels") as tensor:
        return tensor.tensor(use_numpy)


def _need(name):
    f = function(name)
    if f is None:
        raise Error(f"{name} is not in this library")
    return f
