"""Finds and loads libtalvex.so: the copy placed in the package by the build
first, then an installed library (pkg-config, the standard library
directories, the dynamic loader's own search)."""

import ctypes
import os
import subprocess

NAME = "libtalvex.so"


def _candidates():
    yield os.path.join(os.path.dirname(os.path.abspath(__file__)), NAME)
    try:
        libdir = subprocess.run(["pkg-config", "--variable=libdir", "talvex"], capture_output=True, text=True,
                                timeout=10).stdout.strip()
        if libdir:
            yield os.path.join(libdir, NAME)
    except (OSError, subprocess.SubprocessError):
        pass
    for d in ("/usr/local/lib", "/usr/local/lib64", "/usr/local/lib/x86_64-linux-gnu", "/usr/lib/x86_64-linux-gnu",
              "/usr/lib64", "/usr/lib"):
        yield os.path.join(d, NAME)


def load():
    """(CDLL, absolute path) of the first library found."""
    for path in _candidates():
        if os.path.isfile(path):
            return ctypes.CDLL(path), os.path.realpath(path)
    # Last resort: the loader's search (ld.so.cache, DT_RUNPATH of the interpreter).
    lib = ctypes.CDLL(NAME)
    return lib, _loaded_path(lib) or NAME


def _loaded_path(lib):
    try:
        with open("/proc/self/maps", encoding="utf-8") as f:
            for line in f:
                if line.rstrip().endswith("/" + NAME):
                    return line.split(None, 5)[5].strip()
    except OSError:
        pass
    return None
