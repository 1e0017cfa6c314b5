# Per-target settings shared by every library, executable, test and benchmark:
# include root, warnings, the optional sanitizers and the precompiled header. Nothing is set per
# directory.
function(wavelume_target_defaults target)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/src")
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wnon-virtual-dtor -Wshadow)
  # No fused multiply-add contraction: results must not depend on the instruction set.
  target_compile_options(${target} PRIVATE -ffp-contract=off)
  if(WAVELUME_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(WAVELUME_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${WAVELUME_SANITIZE} -fno-omit-frame-pointer
                                             -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${WAVELUME_SANITIZE})
  endif()
  if(WAVELUME_BUILD_FUZZERS)
    # Coverage feedback for the libFuzzer targets must come from the code under test too.
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  wavelume_precompile_headers(${target})
endfunction()

# The common headers (cmake/wavelume_pch.h, with GoogleTest's for targets that already link it)
# precompiled per target, where they repay their own compilation: in GoogleTest executables and in
# targets that use QtWidgets or QtTest (known only once all links are, hence the generator
# expression), each with a few sources at least. Loadable modules (test fixtures) never get one.
set(WAVELUME_PCH_MIN_SOURCES 3)
function(wavelume_precompile_headers target)
  get_target_property(type ${target} TYPE)
  if(NOT WAVELUME_PCH OR type STREQUAL "MODULE_LIBRARY" OR type STREQUAL "SHARED_LIBRARY")
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  list(LENGTH sources count)
  if(count LESS WAVELUME_PCH_MIN_SOURCES)
    return()
  endif()
  get_target_property(libraries ${target} LINK_LIBRARIES)
  if(GTest::gtest IN_LIST libraries)
    target_precompile_headers(${target} PRIVATE "${PROJECT_SOURCE_DIR}/cmake/wavelume_pch.h"
                              <gtest/gtest.h>)
  else()
    set(definitions "$<TARGET_PROPERTY:COMPILE_DEFINITIONS>")
    set(uses_widgets "$<OR:$<IN_LIST:QT_WIDGETS_LIB,${definitions}>,$<IN_LIST:QT_TESTLIB_LIB,${definitions}>>")
    target_precompile_headers(${target} PRIVATE
                              "$<${uses_widgets}:${PROJECT_SOURCE_DIR}/cmake/wavelume_pch.h>")
  endif()
  # Once the folder has set its per-source flags, such sources skip the header.
  cmake_language(EVAL CODE "cmake_language(DEFER CALL wavelume_skip_pch_for_own_flags [[${target}]])")
endfunction()

# A precompiled header is refused (an error with -Werror) by a source compiled with other flags
# than the target's, e.g. an instruction-set variant built with -mavx512f.
function(wavelume_skip_pch_for_own_flags target)
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    foreach(property COMPILE_OPTIONS COMPILE_FLAGS COMPILE_DEFINITIONS)
      get_source_file_property(value "${source}" TARGET_DIRECTORY ${target} ${property})
      if(value)
        set_source_files_properties("${source}" TARGET_DIRECTORY ${target}
                                    PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
      endif()
    endforeach()
  endforeach()
endfunction()

# A static library of one src/ folder; its public include root is src/.
function(wavelume_library target)
  add_library(${target} STATIC ${ARGN})
  target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  wavelume_target_defaults(${target})
endfunction()
