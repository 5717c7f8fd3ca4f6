"""Writes a held-out digit as an input file for `quavin run`, and prints which digit it is.

    python3 digit_to_npy.py INDEX FILE.npy

Needs only Python 3: the file is identical to what numpy.save() writes for the array.
"""

import struct
import sys
from pathlib import Path

PIXELS = 64
RECORD = PIXELS + 1  # plus the digit itself


def main():
    index, target = int(sys.argv[1]), sys.argv[2]
    held_out = Path(__file__).with_name("held_out.bin").read_bytes()
    record = held_out[index * RECORD : (index + 1) * RECORD]
    if len(record) != RECORD or index < 0:
        sys.exit(f"there is no digit {index}: INDEX must be 0 to {len(held_out) // RECORD - 1}")
    header = "{'descr': '<f4', 'fortran_order': False, 'shape': (1, 1, 8, 8), }"
    header = header.ljust(128 - 10 - 1) + "\n"
    with open(target, "wb") as file:
        file.write(b"\x93NUMPY\x01\x00" + struct.pack("<H", len(header)) + header.encode())
        file.write(struct.pack("<64f", *record[:PIXELS]))
    print(f"This is a {record[PIXELS]}.")


if __name__ == "__main__":
    main()
