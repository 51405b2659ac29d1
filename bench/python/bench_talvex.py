#!/usr/bin/env python3
"""Costs of the Python package, each against a reference measured in the same
process:

- reading a 64 MB dense payload into a numpy array (a bytearray without
  numpy) against ctypes.memmove of the same 64 MB;
- a generated getter (identity.age) per call against a bare ctypes call of
  sorvane_clearErrorMessage.

    python3 bench/python/bench_talvex.py [--repeat N]"""

import ctypes
import sys
import time

import talvex


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
    print(f"numpy: {'yes' if talvex.has_numpy else 'no (bytearray)'}")
    n = 16 * 1024 * 1024  # floats: 64 MB
    values = (ctypes.c_float * n)()
    with talvex.Arf.create("memory:") as arf:
        item = arf.data.add_dense(memoryview(values).cast("B").cast("f", [n // 4, 4]), name="big")
        source = (ctypes.c_char * (4 * n))()
        target = (ctypes.c_char * (4 * n))()
        ctypes.memmove(target, source, 4 * n)  # touch both blocks first
        t_memmove = best(lambda: ctypes.memmove(target, source, 4 * n), repeat)
        t_tensor = best(lambda: item.tensor(), repeat)
        mb = 4 * n / 1e6
        print(f"64 MB dense payload -> {'numpy' if talvex.has_numpy else 'bytearray'}: {t_tensor * 1e3:.1f} ms "
              f"({mb / t_tensor / 1e3:.2f} GB/s)")
        print(f"ctypes.memmove of 64 MB:              {t_memmove * 1e3:.1f} ms ({mb / t_memmove / 1e3:.2f} GB/s)")
        print(f"ratio (memmove time / payload time):  {t_memmove / t_tensor:.2f}x")

        identity = arf.identity
        lib = ctypes.CDLL(talvex.library_path)
        clear = lib.sorvane_clearErrorMessage
        clear.restype, clear.argtypes = None, []
        calls = 100000
        t_bare = per_call(clear, calls, repeat)
        t_getter = per_call(lambda: identity.age, calls, repeat)
        get_age = talvex.FUNCTIONS["sorvane_arf_Identity_getAge"]
        t_function = per_call(lambda: get_age(identity), calls, repeat)
        print(f"bare ctypes sorvane_clearErrorMessage: {t_bare * 1e9:.0f} ns/call")
        print(f"generated getter identity.age:         {t_getter * 1e9:.0f} ns/call ({t_getter / t_bare:.1f}x)")
        print(f"its function, called directly:         {t_function * 1e9:.0f} ns/call ({t_function / t_bare:.1f}x)")


if __name__ == "__main__":
    repeat = int(sys.argv[sys.argv.index("--repeat") + 1]) if "--repeat" in sys.argv else 5
    main(repeat)
