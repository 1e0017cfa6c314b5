#!/usr/bin/python3
"""Golden vectors of the Custom IQ engine, written from the published definitions alone.

  PRBS      Fibonacci shift registers on the ITU-T O.150 polynomials (x^7+x^6+1, x^9+x^5+1,
            x^15+x^14+1, x^23+x^18+1, x^31+x^28+1), all-ones seed, output the top stage before
            each shift; cross-checked against the output recurrence of the same polynomial.
  maps      APSK rings and square, 8-point and cross QAM with natural and Gray numbering, raw
            (before rms normalisation), one map per modulation type.
  LFM       a phase-continuous chain of linear sweeps, one phase step per sample.
  multitone the FFT bins a tone bank occupies after the notch is applied; the phases are random,
            so only the bin set, the transform length and the sample count are fixed.

Run with /usr/bin/python3 (numpy) from this folder; the test reads the text files it writes.
"""

import math
import os

import numpy as np

HERE = os.path.dirname(os.path.abspath(__file__))


def gray(x):
    return x ^ (x >> 1)


# --- PRBS -------------------------------------------------------------------------------------

PRBS = [("PN7", 7, 6), ("PN9", 9, 5), ("PN15", 15, 14), ("PN23", 23, 18), ("PN31", 31, 28)]
PRBS_BITS = 1024


def prbs_register(length, tap, count):
    register = (1 << length) - 1
    mask = register
    bits = []
    for _ in range(count):
        feedback = ((register >> (length - 1)) ^ (register >> (tap - 1))) & 1
        bits.append((register >> (length - 1)) & 1)
        register = ((register << 1) & mask) | feedback
    return bits


def prbs_recurrence(length, tap, count):
    # s[n + L] = s[n] ^ s[n + L - k]; the seed makes the first L outputs ones.
    bits = [1] * length
    while len(bits) < count:
        n = len(bits) - length
        bits.append(bits[n] ^ bits[n + length - tap])
    return bits[:count]


def write_prbs():
    with open(os.path.join(HERE, "prbs_bits.txt"), "w") as out:
        out.write("# name, then the first %d output bits from the all-ones seed\n" % PRBS_BITS)
        for name, length, tap in PRBS:
            bits = prbs_register(length, tap, PRBS_BITS)
            assert bits == prbs_recurrence(length, tap, PRBS_BITS)
            if length <= 15:  # maximal length: the period is 2^L - 1 and no shorter
                period = (1 << length) - 1
                full = prbs_register(length, tap, 2 * period)
                assert full[:period] == full[period:]
                assert sum(full[:period]) == (period + 1) // 2
            out.write("%s %s\n" % (name, "".join(map(str, bits))))


# --- Constellation maps ------------------------------------------------------------------------

APSK_RINGS = {
    16: [(4, 1.0, math.pi / 4, [12, 13, 14, 15], [12, 14, 15, 13]),
         (12, 2.84, math.pi / 4, list(range(12)), [0, 8, 10, 2, 6, 7, 3, 11, 9, 1, 5, 4])],
    32: [(4, 1.0, math.pi / 4, [28, 29, 30, 31], [17, 21, 23, 19]),
         (12, 2.84, math.pi / 4, list(range(16, 28)), [0, 1, 5, 4, 20, 22, 6, 7, 3, 2, 18, 16]),
         (16, 5.27, math.pi / 8, list(range(16)),
          [8, 25, 9, 13, 29, 12, 28, 30, 14, 31, 15, 11, 27, 10, 26, 24])],
}


def apsk_map(points, use_gray):
    result = {}
    for positions, radius, offset, natural, grays in APSK_RINGS[points]:
        for j in range(positions):
            angle = j * (2 * math.pi / positions) + offset
            key = (grays if use_gray else natural)[j]
            result[key] = (radius * math.cos(angle), radius * math.sin(angle))
    return result


def qam_map(n, use_gray):
    result = {}
    if n == 8:
        for i in range(8):
            c, r = i % 4, i // 4
            key = gray(c) + 4 * gray(r) if use_gray else i
            result[key] = (c - 1.5, 0.5 - r)
        return result
    k = round(math.sqrt(n))
    if k * k == n:
        half = (k - 1) / 2
        b = round(math.log2(k))
        for i in range(n):
            c, r = i % k, i // k
            key = gray(c) + (gray(r) << b) if use_gray else i
            result[key] = (c - half, half - r)
        return result
    return cross_qam_map(n, use_gray)


