#pragma once
// Numeric aliases and the sample containers shared by every layer of the program.

#include <complex>
#include <cstdint>
#include <map>
#include <vector>

namespace nal {

using fp64 = double;
using uint32 = std::uint32_t;
using uint64 = std::uint64_t;

// One complex sample: real part I, imaginary part Q. Layout-compatible with fftw_complex.
using lib_iq_sample_t = std::complex<fp64>;

// Contiguous growable array of complex samples; copies are plain value copies.
using lib_iq_data_arr_t = std::vector<lib_iq_sample_t>;
// Contiguous growable array of reals: filter taps, amplitudes, phases.
using lib_fp_data_arr_t = std::vector<fp64>;
// Contiguous growable array of symbols.
using lib_symbol_arr_t = std::vector<uint32>;
// Symbol to constellation point, iterated in ascending symbol order.
using lib_constellation_map_t = std::map<uint32, lib_iq_sample_t>;

namespace common_lib {

// Every comparison of a real against zero in the signal library is strict against this value.
constexpr fp64 lib_tolerance = 1e-12;
// Floor of displayed levels, in dB.
constexpr fp64 lib_level_floor_db = -200.0;
constexpr fp64 lib_pi = 3.14159265358979323846;

}  // namespace common_lib
}  // namespace nal
