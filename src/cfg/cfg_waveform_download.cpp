// The instrument half of the waveform file: the same header, seal and samples as a block for
// the connected instrument of the device list.

#include "cfg/cfg_sample_encoder.h"
#include "cfg/cfg_waveform_file.h"
#include "comm/comm_block.h"
#include "comm/visa_device_manager.h"
#include "comm/visa_resource.h"

namespace nal {

namespace {

// Samples per piece on the wire: a megabyte, so that the VISA call per piece (a round trip on
// VXI-11) costs little, while a piece still fits the cache as it is encoded and sent.
constexpr std::size_t piece_samples = std::size_t{1} << 18;

}  // namespace

bool cfg_waveform_file_t::download_iq_waveform(const std::string& header,
                                               const lib_iq_data_arr_t& samples) {
  visa_device_manager_t& devices = visa_device_manager_t::instance();
  const visa_resource_t* current = devices.get_current_resource();
  if (current == nullptr || !current->is_open() || !devices.refresh_current()) {
    return false;
  }
  const std::string seal = "CheckCode," + sealed_digest(header, samples) + ",";
  comm_block_t body;
  body.add_bytes(seal.data(), seal.size());
  body.add_bytes(header.data(), header.size());
  // Each piece is encoded while the one before is still in the transport's send buffer.
  body.add_generated(std::uint64_t{samples.size()} * 4, piece_samples * 4,
                     [&samples](std::uint64_t first, std::size_t count, unsigned char* out) {
                       cfg_sample_encoder_t::encode(samples.data() + first / 4, count / 4, out);
                     });
  return devices.send_to_current(body);
}

}  // namespace nal
