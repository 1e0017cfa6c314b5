// The Custom IQ element of a state file, by hand: the groups and names in their order, a
// coherent set of edited values (a custom four-point constellation, so that the edits reach the
// samples), and the limits of every bounded number.

#include "cfg/cfg_custom_iq.h"
#include "tests/cfg/conformance/conformance_entry.h"

namespace wavelume_test {

namespace {

// Numbers whose range does not move: the same limits whatever the file holds.
conformance_clamp_t fixed(double low, double high) {
  return {high, low, low};
}

std::vector<conformance_element_t> custom_iq_elements() {
  // An out-of-range file also drives the oversampling to 32, which caps the symbol rate at
  // 8e9 / 32, and the multitone and LFM rates to their maxima, which set the other limits.
  const double capped_symbol_rate = 8e9 / 32;
  return {
      group("Basic"),
      value("Basic/WaveformName", "Conformance run"),
      number("Basic/WaveformFrameNumber", "2", fixed(1, 300)),
      value("Basic/MirrorSpectrumEnable", "true"),
      derived("Basic/TotalSamplePoints"),
      derived("Basic/WaveformLength"),
      group("DataSource"),
      value("DataSource/DataSourceType", "PN15"),
      number("DataSource/symbolLength", "300", fixed(100, 100000)),
      number("DataSource/symbolRate", "250000", {capped_symbol_rate, 250, 250}),
      value("DataSource/customBits", "1101"),
      derived("DataSource/bitsPerSymbol"),
      group("Modulation"),
      value("Modulation/modulationType", "Custom"),
      value("Modulation/ApskQamModulation", "64QAM"),
      value("Modulation/grayEnable", "true"),
      value("Modulation/MfskModulation", "4FSK"),
      number("Modulation/fskDeviation", "125000", {0.8 * capped_symbol_rate * 32, 0, 0}),
      value("Modulation/multitoneMode", "true"),
      number("Modulation/multitoneSampleRate", "20000000", fixed(500, 4e9)),
      number("Modulation/multitoneFreqSpacing", "4000000", {4e9 / 1.28, 0, 0}),
      number("Modulation/multitoneStartFreq", "1000000", {4e9 / 2.56, 0, 0}),
      number("Modulation/multitoneStopFreq", "3000000", {4e9 / 2.56, 0, 0}),
      number("Modulation/multitoneNumber", "7", fixed(1, 10000)),
      value("Modulation/multitoneSingleSide", "true"),
      value("Modulation/multitoneNotchEnable", "true"),
      number("Modulation/multitoneNotchStartFreq", "1500000", {4e9 / 2, 0, 0}),
      number("Modulation/multitoneNotchStopFreq", "2500000", {4e9 / 2, 0, 0}),
      list("Modulation/customConstellationData", "0,-0.5,0.5,1,0.5,0.5,2,-0.5,-0.5,3,0.5,-0.5"),
      value("Modulation/customConstellationName", "Square4"),
      value("Modulation/showConstellationSymbol", "true"),
      value("Modulation/lfmMode", "true"),
      number("Modulation/lfmSampleRate", "50000000", fixed(500, 1.2e10)),
      number("Modulation/lfmSweepTime", "0.25", fixed(1e-8, 1.0)),
      // The bandwidth ranges up to the sample rate, the offset over half the bandwidth.
      number("Modulation/lfmBandWidth", "20000000", {1.2e10, 100, 100}),
      number("Modulation/lfmFreqOffset", "2500000", {1.2e10 / 2, -100.0 / 2, 0}),
      value("Modulation/lfmSweepType", "Down"),
      number("Modulation/lfmSegments", "2", fixed(1, 100)),
      derived("Modulation/lfmTotalTime"),
      list("Modulation/lfmSweepData", "-1000000,1000000,0.25,1000000,-1000000,0.25"),
      group("Filter"),
      value("Filter/filterType", "Raised Cosine"),
      // Root Cosine, as preset: a roll-off of 0.01 to 1 over 1 to 512 symbols.
      number("Filter/filterAlpha", "0.25", fixed(0.01, 1.0)),
      number("Filter/filterLength", "16", fixed(1, 512)),
      number("Filter/oversampling", "4", fixed(2, 32)),
  };
}

}  // namespace

conformance_entry_t custom_iq_conformance() {
  conformance_entry_t entry;
  entry.name = "CustomIq";
  entry.type = nal::PROTOCOL_CUSTOM_IQ;
  entry.state_text = "Custom IQ";
  entry.make = from_factory(nal::PROTOCOL_CUSTOM_IQ);
  entry.copy = copy_of<nal::cfg_custom_iq_t>();
  entry.compute = [](nal::cfg_protocol_base_t& config) {
    dynamic_cast<nal::cfg_custom_iq_t&>(config).engine().update_waveform();
  };
  entry.elements = custom_iq_elements();
  return entry;
}

}  // namespace wavelume_test
