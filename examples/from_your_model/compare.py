#!/usr/bin/env python3
"""Compares two arrays saved by NumPy, and exits with 1 if they differ.

    compare.py EXPECTED.npy FOUND.npy [TOLERANCE]
"""

import sys

import numpy

expected, found = numpy.load(sys.argv[1]), numpy.load(sys.argv[2])
tolerance = float(sys.argv[3]) if len(sys.argv) > 3 else 1e-5
difference = numpy.abs(expected.astype(float) - found).max() / max(numpy.abs(expected.astype(float)).max(), 1e-30)
print(f"largest difference: {difference:.1e} of the largest value")
sys.exit(0 if expected.shape == found.shape and difference <= tolerance else 1)
