# QOR_COVERAGE=ON builds everything so that it counts what runs: lines, branches and conditions. Every
# process leaves its counts in the build folder's profiles/, where scripts/coverage collects them.
#
# Only clang judges conditions one by one (MC/DC), and its counts stay with the source.
if(QOR_COVERAGE)
    include(CheckCXXCompilerFlag)
    check_cxx_compiler_flag("-fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc" QOR_COUNTS_CONDITIONS)
    if(NOT QOR_COUNTS_CONDITIONS)
        message(FATAL_ERROR "QOR_COVERAGE needs a clang++ that counts conditions: use the preset coverage")
    endif()
    # %m tells programs and libraries apart; all processes add to the same file of each.
    set(counting "-fprofile-instr-generate=${CMAKE_BINARY_DIR}/profiles/%m.profraw")
    # Sources are named by their path below the project's folder.
    add_compile_options(
        "${counting}" -fcoverage-mapping -fcoverage-mcdc -fcoverage-compilation-dir=.
        # Some counts are differences of others, so that one lost between threads makes them wrong.
        -fprofile-update=atomic)
    add_link_options("${counting}")
endif()
