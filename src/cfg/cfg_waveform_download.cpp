// The instrument half of the waveform file: the same header, seal and samples as a block for
// the connected instrument of the device list.

#include <QByteArray>

#include <limits>

#include "cfg/cfg_md5.h"
#include "cfg/cfg_waveform_file.h"
#include "comm/visa_device_manager.h"
#include "comm/visa_resource.h"
#include "lib/lib_report.h"

namespace nal {

bool cfg_waveform_file_t::download_iq_waveform(const std::string& header,
                                               const lib_iq_data_arr_t& samples) {
  visa_device_manager_t& devices = visa_device_manager_t::instance();
  const visa_resource_t* current = devices.get_current_resource();
  if (current == nullptr || !current->is_open() || !devices.refresh_current()) {
    return false;
  }
  const std::string data = encode_samples(samples);
  if (data.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    common_lib::lib_report("cfg_waveform_file_t::download_iq_waveform Report: a waveform of " +
                           std::to_string(data.size()) + " bytes does not fit one block");
    return false;
  }
  cfg_md5_t md5;
  md5.update(header.data(), header.size());
  md5.update(data.data(), data.size());
  const std::string sealed_header = "CheckCode," + md5.hex_digest() + "," + header;
  return devices.send_to_current(data.data(), static_cast<int>(data.size()),
                                 QByteArray::fromStdString(sealed_header));
}

}  // namespace nal