def cross_qam_map(n, use_gray):
    k = round(math.sqrt(n // 2))
    w = (n // 8) // k
    half = (k - 1) / 2
    result = {}
    if not use_gray:
        e = n // 8
        width = k + 2 * w
        for key in range(n):
            if key < e:
                u = key
                result[key] = (u // k - (w + half), u % k - half)
            elif key < n - e:
                u = key - e
                result[key] = (u // width - half, u % width - (w + half))
            else:
                u = key - (n - e)
                result[key] = (u // k + half + 1, u % k - half)
        return result

    def put(key, i, q):
        result[key] = (i, q)
        result[key + n // 2] = (-i, q)

    b = round(math.log2(w))
    for i in range(n // 32):
        r, c = i // w, i % w
        key0 = gray(i % w) + (gray(i >> b) << (b + 2))
        a, bb, p = r - half, -0.5 - r, half + 1 + c
        put(key0, a, p)
        put(key0 + w, bb, p)
        put(key0 + 3 * w, bb, -half - 1 - c)
        put(key0 + 2 * w, a, -half - 1 - c)
    kb = round(math.log2(k))
    for i in range(n // 8):
        q, m = i // k, i % k
        put(n // 8 + gray(i % k) + (gray(i >> kb) << kb), -half - 1 - q, half - m)
    for i in range(n // 4):
        q, m = i // k, i % k
        put(n // 4 + gray(i % k) + (gray(i >> kb) << kb), -0.5 - q, half - m)
    return result


# Modulation type values and names of the APSK and QAM families. 4096QAM is left out to keep the
# file small: it is the square form of 16QAM to 1024QAM once more.
MAPS = [(13, "16APSK", lambda g: apsk_map(16, g)), (14, "32APSK", lambda g: apsk_map(32, g))] + [
    (15 + e, "%dQAM" % (4 << e), (lambda n: lambda g: qam_map(n, g))(4 << e)) for e in range(10)]


def check_square_gray(points):
    # Horizontal and vertical neighbours of a square Gray map differ in exactly one bit.
    by_place = {(2 * i, 2 * q): key for key, (i, q) in points.items()}
    for (i, q), key in by_place.items():
        for neighbour in ((i + 2, q), (i, q + 2)):
            if neighbour in by_place:
                assert bin(key ^ by_place[neighbour]).count("1") == 1


def write_maps():
    with open(os.path.join(HERE, "constellation_maps.txt"), "w") as out:
        out.write("# type name gray N, then N raw points I Q in symbol order 0..N-1\n")
        for value, name, make in MAPS:
            for use_gray in (0, 1):
                points = make(use_gray == 1)
                n = len(points)
                assert sorted(points) == list(range(n)), (name, use_gray)
                assert len(set(points.values())) == n, (name, use_gray)
                if use_gray and "QAM" in name and round(math.sqrt(n)) ** 2 == n:
                    check_square_gray(points)
                out.write("%d %s %d %d\n" % (value, name, use_gray, n))
                out.write(" ".join("%r %r" % (points[s][0], points[s][1]) for s in range(n)))
                out.write("\n")


# --- LFM ---------------------------------------------------------------------------------------

def lfm_samples(rate, segments):
    d = 1.0 / rate
    phase = 0.0
    phases = []
    for start, stop, duration in segments:
        slope = (stop - start) / duration if duration > 0 else 0.0
        f = start + 0.5 * d * slope
        t = 0.0
        while t < duration:
            phases.append(phase)
            phase += 2 * math.pi * f * d
            t += d
            f += d * slope
    return np.exp(1j * np.array(phases))


# Powers of two throughout, so that the time steps add up exactly.
LFM_RATE = 2.0 ** 20
LFM_SWEEP = 2.0 ** -14
LFM_BANDWIDTH = 2.0 ** 18
LFM_OFFSET = 2.0 ** 16
LFM_CUSTOM = [(-100000.0, 100000.0, 2.0 ** -15), (100000.0, 100000.0, 2.0 ** -15),
              (100000.0, -50000.0, 2.0 ** -15), (0.0, 0.0, 0.0)]


def write_lfm():
    c, h, t = LFM_OFFSET, LFM_BANDWIDTH / 2, LFM_SWEEP
    cases = [
        ("Triangle", [(c - h, c + h, t), (c + h, c - h, t)], 2.0 * t),
        ("Up", [(c - h, c + h, t)], t),
        ("Down", [(c + h, c - h, t)], t),
        ("Custom", LFM_CUSTOM, sum(s[2] for s in LFM_CUSTOM)),
    ]
    with open(os.path.join(HERE, "lfm.txt"), "w") as out:
        out.write("# rate sweep_time bandwidth offset, then the custom segment list\n")
        out.write("%r %r %r %r\n" % (LFM_RATE, LFM_SWEEP, LFM_BANDWIDTH, LFM_OFFSET))
        out.write(" ".join("%r %r %r" % s for s in LFM_CUSTOM) + "\n")
        out.write("# per case: name waveform_length total_sample_points count, then I Q pairs\n")
        for name, segments, length in cases:
            samples = lfm_samples(LFM_RATE, segments)
            total = int(length * LFM_RATE)
            assert total == len(samples)
            out.write("%s %r %d %d\n" % (name, length, total, len(samples)))
            out.write(" ".join("%r %r" % (s.real, s.imag) for s in samples) + "\n")


# --- Multitone ---------------------------------------------------------------------------------

MULTITONE_CASES = [
    # Tones 1.0 to 2.0 MHz by 0.1: 1.3 (on the notch start), 1.4 and 1.5 go, 1.6 (on the stop) stays.
    ("notch_edges", "rate=1e7 mode=1 stop=2e6 start=1e6 number=11 single=0 notch=1 "
     "notch_stop=1.6e6 notch_start=1.3e6"),
    # The notch reaches beyond both ends: every tone stays.
    ("notch_covers_all", "rate=1e7 mode=1 stop=2e6 start=1e6 number=11 single=0 notch=1 "
     "notch_stop=2.5e6 notch_start=1e6"),
    # The notch ends on the last tone, so it does not cover all: only the last tone stays.
    ("notch_ends_on_stop", "rate=1e7 mode=1 stop=2e6 start=1e6 number=11 single=0 notch=1 "
     "notch_stop=2e6 notch_start=1e6"),
    # Span mode, one side: tones 0.25 to 2.0 MHz by 0.25; 0.75 and 1.0 go, 1.25 stays.
    ("span_single_side", "rate=1e7 mode=0 span=4e6 number=8 single=1 notch=1 "
     "notch_stop=1.25e6 notch_start=0.75e6"),
    # A start above the stop pulls the stop up with it.
    ("start_above_stop", "rate=1e7 mode=1 stop=1e6 start=1.5e6 number=3 single=0 notch=0"),
    # A stop below the start pulls the start down with it.
    ("stop_below_start", "rate=1e7 mode=1 start=2e6 stop=1.2e6 number=1 single=0 notch=0"),
]


def round_half_away(x):
    return int(math.floor(x + 0.5)) if x >= 0 else -int(math.floor(-x + 0.5))


def multitone_settings(program):
    s = {"rate": 500.0, "mode": 0, "span": 0.0, "start": 0.0, "stop": 0.0, "number": 2,
         "single": 0, "notch": 0, "notch_start": 0.0, "notch_stop": 0.0}
    for step in program.split():
        name, value = step.split("=")
        s[name] = float(value)
        if name == "start" and s["start"] > s["stop"]:
            s["stop"] = s["start"]
        if name == "stop" and s["start"] > s["stop"]:
            s["start"] = s["stop"]
    return s


def multitone_bins(s):
    n = int(s["number"])
    if s["mode"]:
        start, stop = s["start"], s["stop"]
    else:
        stop, start = s["span"] / 2, s["span"] / (2 * n)
    spacing = (stop - start) / (2 * n)
    if s["notch"] and n != 1:
        tones = [start + i * (stop - start) / (n - 1) for i in range(n)]
        covers_all = s["notch_start"] <= start and stop < s["notch_stop"]
        tones = [f for f in tones
                 if covers_all or not (s["notch_start"] <= f < s["notch_stop"])]
        if len(tones) >= 2:
            spacing = (max(tones) - min(tones)) / (2 * len(tones))
    elif s["notch"]:
        tones = [start]
    elif n < 2:
        tones = [(start + stop) / 2]
    else:
        tones = [start + i * (stop - start) / (n - 1) for i in range(n)]
    limit = min(0.1 * spacing, 30000.0)
    length = next((L for L in (8192, 16384, 32768, 65536) if s["rate"] / L <= limit), 65536)
    width = s["rate"] / length
    bins = set()
    for f in tones:
        b = round_half_away(f / width)
        bins.add(b)
        if not s["single"]:
            bins.add(length - 1 - b)
    total = int(length / s["rate"] * s["rate"])
    return length, total, sorted(bins)


def write_multitone():
    with open(os.path.join(HERE, "multitone.txt"), "w") as out:
        out.write("# name | setter program | transform length, total_sample_points | bins\n")
        for name, program in MULTITONE_CASES:
            length, total, bins = multitone_bins(multitone_settings(program))
            out.write("%s | %s | %d %d | %s\n" % (name, program, length, total,
                                                   " ".join(map(str, bins))))


if __name__ == "__main__":
    write_prbs()
    write_maps()
    write_lfm()
    write_multitone()
