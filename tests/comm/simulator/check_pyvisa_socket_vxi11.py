"""The simulator's raw socket and VXI-11 servers driven by an independent client: pyvisa with
the pure-Python pyvisa-py backend. Every "*IDN?" must come back, and every block written must
show up in the simulator's record with its exact size and MD5.

Debian's pyvisa-py sets the VXI-11 END flag only on a piece written when at most 1024 bytes
remain, so the simulator announces a maxRecvSize of 1024 here: every piece is then 1024 bytes
and the last one carries END. Replies are cut into 7-byte record-marking fragments to exercise
multi-fragment replies."""

import random
import sys
import time

from sim_process import IDENTIFICATION, SKIP, Checker, Simulator, md5

try:
    import pyvisa
    import pyvisa_py.protocols.rpc as rpc
except ImportError as error:
    print("skipped: pyvisa or pyvisa-py missing (%s)" % error)
    sys.exit(SKIP)

IDLE_GAP_S = 0.2


def payload(size, seed):
    data = bytearray(random.Random(seed).randbytes(size))
    # Line feeds inside a block must not end it.
    for position in range(0, size, 97):
        data[position] = 10
    return b"IQDA " + bytes(data)


def check_socket(check, manager, simulator):
    blocks = [payload(size, seed) for seed, size in enumerate((1, 1000, 65536, 3_000_000))]
    name = "TCPIP0::127.0.0.1::%d::SOCKET" % simulator.ports["socket"]
    inst = manager.open_resource(name, read_termination="\n", write_termination="\n",
                                 timeout=10000)
    check.expect(inst.query("*IDN?") + "\n" == IDENTIFICATION, "socket *IDN?")
    for block in blocks[:-1]:
        inst.write_raw(block)
        # The raw socket has no end marker: an idle line ends a block.
        time.sleep(IDLE_GAP_S * 2.5)
    check.expect(inst.query("*IDN?") + "\n" == IDENTIFICATION, "socket *IDN? after blocks")
    inst.write_raw(blocks[-1])
    inst.close()
    return blocks


def check_vxi11(check, manager, simulator):
    rpc.PMAP_PORT = simulator.ports["portmapper"]
    blocks = [payload(size, 10 + seed) for seed, size in enumerate((10, 1019, 1020, 100_000))]
    inst = manager.open_resource("TCPIP0::127.0.0.1::inst0::INSTR", timeout=10000)
    check.expect(inst.query("*IDN?") == IDENTIFICATION, "vxi11 *IDN?")
    for block in blocks:
        written = inst.write_raw(block)
        check.expect(written == len(block), "vxi11 write of %d bytes reports %s" % (len(block), written))
    # A reply read in 16-byte pieces: request count, then END on the last piece.
    inst.chunk_size = 16
    check.expect(inst.query("*IDN?") == IDENTIFICATION, "vxi11 *IDN? in 16-byte reads")
    inst.close()
    return blocks


def main():
    check = Checker()
    manager = pyvisa.ResourceManager("@py")
    with Simulator(sys.argv[1], "--max-recv-size", "1024", "--reply-fragment-size", "7",
                   "--block-idle-gap-ms", str(int(IDLE_GAP_S * 1000))) as simulator:
        socket_blocks = check_socket(check, manager, simulator)
        vxi11_blocks = check_vxi11(check, manager, simulator)
        time.sleep(0.2)
        simulator.finish()

    for transport, sent in (("socket", socket_blocks), ("vxi11", vxi11_blocks)):
        kept = [(size, digest) for t, _, size, digest in simulator.blocks if t == transport]
        check.expect(kept == [(len(b), md5(b)) for b in sent],
                     "%s blocks kept %s" % (transport, [size for size, _ in kept]))
        kinds = [kind for t, _, kind, _, _ in simulator.events if t == transport]
        check.expect(kinds[0] == "connect" and kinds[-1] == "close",
                     "%s session opens and closes: %s" % (transport, kinds))
    vxi11_reads = [size for t, _, kind, size, _ in simulator.events if t == "vxi11" and kind == "read"]
    check.expect(vxi11_reads[-4:] == [16, 16, 16, 3], "vxi11 16-byte read pieces %s" % vxi11_reads)
    check.exit()


main()
