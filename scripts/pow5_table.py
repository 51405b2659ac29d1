#!/usr/bin/env python3
"""Writes sorvane/archive/JsonPowers.inc: 5^q for q in [-342, 308] as 128-bit
values T (top bit set) and binary exponents E with T * 2^E <= 5^q < (T + 1) * 2^E,
i.e. truncated towards zero. Run from the repository root."""

import sys

LOW, HIGH = -342, 308


def entry(q):
    if q >= 0:
        p = 5 ** q
        bits = p.bit_length()
        if bits <= 128:
            return p << (128 - bits), bits - 128
        return p >> (bits - 128), bits - 128
    p = 5 ** -q
    m = p.bit_length() + 127  # 2^m / p lies in (2^127, 2^128)
    return (1 << m) // p, -m


def main():
    out = sys.stdout if len(sys.argv) < 2 else open(sys.argv[1], "w")
    out.write("// Made by scripts/pow5_table.py: 5^q for q from %d to %d, truncated to 128 bits.\n" % (LOW, HIGH))
    out.write("// {high 64 bits, low 64 bits, binary exponent}\n")
    for q in range(LOW, HIGH + 1):
        t, e = entry(q)
        assert (1 << 127) <= t < (1 << 128)
        out.write("{0x%016xull, 0x%016xull, %d},  // %d\n" % (t >> 64, t & ((1 << 64) - 1), e, q))


main()
