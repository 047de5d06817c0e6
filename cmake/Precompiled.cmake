# Half of what a compiler does here is to read the same headers again and again. With this they are
# read once for all floors and once for all tests. Every file includes what it uses all the same:
# `make strict` builds without it.
option(TESSAROK_PRECOMPILE "Read common headers once and not for every source" OFF)

# g++ forgets which of them are the system's, and warns of what the optimiser thinks to see in those.
function(tessarok_keep_quiet target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    foreach(warning array-bounds stringop-overflow stringop-overread)
      target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-${warning}>)
    endforeach()
  endif()
endfunction()

# The target reads the headers which nearly every file includes, and those that are named: for itself
# and for others of its kind with the same options.
function(tessarok_precompile target)
  if(TESSAROK_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <array> <chrono> <cstddef> <cstdint> <filesystem> <functional> <map> <memory>
      <optional> <string> <string_view> <system_error> <utility> <vector> ${ARGN})
    tessarok_keep_quiet(${target})
  endif()
endfunction()

# The target takes them from there.
function(tessarok_use_precompiled target from)
  if(TESSAROK_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM ${from})
    tessarok_keep_quiet(${target})
  endif()
endfunction()
