"""The simulator's portmapper and VXI-11 core channel checked with rpcinfo (package rpcbind),
an ONC RPC client written apart from both ends. rpcinfo always asks a portmapper on port 111,
so the check runs in a private network namespace (unshare -rn), where the simulator's own
portmapper can take port 111 without touching the machine's. Skips when rpcinfo or such a
namespace is not available."""

import os
import re
import shutil
import subprocess
import sys

from sim_process import SKIP, Checker, Simulator

VXI11_CORE = 0x0607AF
INSIDE = "WAVELUME_RPCINFO_CHECK_INSIDE"


def rpcinfo(*arguments):
    result = subprocess.run(["rpcinfo", *arguments], capture_output=True, text=True, timeout=20)
    return result.returncode, result.stdout + result.stderr


def inside(program):
    subprocess.run(["ip", "link", "set", "lo", "up"], check=True, timeout=20)
    check = Checker()
    with Simulator(program, "--portmapper-port", "111") as simulator:
        core = simulator.ports["vxi11"]
        status, text = rpcinfo("-p", "127.0.0.1")
        listed = set(re.findall(r"^\s*(\d+)\s+(\d+)\s+tcp\s+(\d+)", text, re.MULTILINE))
        check.expect(status == 0 and {("100000", "2", "111"), (str(VXI11_CORE), "1", str(core))}
                     <= listed, "rpcinfo -p lists the portmapper and the core channel:\n" + text)
        for version in (["1"], []):
            status, text = rpcinfo("-t", "127.0.0.1", str(VXI11_CORE), *version)
            check.expect(status == 0 and "version 1 ready and waiting" in text,
                         "rpcinfo -t core %s:\n%s" % (version, text))
        status, text = rpcinfo("-n", str(core), "-t", "127.0.0.1", str(VXI11_CORE), "1")
        check.expect(status == 0 and "ready and waiting" in text, "rpcinfo -n core:\n" + text)
        status, text = rpcinfo("-n", str(core), "-t", "127.0.0.1", str(VXI11_CORE + 1), "1")
        check.expect(status != 0 and ("not available" in text or "not registered" in text),
                     "another program is refused:\n" + text)
        status, text = rpcinfo("-t", "127.0.0.1", "100000", "2")
        check.expect(status == 0 and "ready and waiting" in text, "portmapper NULL:\n" + text)
        simulator.finish()
    check.exit()


def main():
    program = sys.argv[1]
    if os.environ.get(INSIDE):
        inside(program)
    if shutil.which("rpcinfo") is None:
        print("skipped: rpcinfo not found (Debian package rpcbind)")
        sys.exit(SKIP)
    if shutil.which("unshare") is None or shutil.which("ip") is None:
        print("skipped: unshare or ip not found, no private network namespace for port 111")
        sys.exit(SKIP)
    probe = subprocess.run(["unshare", "-rn", "true"], capture_output=True, text=True, timeout=20)
    if probe.returncode != 0:
        print("skipped: no private network namespace here: " + probe.stderr.strip())
        sys.exit(SKIP)
    environment = dict(os.environ, **{INSIDE: "1"})
    result = subprocess.run(["unshare", "-rn", sys.executable, os.path.abspath(__file__), program],
                            env=environment, timeout=100)
    sys.exit(result.returncode)


main()
