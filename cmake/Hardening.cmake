# What compiler and linker do against mistakes with memory. A sanitizer does more, and some of this
# stands in its way.
option(TESSAROK_HARDEN "Build with the protections of compiler and linker" ON)
if(NOT TESSAROK_HARDEN OR TESSAROK_SANITIZE)
  return()
endif()

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
add_compile_options(-fstack-protector-strong)
# The checks need to know sizes, which only the optimiser finds out. Distributions may set a level
# of their own.
add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  add_compile_options(-fstack-clash-protection)
  # The tables through which functions are called are filled at the start and then read-only; no
  # data is ever code.
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()
