#include "lib/lib_enum_types.h"

namespace nal::common_lib {

const std::map<modulation_type_t, std::string>& modulation_type_text_map() {
  static const std::map<modulation_type_t, std::string> map = {
      {MOD_2ASK, "2ASK"},       {MOD_PR_ASK, "PR-ASK"},
      {MOD_BPSK, "BPSK"},       {MOD_QPSK, "QPSK"},
      {MOD_OQPSK, "OQPSK"},     {MOD_8PSK, "8PSK"},
      {MOD_16PSK, "16PSK"},     {MOD_DBPSK, "DBPSK"},
      {MOD_DQPSK, "DQPSK"},     {MOD_PI4_DQPSK, "PI/4-DQPSK"},
      {MOD_D8PSK, "D8PSK"},     {MOD_PI8_D8PSK, "PI/8-D8PSK"},
      {MOD_D16PSK, "D16PSK"},   {MOD_16APSK, "16APSK"},
      {MOD_32APSK, "32APSK"},   {MOD_4QAM, "4QAM"},
      {MOD_8QAM, "8QAM"},       {MOD_16QAM, "16QAM"},
      {MOD_32QAM, "32QAM"},     {MOD_64QAM, "64QAM"},
      {MOD_128QAM, "128QAM"},   {MOD_256QAM, "256QAM"},
      {MOD_512QAM, "512QAM"},   {MOD_1024QAM, "1024QAM"},
      {MOD_2048QAM, "2048QAM"}, {MOD_4096QAM, "4096QAM"},
      {MOD_2FSK, "2FSK"},       {MOD_MSK, "MSK"},
      {MOD_4FSK, "4FSK"},       {MOD_8FSK, "8FSK"},
      {MOD_16FSK, "16FSK"},     {MOD_MULTITONE2, "Multitone2"},
  };
  return map;
}

const std::map<filter_type_t, std::string>& filter_type_text_map() {
  static const std::map<filter_type_t, std::string> map = {
      {FILTER_NONE, "None"},
      {FILTER_GAUSSIAN, "Gaussian"},
      {FILTER_RAISED_COSINE, "Raised Cosine"},
      {FILTER_ROOT_COSINE, "Root Cosine"},
      {FILTER_HALF_SINE, "Half Sine"},
  };
  return map;
}

const std::map<modulator_type_t, std::string>& modulator_type_text_map() {
  static const std::map<modulator_type_t, std::string> map = {
      {MODULATOR_APSK_QAM, "APSK && QAM"},
      {MODULATOR_MFSK, "MFSK"},
      {MODULATOR_MULTITONE, "Multitone"},
      {MODULATOR_CUSTOM, "Custom"},
      {MODULATOR_LFM, "LFM"},
  };
  return map;
}

const std::map<lfm_sweep_type_t, std::string>& lfm_sweep_type_text_map() {
  static const std::map<lfm_sweep_type_t, std::string> map = {
      {LFM_SWEEP_TRIANGLE, "Triangle"}, {LFM_SWEEP_UP, "Up"}, {LFM_SWEEP_DOWN, "Down"}};
  return map;
}

const std::map<data_source_type_t, std::string>& data_source_type_text_map() {
  static const std::map<data_source_type_t, std::string> map = {
      {DATA_SOURCE_PN7, "PN7"},       {DATA_SOURCE_PN9, "PN9"},   {DATA_SOURCE_PN15, "PN15"},
      {DATA_SOURCE_PN23, "PN23"},     {DATA_SOURCE_PN31, "PN31"}, {DATA_SOURCE_USER, "USER"},
      {DATA_SOURCE_CUSTOM, "CUSTOM"},
  };
  return map;
}

}  // namespace nal::common_lib
