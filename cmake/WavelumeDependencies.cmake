# Third-party libraries, all from Debian's packages (scripts/install-deps.sh).
find_package(PkgConfig REQUIRED)
pkg_check_modules(FFTW3 REQUIRED IMPORTED_TARGET fftw3)
find_library(FFTW3_THREADS_LIBRARY NAMES fftw3_threads REQUIRED)
add_library(wavelume_fftw3 INTERFACE)
target_link_libraries(wavelume_fftw3 INTERFACE PkgConfig::FFTW3 ${FFTW3_THREADS_LIBRARY})

find_package(OpenMP REQUIRED COMPONENTS CXX)
find_package(Threads REQUIRED)
