#pragma once
// `instruments` and `download`: the device list and the transfer of a waveform to a signal
// generator through the instrument link. Exit status: 0 done; 1 the settings produced no
// waveform; 2 bad usage or unreadable input; 3 the instrument could not be reached or did not
// take the whole block.

#include <ostream>
#include <string>
#include <vector>

namespace wavelume::cli {

// wavelume-cli instruments [--add ADDRESS]...: every resource found or added, with its
// identification. ADDRESS is an IPv4 address or host name (a VXI-11 instrument) or a full VISA
// resource name such as TCPIP0::192.168.1.20::5025::SOCKET.
int run_instruments(const std::vector<std::string>& arguments, std::ostream& out,
                    std::ostream& errors);

// wavelume-cli download RESOURCE SOURCE [--tab N] [--set PATH=VALUE]...: SOURCE as for
// `generate`, or a waveform file whose bytes are sent unchanged.
int run_download(const std::vector<std::string>& arguments, std::ostream& out,
                 std::ostream& errors);

}  // namespace wavelume::cli
