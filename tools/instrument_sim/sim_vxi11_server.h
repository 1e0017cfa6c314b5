#pragma once
// The VXI-11 core channel (program 0x0607AF, version 1) over ONC RPC: create_link, device_write,
// device_read, destroy_link and the NULL procedure; other procedures are refused as
// unavailable. A link's write collects the pieces of device_write calls until one carries the
// END flag; a read returns at most the requested count of the pending reply, with END on its
// last byte (and CHR where the termination character ends it when the client asked for that).
// A read with no reply pending fails at once with an I/O timeout. Devices "inst0", "inst1", ...
// are accepted; any other name is not accessible.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "tools/instrument_sim/sim_rpc_server.h"
#include "tools/instrument_sim/sim_wire_record.h"

namespace wavelume_sim {

class sim_message_sink_t;

struct sim_vxi11_options_t {
  // The maxRecvSize announced by create_link: the largest data of one device_write.
  std::uint32_t max_receive_size = 1024 * 1024;
  // 0: each reply in one record-marking fragment.
  std::size_t reply_fragment_size = 0;
  sim_block_keeping_t keeping = sim_block_keeping_t::md5;
};

class sim_vxi11_server_t : public sim_rpc_server_t {
 public:
  static constexpr std::uint32_t program = 0x0607AF;
  static constexpr std::uint32_t version = 1;

  sim_vxi11_server_t(sim_wire_record_t& record, sim_vxi11_options_t options);
  ~sim_vxi11_server_t() override;

  // device_write calls accepted so far: the pieces messages arrived in.
  int device_write_calls() const { return _device_write_calls; }

 protected:
  // See base class.
  accept_status_t call(int socket, std::uint32_t procedure, sim_xdr_reader_t& arguments,
                       sim_xdr_writer_t& results) override;
  // See base class.
  void closed(int socket) override;

 private:
  struct link_t {
    int socket = -1;
    std::unique_ptr<sim_message_sink_t> sink;
  };

  void _create_link(int socket, sim_xdr_reader_t& arguments, sim_xdr_writer_t& results);
  void _device_write(int socket, sim_xdr_reader_t& arguments, sim_xdr_writer_t& results);
  void _device_read(int socket, sim_xdr_reader_t& arguments, sim_xdr_writer_t& results);
  void _destroy_link(int socket, sim_xdr_reader_t& arguments, sim_xdr_writer_t& results);
  // The link with this id created on this connection, or null. A link is used only by the
  // thread of its connection, so the pointer stays valid while that thread runs.
  link_t* _find(int socket, std::uint32_t link_id);
  void _remove(std::uint32_t link_id);

  sim_wire_record_t& _record;
  const sim_vxi11_options_t _options;
  std::atomic<int> _device_write_calls{0};
  std::mutex _mutex;
  std::map<std::uint32_t, std::unique_ptr<link_t>> _links;
};

}  // namespace wavelume_sim
