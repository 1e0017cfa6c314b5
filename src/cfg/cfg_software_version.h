#pragma once
// The program's version as it appears to the outside: in every waveform file header, in state
// and project files (where a different version is reported on reading), and in the About dialog.

namespace nal {

inline constexpr char cfg_software_version[] = "2.0.0.1.2";

}  // namespace nal
