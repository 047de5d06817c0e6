# Half of what a compiler does here is to read the same headers again and again. With this they are
# read once for all floors, and once for several files of the tests and the tools. Every file
# includes what it uses all the same: `make strict` builds without it.
option(TESSAROK_SHARE_HEADERS "Read common headers once and not for every source" OFF)

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
  if(TESSAROK_SHARE_HEADERS)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <array> <chrono> <cstddef> <cstdint> <filesystem> <functional> <map> <memory>
      <optional> <string> <string_view> <system_error> <utility> <vector> ${ARGN})
    tessarok_keep_quiet(${target})
  endif()
endfunction()

# The target takes them from there.
function(tessarok_use_precompiled target from)
  if(TESSAROK_SHARE_HEADERS)
    target_precompile_headers(${target} REUSE_FROM ${from})
    tessarok_keep_quiet(${target})
  endif()
endfunction()

# From here on six sources of a target are compiled as one, which takes a third of the time. What is
# local to one of them must have a name of its own among its neighbours: too much to ask of the
# program itself, where a short name is worth more than a minute.
macro(tessarok_compile_together)
  set(CMAKE_UNITY_BUILD ${TESSAROK_SHARE_HEADERS})
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 6)
endmacro()
