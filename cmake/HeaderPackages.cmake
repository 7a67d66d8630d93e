# The header-only packages that the desk and the tool use: nlohmann_json::nlohmann_json and CLI11::CLI11.
#
# Here they are found as packages. For the board there are no packages, but their headers serve every
# target: they are reached through links of their own, because all of this machine's /usr/include on a
# cross compiler's path would mix two systems.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(nlohmann_json 3.11 REQUIRED)
    find_package(CLI11 REQUIRED)
    return()
endif()

function(qor_link_headers target folder)
    if(NOT EXISTS "/usr/include/${folder}")
        message(FATAL_ERROR "The headers of ${target} are missing: run scripts/setup board")
    endif()
    set(links "${CMAKE_BINARY_DIR}/header-packages")
    file(MAKE_DIRECTORY "${links}")
    file(CREATE_LINK "/usr/include/${folder}" "${links}/${folder}" SYMBOLIC)
    add_library(${target} INTERFACE IMPORTED)
    target_include_directories(${target} SYSTEM INTERFACE "${links}")
endfunction()

qor_link_headers(nlohmann_json::nlohmann_json nlohmann)
qor_link_headers(CLI11::CLI11 CLI)
