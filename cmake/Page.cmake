# What the page's WebAssembly module is built with. Emscripten has no packages: utf8proc comes as
# source.
enable_language(C)
set(TESSAROK_UTF8PROC_SOURCE "" CACHE PATH "The folder of utf8proc.c")
add_library(utf8proc STATIC ${TESSAROK_UTF8PROC_SOURCE}/utf8proc.c)
target_include_directories(utf8proc PUBLIC ${TESSAROK_UTF8PROC_SOURCE})
target_compile_definitions(utf8proc PUBLIC UTF8PROC_STATIC)
add_library(PkgConfig::utf8proc ALIAS utf8proc)

# The browser's own exceptions, which cost nothing where none is thrown, and its vectors of 16 bytes:
# every browser has both since 2023.
add_compile_options(-fwasm-exceptions -msimd128 -msse2 -mbulk-memory)
add_link_options(-fwasm-exceptions)
