"""The simulator's HiSLIP server driven by a minimal client written here from the IVI-6.1
standard (HiSLIP 1.0), independent of the C++ code on both ends: the two-channel
initialization, maximum message size, message IDs and Data/DataEnd."""

import random
import socket
import struct
import sys

from sim_process import IDENTIFICATION, Checker, Simulator, md5

INITIALIZE, INITIALIZE_RESPONSE, DATA, DATA_END = 0, 1, 6, 7
ASYNC_MAXIMUM_MESSAGE_SIZE, ASYNC_MAXIMUM_MESSAGE_SIZE_RESPONSE = 15, 16
ASYNC_INITIALIZE, ASYNC_INITIALIZE_RESPONSE = 17, 18
FIRST_MESSAGE_ID = 0xFFFFFF00
SERVER_MAXIMUM = 65536


class Channel:
    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port), timeout=10)

    def send(self, message_type, control=0, parameter=0, payload=b""):
        self.socket.sendall(struct.pack(">2sBBIQ", b"HS", message_type, control, parameter,
                                        len(payload)) + payload)

    def receive(self):
        """(type, control, parameter, payload), or None when the server closed."""
        header = self._exact(16)
        if header is None:
            return None
        prologue, message_type, control, parameter, length = struct.unpack(">2sBBIQ", header)
        if prologue != b"HS":
            raise RuntimeError("reply without the HiSLIP prologue")
        return message_type, control, parameter, self._exact(length)

    def _exact(self, size):
        data = b""
        while len(data) < size:
            piece = self.socket.recv(size - len(data))
            if not piece:
                return None
            data += piece
        return data

    def close(self):
        self.socket.close()


def open_session(check, port):
    synchronous = Channel(port)
    synchronous.send(INITIALIZE, parameter=(0x0100 << 16) | 0x5059, payload=b"hislip0")
    reply = synchronous.receive()
    check.expect(reply is not None and reply[0] == INITIALIZE_RESPONSE, "InitializeResponse")
    check.expect(reply[2] >> 16 == 0x0100, "server protocol version 1.0")
    session_id = reply[2] & 0xFFFF
    asynchronous = Channel(port)
    asynchronous.send(ASYNC_INITIALIZE, parameter=session_id)
    reply = asynchronous.receive()
    check.expect(reply is not None and reply[0] == ASYNC_INITIALIZE_RESPONSE,
                 "AsyncInitializeResponse")
    return synchronous, asynchronous


def send_message(channel, message_id, data, maximum):
    """Sends `data` as Data messages of at most `maximum` payload bytes, the last as DataEnd."""
    pieces = [data[i:i + maximum] for i in range(0, len(data), maximum)] or [b""]
    for index, piece in enumerate(pieces):
        channel.send(DATA_END if index == len(pieces) - 1 else DATA, parameter=message_id,
                     payload=piece)


def check_session(check, port):
    synchronous, asynchronous = open_session(check, port)
    asynchronous.send(ASYNC_MAXIMUM_MESSAGE_SIZE, payload=struct.pack(">Q", 1 << 20))
    reply = asynchronous.receive()
    check.expect(reply[0] == ASYNC_MAXIMUM_MESSAGE_SIZE_RESPONSE, "AsyncMaximumMessageSizeResponse")
    maximum = struct.unpack(">Q", reply[3])[0]
    check.expect(maximum == SERVER_MAXIMUM, "server maximum message size %d" % maximum)

    message_id = FIRST_MESSAGE_ID
    send_message(synchronous, message_id, b"*IDN?\n", maximum)
    reply = synchronous.receive()
    check.expect(reply[0] == DATA_END and reply[2] == message_id, "*IDN? reply is DataEnd with its ID")
    check.expect(reply[3] == IDENTIFICATION.encode(), "*IDN? reply text")

    block = b"IQDA " + random.Random(3).randbytes(200_000)
    message_id += 2
    send_message(synchronous, message_id, block, maximum)
    # A message ID wraps around; the reply must still carry the asker's. SCPI ignores case.
    message_id = 0xFFFFFFFE
    send_message(synchronous, message_id, b"*idn?", maximum)
    reply = synchronous.receive()
    check.expect(reply[0] == DATA_END and reply[2] == message_id, "reply ID after wrap")

    synchronous.close()
    asynchronous.close()
    return block


def main():
    check = Checker()
    with Simulator(sys.argv[1], "--hislip-max-message-size", str(SERVER_MAXIMUM)) as simulator:
        port = simulator.ports["hislip"]
        block = check_session(check, port)
        simulator.finish()

    hislip = [event for event in simulator.events if event[0] == "hislip"]
    first_session = hislip[0][1]
    sequence = [(kind, size) for _, session, kind, size, _ in hislip if session == first_session]
    identification = len(IDENTIFICATION)
    check.expect(sequence == [("connect", 0), ("write", 6), ("read", identification),
                              ("write", len(block)), ("write", 5), ("read", identification),
                              ("close", 0)], "hislip wire sequence %s" % sequence)
    check.expect(simulator.blocks == [("hislip", first_session, len(block), md5(block))],
                 "hislip block kept %s" % simulator.blocks)
    check.exit()


main()
