#!/usr/bin/env python3
# Run by `make test`, and by maintainers to write the file again.
"""Writes reference.csv: correlated colour temperature and Duv to 12 digits, from Planck's law alone.

reference.py CSV    CSV: the colour-matching functions, tools/generators/color_tables/cie1931_2deg_1nm.csv

The definition (CIE 15, ANSI C78.377) is computed with 40 digits: the temperature of the Planckian radiator that is
nearest in CIE 1960 u, v. A scan finds the neighbourhood, and Newton's method on the derivative of the squared
distance, by differences, the minimum. No table, interpolation or derivative of the library is used.
"""
import csv
import sys

from mpmath import exp, mp, mpf, nstr, sqrt

mp.dps = 40
C2 = mpf("1.438776877e-2")

NAMED = [
    ("D50", "0.34567", "0.35850"), ("D55", "0.33242", "0.34743"), ("D65", "0.31272", "0.32903"),
    ("D65 of sRGB", "0.3127", "0.3290"), ("D75", "0.29902", "0.31485"), ("E", "0.333333", "0.333333"),
    ("A", "0.44758", "0.40745"), ("C", "0.31006", "0.31616"),
    ("2700 K", "0.4578", "0.4101"), ("3000 K", "0.4338", "0.4030"), ("3500 K", "0.4073", "0.3917"),
    ("4000 K", "0.3818", "0.3797"), ("4500 K", "0.3611", "0.3658"), ("5000 K", "0.3447", "0.3553"),
    ("5700 K", "0.3287", "0.3417"), ("6500 K", "0.3123", "0.3282"),
]
KELVINS = [1000, 1500, 2400, 3100, 4100, 5300, 7000, 9500, 13000, 20000]
DUVS = ["-0.05", "-0.02", "0", "0.006", "0.05"]


def read_functions(path):
    with open(path, newline="") as file:
        return [[mpf(cell) for cell in row] for row in list(csv.reader(file))[1:]]


class Locus:
    def __init__(self, functions):
        self.weights = [((nm * mpf("1e-9")) ** -5, C2 / (nm * mpf("1e-9")), x, y, z) for nm, x, y, z in functions]
        self.coarse = [(kelvin, self.at(kelvin)) for kelvin in (1000000 / mpf(mired) for mired in range(10, 1250, 20))]

    def at(self, kelvin):
        x = y = z = mpf(0)
        for weight, exponent, xbar, ybar, zbar in self.weights:
            radiance = weight / (exp(exponent / kelvin) - 1)
            x += radiance * xbar
            y += radiance * ybar
            z += radiance * zbar
        divisor = x + 15 * y + 3 * z
        return 4 * x / divisor, 6 * y / divisor

    def nearest(self, u, v):
        """Returns the temperature and the signed distance of the nearest point."""
        def square(point):
            return (point[0] - u) ** 2 + (point[1] - v) ** 2

        mired = 1000000 / min(self.coarse, key=lambda entry: square(entry[1]))[0]
        step = mpf("1e-8")
        while True:
            before, here, after = (square(self.at(1000000 / (mired + offset))) for offset in (-step, 0, step))
            change = (after - before) / 2 * step / (before - 2 * here + after)
            mired -= change
            if abs(change) < mpf("1e-7"):  # the convergence is quadratic
                break
        foot = self.at(1000000 / mired)
        return 1000000 / mired, sqrt(square(foot)) * (1 if v > foot[1] else -1)

    def off(self, kelvin, duv):
        """Returns the point at a distance from the locus, along a normal from a numerical derivative."""
        here, ahead = self.at(kelvin), self.at(kelvin * (1 - mpf("1e-15")))
        along = [ahead[i] - here[i] for i in range(2)]
        length = sqrt(along[0] ** 2 + along[1] ** 2)
        return here[0] - along[1] / length * duv, here[1] + along[0] / length * duv


def main():
    locus = Locus(read_functions(sys.argv[1]))
    print("name,x,y,kelvin,duv")

    def write(name, x, y):
        x, y = mpf(x), mpf(y)
        divisor = -2 * x + 12 * y + 3
        kelvin, duv = locus.nearest(4 * x / divisor, 6 * y / divisor)
        print(f"{name},{nstr(x, 17)},{nstr(y, 17)},{nstr(kelvin, 12)},{nstr(duv, 9)}")

    for row in NAMED:
        write(*row)
    for kelvin in KELVINS:
        for duv in DUVS:
            u, v = locus.off(mpf(kelvin), mpf(duv))
            divisor = 2 * u - 8 * v + 4
            write(f"{kelvin} K {duv}", mpf(nstr(3 * u / divisor, 8)), mpf(nstr(2 * v / divisor, 8)))


main()
