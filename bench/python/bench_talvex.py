#!/usr/bin/env python3
"""Costs of the Python package, each against a reference measured in the same
process:

- reading a 64 MB dense payload into a numpy array (a bytearray without
  numpy) against ctypes.memmove of the same 64 MB;
- a generated getter (mesh.id) per call against a bare ctypes call of
  sorvane_clearErrorMessage.

    python3 bench/python/bench_talvex.py [--repeat N]"""

import ctypes
import sys
import time

import talvex
from talvex import _tensor


def best(f, repeat):
    times = []
    for _ in range(repeat):
        t = time.perf_counter()
        f()
        times.append(time.perf_counter() - t)
    return min(times)


def per_call(f, n, repeat):
    def run():
        for _ in range(n):
            f()
    return best(run, repeat) / n


def main(repeat):
    print(f"library: {talvex.library_path}")
    print(f"numpy: {'yes' if talvex.has_numpy else 'no (ctypes blocks and memoryviews)'}")
    n = 16 * 1024 * 1024  # floats: 64 MB
    nbytes = 4 * n
    values = (ctypes.c_float * n)(*range(1000))
    kind = "numpy array" if talvex.has_numpy else "memoryview (ctypes block)"
    with talvex.Arf.create("memory:") as arf:
        item = arf.data.add_dense(memoryview(values).cast("B").cast("f", [n // 4, 4]), name="big")
        source = (ctypes.c_char * nbytes).from_buffer(values)

        def fresh_block():
            block, address = _tensor.empty("f", [n // 4, 4])
            return block, address

        def memmove_fresh():
            block, address = fresh_block()
            ctypes.memmove(address, source, nbytes)

        target, address = fresh_block()
        ctypes.memmove(address, source, nbytes)  # touch the reused block once
        t_memmove = best(lambda: ctypes.memmove(address, source, nbytes), repeat)
        t_into = best(lambda: item.tensor_into(target), repeat)
        t_memmove_fresh = best(memmove_fresh, repeat)
        t_tensor = best(lambda: item.tensor(), repeat)
        mb = nbytes / 1e6
        print(f"64 MB dense payload into a new {kind}: {t_tensor * 1e3:.1f} ms "
              f"({mb / t_tensor / 1e3:.2f} GB/s)")
        print(f"  ctypes.memmove of 64 MB into a new block of the same kind: {t_memmove_fresh * 1e3:.1f} ms"
              f" -> ratio {t_memmove_fresh / t_tensor:.2f}x")
        print(f"64 MB dense payload into an existing array (tensor_into): {t_into * 1e3:.1f} ms "
              f"({mb / t_into / 1e3:.2f} GB/s)")
        print(f"  ctypes.memmove of 64 MB into an existing block: {t_memmove * 1e3:.1f} ms"
              f" -> ratio {t_memmove / t_into:.2f}x")

        mesh = arf.components.meshes.add("m", True, 0)
        identity = arf.identity
        lib = ctypes.CDLL(talvex.library_path)
        clear = lib.sorvane_clearErrorMessage
        clear.restype, clear.argtypes = None, []
        calls = 100000
        t_bare = per_call(clear, calls, repeat)
        t_getter = per_call(lambda: mesh.id, calls, repeat)
        t_optional = per_call(lambda: identity.age, calls, repeat)
        get_id = talvex.FUNCTIONS["sorvane_arf_Mesh_getId"]
        t_function = per_call(lambda: get_id(mesh), calls, repeat)
        print(f"bare ctypes sorvane_clearErrorMessage:     {t_bare * 1e9:.0f} ns/call")
        print(f"generated getter mesh.id:                  {t_getter * 1e9:.0f} ns/call ({t_getter / t_bare:.1f}x)")
        print(f"its function sorvane_arf_Mesh_getId(mesh): {t_function * 1e9:.0f} ns/call ({t_function / t_bare:.1f}x)")
        print(f"optional value identity.age (has + get):   {t_optional * 1e9:.0f} ns/call ({t_optional / t_bare:.1f}x)")

if __name__ == "__main__":
    repeat = int(sys.argv[sys.argv.index("--repeat") + 1]) if "--repeat" in sys.argv else 5
    main(repeat)
