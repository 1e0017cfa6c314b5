#pragma once
// FIR filter design, two ways: an ideal impulse response multiplied by a window (the object), and
// a frequency mask sampled, inverse transformed and windowed (the static forms).
//
// Frequencies are normalised: 1.0 is the Nyquist frequency (half the sample rate), so a value f
// stands for f * pi radians per sample. Negative values are the lower half of a complex spectrum.
// Taps are complex; a real design has zero imaginary parts.
//
// A design object is a plain copyable value, used by one thread at a time. The static forms hold no
// state and may run on any thread.

#include "lib/lib_types.h"
#include "lib/lib_window_function.h"

namespace nal::common_lib {

enum fir_filter_type_t : uint32 {
  FIR_LOW_PASS = 0,   // passes |f| < cut-off
  FIR_HIGH_PASS = 1,  // passes cut-off < |f| < 1
  FIR_BAND_PASS = 2,  // lower and upper edge; see _generate_ideal_filter_data for the real form
  FIR_BAND_STOP = 3,  // stops between the lower and the upper edge
};

class lib_fir_filter_design_t {
 public:
  // Setters clamp and never refuse; each returns true, so that results combine by logical and.

  bool set_filter_type(fir_filter_type_t type);
  // Length = order + 1, clamped to [minimum length 0, maximum length 16384].
  bool set_filter_order(uint32 order);
  // Tap count, clamped to [0, 16384]. Lengths 0 and 1 are accepted; a length of 1 yields a NaN
  // tap from every window but the rectangle (see lib_window_function.h).
  bool set_filter_length(uint32 length);
  // Prefers real taps for the band types; honoured only when both edges are above 0.
  bool set_real_filter(bool real);
  // Low-pass and high-pass edge, clamped to [0, 1].
  bool set_cutoff(fp64 cutoff);
  // Band edges, each clamped to [-1, 1]. Raising the lower edge above the upper edge drags the
  // upper edge along, and lowering the upper edge below the lower edge drags the lower edge, so
  // that lower <= upper holds after every call.
  bool set_lower_edge(fp64 edge);
  bool set_upper_edge(fp64 edge);
  bool set_window_type(window_type_t type);
  // Used with WINDOW_KAISER only. A value not above 0 stores 0.0 (a flat window).
  bool set_kaiser_beta(fp64 beta);

  // Whether the current settings give real taps: always for low-pass and high-pass; for the band
  // types when the real flag is set and both edges are above 0. Compare get_real_result_flag,
  // which tells what the last generate() produced.
  bool is_real_result() const;

  // Empties the ideal, window and filter arrays; finished flag false, real result flag true.
  void clear_data();
  // Designs the taps from the current settings: ideal response, window (not normalised), and
  // their tap-by-tap product. False, with the arrays left empty and the finished flag false, when
  // the filter type or window type is unknown (each reported).
  bool generate();

  fir_filter_type_t get_filter_type() const { return _filter_type; }
  uint32 get_min_filter_length() const { return _min_filter_length; }
  uint32 get_max_filter_length() const { return _max_filter_length; }
  uint32 get_filter_length() const { return _filter_length; }
  bool is_real_filter() const { return _real_filter; }
  fp64 get_cutoff_min() const { return _cutoff_min; }
  fp64 get_cutoff_max() const { return _cutoff_max; }
  fp64 get_cutoff() const { return _cutoff; }
  fp64 get_lower_edge_min() const { return _lower_edge_min; }
  fp64 get_lower_edge_max() const { return _lower_edge_max; }
  fp64 get_lower_edge() const { return _lower_edge; }
  fp64 get_upper_edge_min() const { return _upper_edge_min; }
  fp64 get_upper_edge_max() const { return _upper_edge_max; }
  fp64 get_upper_edge() const { return _upper_edge; }
  window_type_t get_window_type() const { return _window_type; }
  fp64 get_kaiser_beta() const { return _kaiser_beta; }
  // Filter-length samples each after generate(); empty before.
  const lib_iq_data_arr_t& get_ideal_filter_data() const { return _ideal_filter_data; }
  const lib_iq_data_arr_t& get_window_data() const { return _window_data; }
  bool is_finished() const { return _finished; }
  // True when the last generate() chose a real form (true after clear_data()).
  bool get_real_result_flag() const { return _real_result; }
  // The designed taps, filter-length samples, valid while is_finished().
  const lib_iq_data_arr_t& get_filter_data() const { return _filter_data; }

