"""Runs wavelume-instrument-sim for a check script: starts it on free ports, and at the end
closes its standard input and parses the record it prints."""

import hashlib
import subprocess
import sys

IDENTIFICATION = "Wavelume,Loopback Instrument Simulator,SIM0001,1.0\n"
SKIP = 77


class Simulator:
    def __init__(self, program, *arguments):
        self._process = subprocess.Popen(
            [program, *arguments], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        words = self._process.stdout.readline().split()
        if len(words) != 8:
            self._process.kill()
            raise RuntimeError("simulator did not report its ports: %r" % words)
        self.ports = dict(zip(words[::2], map(int, words[1::2])))
        self.events = []
        self.blocks = []

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        if self._process.poll() is None:
            self._process.kill()
            self._process.wait()

    def finish(self):
        """Stops the simulator and reads its record: events as (transport, session, kind, size,
        head bytes) and blocks as (transport, session, size, md5)."""
        output, _ = self._process.communicate(timeout=30)
        lines = output.splitlines()
        if not lines or lines[-1] != "end" or self._process.returncode != 0:
            raise RuntimeError("simulator ended badly (%s): %r" % (self._process.returncode, lines[-3:]))
        for line in lines[:-1]:
            fields = line.split()
            if fields[0] == "event":
                head = b"" if fields[5] == "-" else bytes.fromhex(fields[5])
                self.events.append((fields[1], int(fields[2]), fields[3], int(fields[4]), head))
            elif fields[0] == "block":
                self.blocks.append((fields[1], int(fields[2]), int(fields[3]), fields[4]))


def md5(data):
    return hashlib.md5(data).hexdigest()


class Checker:
    """Counts failed expectations and prints each one."""

    def __init__(self):
        self.failures = 0

    def expect(self, condition, what):
        if not condition:
            self.failures += 1
            print("FAILED: " + what, flush=True)
        return condition

    def exit(self):
        print("%d failure(s)" % self.failures)
        sys.exit(1 if self.failures else 0)
