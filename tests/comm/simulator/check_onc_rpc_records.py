"""The simulator's ONC RPC servers (portmapper and VXI-11 core channel) driven by a minimal client
written here from RFC 5531 and the VXI-11 specification: calls cut into many record-marking
fragments, replies cut into 7-byte fragments by the simulator, the standard rejections, and the
VXI-11 error codes of links, oversized writes and reads with nothing to read."""

import socket
import struct
import sys

from sim_process import IDENTIFICATION, Checker, Simulator

PORTMAPPER, CORE = 100000, 0x0607AF
CREATE_LINK, DEVICE_WRITE, DEVICE_READ, DESTROY_LINK = 10, 11, 12, 23
END_FLAG, REASON_END, REASON_REQUEST_COUNT = 0x08, 0x04, 0x01
MAX_RECEIVE = 64


def opaque(data):
    return struct.pack(">I", len(data)) + data + bytes(-len(data) % 4)


class Connection:
    def __init__(self, port, fragment):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=10)
        self.fragment = fragment
        self.xid = 1000

    def call(self, program, version, procedure, arguments=b"", rpc_version=2):
        """Sends one call, cut into fragments of `fragment` bytes; returns the reply words after
        the xid and the message type."""
        self.xid += 1
        message = struct.pack(">6I", self.xid, 0, rpc_version, program, version, procedure)
        message += struct.pack(">4I", 0, 0, 0, 0) + arguments
        pieces = [message[i:i + self.fragment] for i in range(0, len(message), self.fragment)]
        for index, piece in enumerate(pieces):
            last = 0x80000000 if index == len(pieces) - 1 else 0
            self.socket.sendall(struct.pack(">I", last | len(piece)) + piece)
        reply, fragments = b"", 0
        while True:
            mark = struct.unpack(">I", self._exact(4))[0]
            reply += self._exact(mark & 0x7FFFFFFF)
            fragments += 1
            if mark & 0x80000000:
                break
        xid, message_type = struct.unpack(">2I", reply[:8])
        assert xid == self.xid and message_type == 1
        self.fragments = fragments
        return reply[8:]

    def accepted(self, *arguments, **options):
        """(accept status, results) of an accepted call."""
        body = self.call(*arguments, **options)
        state, _, _, status = struct.unpack(">4I", body[:16])
        assert state == 0
        return status, body[16:]

    def _exact(self, size):
        data = b""
        while len(data) < size:
            piece = self.socket.recv(size - len(data))
            if not piece:
                raise RuntimeError("connection closed")
            data += piece
        return data


def main():
    check = Checker()
    with Simulator(sys.argv[1], "--max-recv-size", str(MAX_RECEIVE),
                   "--reply-fragment-size", "7") as simulator:
        mapper = Connection(simulator.ports["portmapper"], 4)
        status, results = mapper.accepted(PORTMAPPER, 2, 3, struct.pack(">4I", CORE, 1, 6, 0))
        check.expect(status == 0 and struct.unpack(">I", results)[0] == simulator.ports["vxi11"],
                     "GETPORT of the core channel in 4-byte call fragments")
        status, results = mapper.accepted(PORTMAPPER, 2, 4)
        words = struct.unpack(">%dI" % (len(results) // 4), results)
        check.expect(status == 0 and (1, CORE, 1, 6, simulator.ports["vxi11"]) ==
                     words[5 * 2:5 * 3], "DUMP lists the core channel: %s" % (words,))
        body = mapper.call(PORTMAPPER, 2, 0, rpc_version=3)
        check.expect(struct.unpack(">4I", body) == (1, 0, 2, 2), "RPC_MISMATCH for RPC version 3")

        core = Connection(simulator.ports["vxi11"], 5)
        status, results = core.accepted(CORE, 2, 0)
        check.expect(status == 2 and struct.unpack(">2I", results) == (1, 1), "PROG_MISMATCH 1..1")
        check.expect(core.accepted(CORE + 1, 1, 0)[0] == 1, "PROG_UNAVAIL")
        check.expect(core.accepted(CORE, 1, 99)[0] == 3, "PROC_UNAVAIL")
        check.expect(core.accepted(CORE, 1, CREATE_LINK, b"\0\0")[0] == 4, "GARBAGE_ARGS")

        status, results = core.accepted(CORE, 1, CREATE_LINK,
                                        struct.pack(">3I", 7, 0, 0) + opaque(b"bogus"))
        check.expect(struct.unpack(">i", results[:4])[0] == 3, "unknown device not accessible")
        status, results = core.accepted(CORE, 1, CREATE_LINK,
                                        struct.pack(">3I", 7, 0, 0) + opaque(b"inst0"))
        error, link, _, max_receive = struct.unpack(">iIII", results)
        check.expect(error == 0 and max_receive == MAX_RECEIVE, "create_link announces maxRecvSize")

        def write(data, flags):
            return struct.unpack(">iI", core.accepted(
                CORE, 1, DEVICE_WRITE, struct.pack(">4I", link, 1000, 0, flags) + opaque(data))[1])

        def read(count):
            results = core.accepted(CORE, 1, DEVICE_READ, struct.pack(">6I", link, count, 1000, 0, 0, 0))[1]
            error, reason, length = struct.unpack(">iII", results[:12])
            return error, reason, results[12:12 + length]

        check.expect(read(256)[0] == 15, "a read with nothing pending times out")
        check.expect(write(b"*ID", 0) == (0, 3) and write(b"N?\n", END_FLAG) == (0, 3),
                     "a command in two device_write pieces")
        error, reason, first = read(40)
        check.expect(error == 0 and reason == REASON_REQUEST_COUNT and len(first) == 40,
                     "first piece of the reply ends on the request count")
        error, reason, rest = read(256)
        check.expect(error == 0 and reason == REASON_END and first + rest == IDENTIFICATION.encode(),
                     "the rest of the reply ends with END")
        check.expect(core.fragments > 1, "replies arrive in several fragments")
        check.expect(write(bytes(MAX_RECEIVE + 1), END_FLAG)[0] == 5, "a piece above maxRecvSize")
        destroy = struct.pack(">I", link)
        check.expect(core.accepted(CORE, 1, DESTROY_LINK, destroy)[1] == bytes(4), "destroy_link")
        check.expect(core.accepted(CORE, 1, DESTROY_LINK, destroy)[1] == struct.pack(">i", 4),
                     "a destroyed link is invalid")
        core.socket.close()
        mapper.socket.close()
        simulator.finish()
    kinds = [(kind, size) for transport, _, kind, size, _ in simulator.events if transport == "vxi11"]
    check.expect(kinds == [("connect", 0), ("write", 6), ("read", 40), ("read", 11), ("close", 0)],
                 "vxi11 wire sequence %s" % kinds)
    check.exit()


main()