  // Mask design. `mask` holds (frequency in [-1, 1], level) pairs as complex values; levels are
  // linear gains used as given (no decibels), and the mask need not be sorted. `length` must be a
  // power of 2 not below the mask's point count. The mask is sampled on `length` points from -1
  // (see _generate_mask_data), rotated so that frequency 0 comes first, inverse transformed
  // (scaled by 1/length), and multiplied by the sum-normalised window of `type`. The result keeps
  // the transform's zero-phase layout: its main lobe sits at both ends of `taps`, where tapering
  // windows are small; only the rectangle leaves the sampled mask intact (scaled by 1/length).
  // `taps` is emptied first; an empty mask or an illegal length is reported and gives false.
  static bool generate_windowed_filter_data(uint32 length, window_type_t type,
                                            const lib_iq_data_arr_t& mask, lib_iq_data_arr_t& taps);
  // The same with length = the power of 2 not below 4 times the mask's point count (at least 4).
  static bool generate_windowed_filter_data(const lib_iq_data_arr_t& mask, lib_iq_data_arr_t& taps,
                                            window_type_t type);

  // Samples the mask on `length` points, point k at frequency g = k (2 / length) - 1, into `out`
  // as (level, 0). With the mask sorted by frequency, then level: g at or below the first
  // frequency takes the first level, at or above the last the last level. Otherwise, when an entry
  // lies at g (within 1e-12), the mean of the lowest and highest level there; else the mean of
  // the levels of the two entries around g, with no interpolation over the distance. An empty
  // mask gives an empty `out`.
  static void _generate_mask_data(uint32 length, const lib_iq_data_arr_t& mask,
                                  lib_iq_data_arr_t& out);

 private:
  // Fills _ideal_filter_data and the real result flag from the type and edges. For the band
  // types the real forms are used when is_real_result(), the complex forms otherwise. The real
  // band-pass is centred at (u - l) / 2 + u, as this system defines it, so it passes u to 2u - l
  // and not l to u; the complex band-pass passes l to u.
  bool _generate_ideal_filter_data();
  bool _generate_window_data();
  void _generate_filter_data();

  // Ideal responses of `length` taps around the centre M = (length - 1) / 2; `out` is replaced.
  // sin(f pi m) / (pi m) with m = n - M; the tap at m = 0 is f; all zero for |f| below 1e-12.
  static void _ideal_low_pass(uint32 length, fp64 cutoff, lib_iq_data_arr_t& out);
  // Low-pass of edge (1 - f) / 2 shifted up to the band f..1 by 2 cos.
  static void _ideal_high_pass(uint32 length, fp64 cutoff, lib_iq_data_arr_t& out);
  static void _ideal_real_band_pass(uint32 length, fp64 lower, fp64 upper, lib_iq_data_arr_t& out);
  // Low-pass of edge l plus high-pass of edge u.
  static void _ideal_real_band_stop(uint32 length, fp64 lower, fp64 upper, lib_iq_data_arr_t& out);
  // Low-pass of half the band width shifted to the band centre by a complex exponential.
  static void _ideal_complex_band_pass(uint32 length, fp64 lower, fp64 upper,
                                       lib_iq_data_arr_t& out);
  // Complex band-pass from -1 to l plus complex band-pass from u to 1.
  static void _ideal_complex_band_stop(uint32 length, fp64 lower, fp64 upper,
                                       lib_iq_data_arr_t& out);

  fir_filter_type_t _filter_type = FIR_LOW_PASS;
  uint32 _min_filter_length = 0;
  uint32 _max_filter_length = 16384;
  uint32 _filter_length = 32;
  bool _real_filter = true;
  fp64 _cutoff_min = 0.0;
  fp64 _cutoff_max = 1.0;
  fp64 _cutoff = 0.5;
  fp64 _lower_edge_min = -1.0;
  fp64 _lower_edge_max = 1.0;
  fp64 _lower_edge = 0.25;
  fp64 _upper_edge_min = -1.0;
  fp64 _upper_edge_max = 1.0;
  fp64 _upper_edge = 0.75;
  window_type_t _window_type = WINDOW_BLACKMAN;
  fp64 _kaiser_beta = 6.0;
  lib_iq_data_arr_t _ideal_filter_data;
  lib_iq_data_arr_t _window_data;
  bool _finished = false;
  bool _real_result = true;
  lib_iq_data_arr_t _filter_data;
};

}  // namespace nal::common_lib
