#include "tests/comm/simulator/sim_portmapper_server.h"

#include "tests/comm/simulator/sim_vxi11_server.h"

namespace wavelume_test {

namespace {

enum procedure_t : std::uint32_t { NULL_PROCEDURE = 0, GETPORT = 3, DUMP = 4 };
constexpr std::uint32_t protocol_tcp = 6;
constexpr std::size_t record_limit = 4096;

}  // namespace

sim_portmapper_server_t::sim_portmapper_server_t(std::uint16_t core_port)
    : sim_rpc_server_t(program, version, record_limit, 0), _core_port(core_port) {}

sim_portmapper_server_t::~sim_portmapper_server_t() {
  stop();
}

sim_rpc_server_t::accept_status_t sim_portmapper_server_t::call(int, std::uint32_t procedure,
                                                                sim_xdr_reader_t& arguments,
                                                                sim_xdr_writer_t& results) {
  switch (procedure) {
    case NULL_PROCEDURE:
      return SUCCESS;
    case GETPORT: {
      const std::uint32_t wanted_program = arguments.u32();
      const std::uint32_t wanted_version = arguments.u32();
      const std::uint32_t protocol = arguments.u32();
      arguments.u32();  // port, unused in a query
      if (!arguments.ok()) {
        return GARBAGE_ARGS;
      }
      const bool core = wanted_program == sim_vxi11_server_t::program &&
                        wanted_version == sim_vxi11_server_t::version && protocol == protocol_tcp;
      _lookups += core ? 1 : 0;
      results.u32(core ? _core_port : 0);
      return SUCCESS;
    }
    case DUMP: {
      const std::uint32_t mappings[2][4] = {
          {program, version, protocol_tcp, port()},
          {sim_vxi11_server_t::program, sim_vxi11_server_t::version, protocol_tcp, _core_port}};
      for (const auto& mapping : mappings) {
        results.u32(1);  // a value follows
        for (const std::uint32_t word : mapping) {
          results.u32(word);
        }
      }
      results.u32(0);
      return SUCCESS;
    }
    default:
      return PROC_UNAVAIL;
  }
}

}  // namespace wavelume_test
