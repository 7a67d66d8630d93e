# clang++ for the sanitizers, the fuzzers and the counts of what runs: the one that scripts/find-clang finds by what
# it can. It is looked for once in a build folder; -DCMAKE_CXX_COMPILER=... is another.
if(NOT DEFINED CMAKE_CXX_COMPILER)
    execute_process(
        COMMAND "${CMAKE_CURRENT_LIST_DIR}/../../scripts/find-clang"
        OUTPUT_VARIABLE found OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(CMAKE_CXX_COMPILER "${found}" CACHE FILEPATH "The clang++ that scripts/find-clang found")
endif()
