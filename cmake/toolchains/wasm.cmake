# For a browser: WebAssembly, with Debian's emscripten.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)

# The desk reports what is wrong with a radio file by exceptions.
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions -include ${CMAKE_CURRENT_LIST_DIR}/wasm-ranges.h")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fwasm-exceptions")
