#pragma once
// Blocking socket helpers of the simulator's servers. Each server connection has a thread of its
// own, so plain blocking calls are enough; a stopping server shuts the socket down, which ends
// any call waiting on it with a failure.

#include <cstddef>
#include <cstdint>

namespace wavelume_sim {

// Receives exactly `size` bytes. False on close, error or shutdown.
bool sim_receive_exact(int socket, void* buffer, std::size_t size);
// Sends every byte. False on error or shutdown.
bool sim_send_all(int socket, const void* data, std::size_t size);
// A listening TCP socket on 127.0.0.1:`port` (0: a free port chosen by the system), or -1.
// `bound_port` receives the port actually bound.
int sim_listen_loopback(std::uint16_t port, std::uint16_t& bound_port);

}  // namespace wavelume_sim
