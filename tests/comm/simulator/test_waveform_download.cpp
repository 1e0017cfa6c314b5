// A waveform sent to the simulator straight from its samples, through the process's device list:
// the block must be the one the file format defines, "IQDA ", the seal of header and encoded
// samples, the header (naming the software and its version) and the samples, whatever pieces it
// went in. The expected bytes come from encoding all samples at once and from Qt's MD5, not from
// the pieces the link sends. The simulator serves on threads of its own and the seal is hashed
// on one, hence the suite name.

#include <gtest/gtest.h>

#include <QCryptographicHash>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

#include "cfg/cfg_waveform_file.h"
#include "comm/visa_device_manager.h"
#include "tools/instrument_sim/sim_instrument.h"

namespace {

using wavelume_sim::sim_transport_t;

std::string md5_hex(const std::string& bytes) {
  return QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Md5)
      .toHex()
      .toStdString();
}

TEST(SimulatorLinkConcurrencyWaveform, SamplesArriveAsTheSealedBlockOfTheirFile) {
  wavelume_sim::sim_instrument_options_t options;
  options.set_keeping(wavelume_sim::sim_block_keeping_t::md5);
  options.raw_socket.block_idle_gap = std::chrono::milliseconds(300);
  wavelume_sim::sim_instrument_t instrument;
  ASSERT_TRUE(instrument.start(options));
  setenv("WAVELUME_VXI11_PORTMAPPER_PORT", std::to_string(instrument.portmapper_port()).c_str(), 1);

  // More than one piece on the wire, the last one short; values that wrap or do not encode.
  nal::lib_iq_data_arr_t samples(600001);
  std::mt19937 random(0);
  std::uniform_real_distribution<double> unit(-1.0, 1.0);
  for (nal::lib_iq_sample_t& sample : samples) {
    sample = {unit(random), unit(random)};
  }
  samples[3] = {1.5, -1.0};
  samples[262147] = {NAN, 1e300};
  const std::string header =
      nal::cfg_waveform_file_t::build_file_header("CurrentSettings", nal::PROTOCOL_CUSTOM_IQ) +
      nal::cfg_waveform_file_t::header_tail(1e6, 0.5);
  // The instrument sees which software wrote the waveform.
  EXPECT_NE(header.find(",SoftwareName,Wavelume,SoftwareVersion,2.0.0.1.2,"), std::string::npos)
      << header;
  const std::string body = header + nal::cfg_waveform_file_t::encode_samples(samples);
  const std::string block = "IQDA CheckCode," + md5_hex(body) + "," + body;

  nal::visa_device_manager_t& devices = nal::visa_device_manager_t::instance();
  for (const std::string& name :
       {instrument.socket_resource(), instrument.vxi11_resource(), instrument.hislip_resource()}) {
    const std::size_t blocks_before = instrument.record().blocks().size();
    devices.add_resource(QString::fromStdString(name));
    ASSERT_TRUE(devices.connect_resource(QString::fromStdString(name))) << name;
    ASSERT_TRUE(nal::cfg_waveform_file_t::download_iq_waveform(header, samples)) << name;
    ASSERT_TRUE(instrument.record().wait_for_blocks(blocks_before + 1, std::chrono::seconds(60)));
    const wavelume_sim::sim_kept_block_t kept = instrument.record().blocks().back();
    EXPECT_EQ(kept.size, block.size()) << name;
    EXPECT_EQ(kept.md5, md5_hex(block)) << name;
    devices.remove_resource(QString::fromStdString(name));
  }
}

}  // namespace
