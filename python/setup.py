"""Build step of the package: the ctypes layer is generated from the C
headers of the repository this directory sits in (codegen/emit_python.py),
and a library named by TALVEX_LIBRARY is copied into the package, so that the
installed package finds it without LD_LIBRARY_PATH. Without TALVEX_LIBRARY
the package looks for an installed libtalvex.so at import time."""

import os
import shutil
import subprocess
import sys
import tempfile

from setuptools import setup
from setuptools.command.build_py import build_py

HERE = os.path.dirname(os.path.abspath(__file__))
REPO = os.environ.get("TALVEX_SOURCE_DIR") or os.path.dirname(HERE)


def generate(target):
    codegen = os.path.join(REPO, "codegen")
    schemas = sorted(os.path.join(REPO, "schema", n) for n in os.listdir(os.path.join(REPO, "schema"))
                     if n.endswith(".json"))
    with tempfile.TemporaryDirectory() as generated:
        # The record header is generated too: run the record generator for it.
        subprocess.check_call([sys.executable, os.path.join(codegen, "generate.py"), "--out", generated] + schemas)
        subprocess.check_call([sys.executable, os.path.join(codegen, "emit_python.py"), "--out", target,
                               os.path.join(REPO, "sorvane"), os.path.join(generated, "sorvane")])


class BuildPy(build_py):
    def run(self):
        super().run()
        package = os.path.join(self.build_lib, "talvex")
        generate(os.path.join(package, "_flat.py"))
        library = os.environ.get("TALVEX_LIBRARY")
        if library:
            if not os.path.isabs(library):
                # pip builds in a directory of its own: a relative path means nothing there.
                raise SystemExit(f"TALVEX_LIBRARY must be an absolute path, not '{library}'")
            shutil.copy2(library, os.path.join(package, "libtalvex.so"))


setup(cmdclass={"build_py": BuildPy})
