# The header-only packages that the desk and the tool use: nlohmann_json::nlohmann_json, CLI11::CLI11 and
# utf8cpp::utf8cpp.
#
# Here they are found as packages. For the board there are no packages, but their headers serve every
# target: they are reached through links of their own, because all of this machine's /usr/include on a
# cross compiler's path would mix two systems. Builds that share the folder of the links have the same
# command lines, so that a compiler cache serves one with what another has compiled.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(nlohmann_json 3.11 REQUIRED)
    find_package(CLI11 REQUIRED)
    # Its versions name their target differently.
    find_path(QOR_UTF8CPP utf8cpp/utf8.h REQUIRED)
    add_library(utf8cpp::utf8cpp INTERFACE IMPORTED)
    target_include_directories(utf8cpp::utf8cpp SYSTEM INTERFACE "${QOR_UTF8CPP}")
    return()
endif()

set(QOR_HEADER_LINKS "${CMAKE_BINARY_DIR}/header-packages" CACHE PATH "Where the links to headers are made")

function(qor_link_headers target folder)
    if(NOT EXISTS "/usr/include/${folder}")
        message(FATAL_ERROR "The headers of ${target} are missing: run scripts/setup board")
    endif()
    file(MAKE_DIRECTORY "${QOR_HEADER_LINKS}")
    file(CREATE_LINK "/usr/include/${folder}" "${QOR_HEADER_LINKS}/${folder}" SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED)
    target_include_directories(${target} SYSTEM INTERFACE "${QOR_HEADER_LINKS}")
endfunction()

qor_link_headers(nlohmann_json::nlohmann_json nlohmann)
qor_link_headers(CLI11::CLI11 CLI)
qor_link_headers(utf8cpp::utf8cpp utf8cpp)
