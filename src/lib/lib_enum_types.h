#pragma once
// The enumerations shared across the program and their fixed display/file texts. The texts are
// what state files store and what the pages list, so they never change.

#include <map>
#include <string>

#include "lib/lib_types.h"

namespace nal {

// Constellation type.
enum modulation_type_t : uint32 {
  MOD_2ASK = 0,
  MOD_PR_ASK = 1,
  MOD_BPSK = 2,
  MOD_QPSK = 3,
  MOD_OQPSK = 4,
  MOD_8PSK = 5,
  MOD_16PSK = 6,
  MOD_DBPSK = 7,
  MOD_DQPSK = 8,
  MOD_PI4_DQPSK = 9,
  MOD_D8PSK = 10,
  MOD_PI8_D8PSK = 11,
  MOD_D16PSK = 12,
  MOD_16APSK = 13,
  MOD_32APSK = 14,
  MOD_4QAM = 15,
  MOD_8QAM = 16,
  MOD_16QAM = 17,
  MOD_32QAM = 18,
  MOD_64QAM = 19,
  MOD_128QAM = 20,
  MOD_256QAM = 21,
  MOD_512QAM = 22,
  MOD_1024QAM = 23,
  MOD_2048QAM = 24,
  MOD_4096QAM = 25,
  MOD_2FSK = 26,
  MOD_MSK = 27,
  MOD_4FSK = 28,
  MOD_8FSK = 29,
  MOD_16FSK = 30,
  MOD_MULTITONE2 = 31,
};

// Pulse-shaping filter.
enum filter_type_t : uint32 {
  FILTER_NONE = 0,
  FILTER_RAISED_COSINE = 1,
  FILTER_ROOT_COSINE = 2,
  FILTER_GAUSSIAN = 3,
  FILTER_HALF_SINE = 4,
};

enum modulator_type_t : uint32 {
  MODULATOR_APSK_QAM = 0,
  MODULATOR_MFSK = 1,
  MODULATOR_MULTITONE = 2,
  MODULATOR_CUSTOM = 3,
  MODULATOR_LFM = 4,
};

enum lfm_sweep_type_t : uint32 {
  LFM_SWEEP_TRIANGLE = 0,
  LFM_SWEEP_UP = 1,
  LFM_SWEEP_DOWN = 2,
};

enum data_source_type_t : uint32 {
  DATA_SOURCE_PN7 = 0,
  DATA_SOURCE_PN9 = 1,
  DATA_SOURCE_PN15 = 2,
  DATA_SOURCE_PN23 = 3,
  DATA_SOURCE_PN31 = 4,
  DATA_SOURCE_USER = 5,
  DATA_SOURCE_CUSTOM = 6,
};

namespace common_lib {

// Text maps, built on first use and read-only afterwards (safe from any thread).
const std::map<modulation_type_t, std::string>& modulation_type_text_map();
const std::map<filter_type_t, std::string>& filter_type_text_map();
const std::map<modulator_type_t, std::string>& modulator_type_text_map();
const std::map<lfm_sweep_type_t, std::string>& lfm_sweep_type_text_map();
const std::map<data_source_type_t, std::string>& data_source_type_text_map();

}  // namespace common_lib
}  // namespace nal
