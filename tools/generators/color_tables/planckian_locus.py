#!/usr/bin/env python3
# Run by `make test`, and by maintainers to write the file again.
"""Writes colorimetry/PlanckianLocus.cpp: the Planckian locus in CIE 1960 u, v, with derivatives, to all digits of a double.

planckian_locus.py CSV    CSV: the colour-matching functions, as described in ../README.md
"""
import csv
import sys

from mpmath import exp, mp, mpf, nstr

mp.dps = 30
C2 = mpf("1.438776877e-2")  # second radiation constant h c / k in m K, exact since the SI of 2019
STEP = 5  # mired
LAST = 1250


def read_functions(path):
    """Returns for each wavelength the exponent of Planck's law per mired, and the functions times its other factors."""
    with open(path, newline="") as file:
        rows = list(csv.reader(file))[1:]
    functions = []
    for nanometres, *matching in rows:
        wavelength = mpf(nanometres) * mpf("1e-9")
        functions.append((C2 * mpf("1e-6") / wavelength, [mpf(value) * wavelength**-4 for value in matching]))
    return functions


def bose(x):
    """Returns x / (e^x - 1) and its derivative."""
    if x == 0:
        return mpf(1), mpf(-1) / 2
    power = exp(x)
    return x / (power - 1), (power - 1 - x * power) / (power - 1) ** 2


def locus(functions, mired):
    """Returns u, v and their derivatives by the reciprocal temperature in mired.

    Planck's law, times the temperature: finite also at 0 mired. A factor common to all wavelengths cancels out.
    """
    sums = [mpf(0)] * 3
    slopes = [mpf(0)] * 3
    for per_mired, matching in functions:
        value, slope = bose(per_mired * mired)
        slope *= per_mired
        for i in range(3):
            sums[i] += value * matching[i]
            slopes[i] += slope * matching[i]
    divisor = sums[0] + 15 * sums[1] + 3 * sums[2]
    divisor_slope = slopes[0] + 15 * slopes[1] + 3 * slopes[2]
    result = []
    for factor, i in ((4, 0), (6, 1)):
        result.append(factor * sums[i] / divisor)
    for factor, i in ((4, 0), (6, 1)):
        result.append(factor * (slopes[i] * divisor - sums[i] * divisor_slope) / divisor**2)
    return result


def main():
    functions = read_functions(sys.argv[1])
    print("// Written by tools/generators/color_tables/planckian_locus.py; see tools/generators/README.md.")
    print("// clang-format off\n")
    print('#include "PlanckianLocus.h"\n')
    print("namespace tavrin::colorimetry {\n")
    print(f"const std::array<LocusNode, {LAST // STEP + 1}> planckianLocus = {{{{")
    for mired in range(0, LAST + 1, STEP):
        u, v, du, dv = (nstr(value, 17) for value in locus(functions, mired))
        print(f"    {{{u}, {v}, {du}, {dv}}},  // {mired} mired")
    print("}};\n\n}  // namespace tavrin::colorimetry")


main()
