#!/usr/bin/python3
"""Independent analysis of an .ARB file with numpy: reads the header and the int16 samples itself.

arb_spectrum.py FILE tones   -> the frequencies (Hz) of the spectral lines within 20 dB of the peak
arb_spectrum.py FILE chirp   -> slope (Hz/s) and start frequency (Hz) of a least-squares line
                                through the instantaneous frequency
"""
import sys

import numpy as np


def read_arb(path):
    data = open(path, "rb").read()
    start = data.find(b",IQData,") + len(b",IQData,")
    header = data[:start].decode("ascii").split(",")
    rate = float(header[header.index("SampleRate") + 1])
    words = np.frombuffer(data[start:start + (len(data) - start) // 4 * 4], dtype="<i2")
    samples = (words[0::2] + 1j * words[1::2]) / 32767.0
    return samples, rate


def main():
    samples, rate = read_arb(sys.argv[1])
    if sys.argv[2] == "tones":
        power = np.abs(np.fft.fft(samples)) ** 2
        frequencies = np.fft.fftfreq(len(samples), 1.0 / rate)
        lines = sorted(frequencies[power > power.max() / 100.0])
        print(" ".join("%.3f" % f for f in lines))
    else:
        phase = np.unwrap(np.angle(samples))
        frequency = np.diff(phase) * rate / (2 * np.pi)
        time = (np.arange(len(frequency)) + 0.5) / rate
        slope, start = np.polyfit(time, frequency, 1)
        print("%.6e %.6e" % (slope, start))


if __name__ == "__main__":
    main()
