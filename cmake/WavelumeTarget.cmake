# Per-target settings shared by every library, executable, test and benchmark:
# include root, warnings and the optional sanitizers. Nothing is set per directory.
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
endfunction()

# A static library of one src/ folder; its public include root is src/.
function(wavelume_library target)
  add_library(${target} STATIC ${ARGN})
  target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  wavelume_target_defaults(${target})
endfunction()
