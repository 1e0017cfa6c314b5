#pragma once
// What the processor offers to the vector loops of the waveform file.

namespace nal {

// AVX-512 F and VL, with the operating system saving their registers. Safe to call before main.
inline bool cfg_cpu_has_avx512() {
#if defined(__x86_64__)
  __builtin_cpu_init();  // static initialisers may run before the one that would do it
  return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl");
#else
  return false;
#endif
}

}  // namespace nal
