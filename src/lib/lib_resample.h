#pragma once
// Rational rate change of a finished waveform by L / M: the search of the factor pair, and its
// application. The waveform is taken as one period of a cyclic signal, as an instrument plays it,
// but its ends are first continued by odd reflection so that the filter does not smear the last
// samples into the first ones.
//
// Stateless: every operation is static and may run on any thread. The helpers beginning with an
// underscore are the literal steps of deal_resampling; they stay public so that a caller or a test
// can compose the rate change step by step.

#include "lib/lib_types.h"

namespace nal::common_lib {

class lib_resample_t {
 public:
  // Searches L (`interpolation`) and M (`decimation`) so that `sample_rate` * L / M comes close to
  // `target_rate` while L * `waveform_length` stays within 1e7 samples and M within 1000. Both
  // outputs start at 1. The error of a pair is the timing drift in samples that the rate error
  // piles up over the waveform; a pair is kept when that drift is at most 0.2 and smaller than the
  // best so far, and a drift below 1e-12 ends the search as exact (true). Otherwise, also when
  // the length leaves no room (0, above 1e7, or 1e7 / length not above 1), the search reports
  // "Cannot find a proper sample rate!" and returns false, leaving the best pair found (or 1, 1),
  // which the caller may still use. Products l * `sample_rate` wrap in 32 bits as the search
  // defines. Rates are in any one unit (hertz); a target of 0 never matches.
  static bool _calc_resample_coef(uint32 waveform_length, uint32 sample_rate, uint32 target_rate,
                                  uint32& interpolation, uint32& decimation);

  // The anti-image and anti-alias low-pass for L / M: with u = max(L, M), a Blackman-windowed
  // ideal low-pass of 2 `half_length` u + 1 taps (the design clamps the length to 16384) and
  // cut-off 1.05 / u of the Nyquist frequency (clamped to 1, where the taps become a unit
  // impulse). Real taps with a gain of about 1 below the cut-off, centred on tap
  // (length - 1) / 2. `taps` is replaced. A length of 1 (half length 0) gives one tap that is
  // NaN, which the cyclic filter never uses (it copies instead).
  static void _calc_resample_filter(lib_iq_data_arr_t& taps, uint32 interpolation,
                                    uint32 decimation, uint32 half_length);

  // Resamples `samples` by `interpolation` / `decimation` into `out` (emptied first), with
  // ceil(n L / M) samples for n inputs. The result is that of the literal steps:
  //   1. h = (n - 1) div 2 below 21 samples, else 10; E = 2 h;
  //   2. _extend_array_edge by E, then _deal_insert_zero by L;
  //   3. _deal_interpolate_filter with h (cyclic filtering over the whole extended array);
  //   4. E L samples dropped at each end, every sample times L, then _deal_decimation by M.
  // Only the kept samples are computed (a polyphase form of the same filter); they equal the
  // literal steps, whose filter runs through FFTs, within a few 1e-15 of the peak, and do not
  // depend on the number of threads (the thread rule of plib_t, for long outputs). With one
  // or two samples the filter has one tap: the steps run literally, the convolution reports the
  // filter as too short and the zero-stuffed samples pass unfiltered.
  // False with "Empty input data array!" or "Error resample parameters!" (L or M of 0), `out`
  // empty. Memory: about (n + 40) * 16 bytes besides `out`, plus two copies of the taps.
  static bool deal_resampling(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out,
                              uint32 interpolation, uint32 decimation);

  // Replaces `samples` by their cyclic filtering (lib_filter_t::deal_filter, cyclic) with
  // _calc_resample_filter(L, M, `half_length`); same length. Reports under deal_resampling's name,
  // being one of its steps: an empty array or an L or M of 0 gives false and leaves `samples` as
  // they were. Runs the convolution's OpenMP region.
  static bool _deal_interpolate_filter(lib_iq_data_arr_t& samples, uint32 interpolation,
                                       uint32 decimation, uint32 half_length);

  // Keeps samples 0, M, 2 M, ... in place: ceil(n / M) remain. An empty array or an M of 0 is
  // reported, leaves the array empty and gives false.
  static bool _deal_decimation(lib_iq_data_arr_t& samples, uint32 decimation);

  // Puts L - 1 zero samples after each sample, in place: n L remain. L of 0 or 1 changes nothing.
  static void _deal_insert_zero(lib_iq_data_arr_t& samples, uint32 interpolation);

  // `out` = the samples with `edge_length` samples added at each end by odd reflection through
  // the end points: 2 x_0 - x_k in front (k = edge_length first) and 2 x_(n-1) - x_(n-1-k)
  // behind, k = 1..edge_length; n + 2 `edge_length` samples, so a straight line continues
  // exactly. The reflection needs edge_length < n: a longer edge is reported and gives false
  // with `out` empty, as does an empty array; an edge of 0 copies. `out` must not be `samples`.
  static bool _extend_array_edge(const lib_iq_data_arr_t& samples, lib_iq_data_arr_t& out,
                                 uint32 edge_length);
};

}  // namespace nal::common_lib
