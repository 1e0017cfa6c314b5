#!/usr/bin/python3
"""Writes the import tests' input files into the folder given as the only argument.

MAT-files come from SciPy's savemat, an independent writer; the few layouts savemat never
writes (big-endian, small-form numbers, unknown elements, version 7.3 headers, damaged
elements) are assembled here byte by byte after the MAT-file Level 5 format document.
expected.txt lists what savemat was given: one line per variable, "name RxC kind values...",
complex values as real and imaginary pairs.
"""
import os
import struct
import sys
import zlib

import numpy as np
import scipy.io

out = sys.argv[1]


def path(name):
    return os.path.join(out, name)


rng = np.random.default_rng(7)
variables = {}
for dtype in ["int8", "uint8", "int16", "uint16", "int32", "uint32", "int64", "uint64"]:
    info = np.iinfo(dtype)
    values = rng.integers(max(info.min, -30000), min(info.max, 30000), 16, endpoint=True)
    values[0] = info.min if info.min >= -30000 else -30000
    variables[dtype + "_row"] = values.astype(dtype)
variables["single_row"] = rng.uniform(-2, 2, 16).astype("float32")
variables["double_column"] = rng.uniform(-3, 3, (24, 1))
variables["complex_row"] = rng.uniform(-1, 1, 20) + 1j * rng.uniform(-1, 1, 20)
variables["matrix_2x5"] = rng.uniform(-1, 1, (2, 5))

with open(path("expected.txt"), "w") as expected:
    for name, value in variables.items():
        shape = value.shape if value.ndim == 2 else (1, value.size)
        flat = value.flatten(order="F")
        kind = "complex" if np.iscomplexobj(value) else "real"
        numbers = np.column_stack([flat.real, flat.imag]).ravel() if kind == "complex" else flat
        expected.write("%s %dx%d %s %s\n" % (name, shape[0], shape[1], kind,
                                               " ".join(repr(float(v)) for v in numbers)))
scipy.io.savemat(path("plain.mat"), variables, do_compression=False)
scipy.io.savemat(path("compressed.mat"), variables, do_compression=True)

# Text files written by numpy: I, Q columns.
columns = np.column_stack([rng.uniform(-1, 1, 50), rng.uniform(-0.5, 0.5, 50)])
np.savetxt(path("columns_comma.csv"), columns, fmt="%.17g", delimiter=",")
np.savetxt(path("columns_space.txt"), columns, fmt="%.17g", delimiter="  \t")
np.savetxt(path("columns.expected"), columns, fmt="%.17g")
np.savetxt(path("i_only.txt"), columns[:, 0], fmt="%.17g")
np.savetxt(path("q_only.txt"), columns[:, 1], fmt="%.17g")
np.savetxt(path("q_short.txt"), columns[:-1, 1], fmt="%.17g")


# Hand-assembled MAT-files.
def header(order, text=b"MATLAB 5.0 MAT-file, written by the import tests"):
    indicator = b"IM" if order == "<" else b"MI"
    return text.ljust(116, b" ") + b"\0" * 8 + struct.pack(order + "H", 0x0100) + indicator


def element(order, data_type, data):
    # Compressed elements are not padded.
    padding = b"\0" * (-len(data) % 8 if data_type != 15 else 0)
    return struct.pack(order + "II", data_type, len(data)) + data + padding


def small_element(order, data_type, data):
    return struct.pack(order + "I", (len(data) << 16) | data_type) + data.ljust(4, b"\0")


def matrix(order, name, dims, parts, flags=6, name_small=False):
    body = element(order, 6, struct.pack(order + "II", flags, 0))
    body += element(order, 5, struct.pack(order + "%di" % len(dims), *dims))
    body += small_element(order, 1, name) if name_small else element(order, 1, name)
    for part in parts:
        body += part
    return element(order, 14, body)


def doubles(order, values):
    return element(order, 9, struct.pack(order + "%dd" % len(values), *values))


values = [0.5, -1.25, 3.0, -0.125, 2.5, 1.0]
for order, name in (("<", "little.mat"), (">", "big.mat")):
    with open(path(name), "wb") as f:
        f.write(header(order))
        f.write(matrix(order, b"wave", [1, 6], [doubles(order, values)]))
        f.write(element(order, 15, zlib.compress(matrix(order, b"zipped", [1, 6],
                                                         [doubles(order, values[::-1])]))))
        f.write(matrix(order, b"iq", [1, 3], [doubles(order, values[:3]),
                                              doubles(order, values[3:])], flags=6 | 0x800))

with open(path("quirks.mat"), "wb") as f:
    f.write(header("<"))
    # A single 1.5 in small form, its name in small form too.
    f.write(matrix("<", b"one", [1, 1], [small_element("<", 7, struct.pack("<f", 1.5))],
                   name_small=True))
    f.write(element("<", 99, b"unknown!"))
    f.write(matrix("<", b"after", [1, 6], [doubles("<", values)]))
    f.write(matrix("<", b"col", [6, 1], [doubles("<", values)]))

with open(path("hostile.mat"), "wb") as f:
    f.write(header("<"))
    f.write(matrix("<", b"mismatch", [1, 7], [doubles("<", values)]))
    f.write(matrix("<", b"cells", [1, 1], [doubles("<", values)], flags=1))
    f.write(element("<", 15, b"this is not a zlib stream"))
    # Claims 2 GiB once inflated.
    f.write(element("<", 15, zlib.compress(struct.pack("<II", 14, 2 ** 31) + b"\0" * 64)))
    # Declares 64 bytes and inflates to 64 MiB.
    f.write(element("<", 15, zlib.compress(struct.pack("<II", 14, 64) + b"\0" * 2 ** 26)))
    f.write(matrix("<", b"good", [1, 6], [doubles("<", values)]))
    # Cut off: declares more bytes than follow.
    f.write(struct.pack("<II", 14, 4096) + b"\0" * 16)

with open(path("v73.mat"), "wb") as f:
    f.write(b"MATLAB 7.3 MAT-file, Platform: GLNXA64, Created on: Mon Jan  5 10:00:00 2026 "
            b"HDF5 schema 1.00 .".ljust(512, b" ") + b"\x89HDF\r\n\x1a\n" + b"\0" * 64)
with open(path("hdf5.mat"), "wb") as f:
    f.write(b"\x89HDF\r\n\x1a\n" + b"\0" * 256)
with open(path("not_mat.mat"), "wb") as f:
    f.write(b"x" * 200)
