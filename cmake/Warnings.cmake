# One list of warnings for everything that is built here. They are errors for those who change the sources,
# in the presets of development and in continuous integration, which sets the variable in the environment:
# a user's compiler may be newer, and know warnings that nobody has seen yet.
option(QOR_WARNINGS_AS_ERRORS "Fail where the compiler warns" $ENV{QOR_WARNINGS_AS_ERRORS})
add_library(qor_warnings INTERFACE)
target_compile_options(qor_warnings INTERFACE
    -Wall -Wextra -Wpedantic $<$<BOOL:${QOR_WARNINGS_AS_ERRORS}>:-Werror>
    -Wconversion -Wsign-conversion -Wdouble-promotion -Wfloat-conversion
    # Of several sources joined to one, a name of the one would be the shadow of another's.
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wshadow>
    -Wold-style-cast -Wcast-align -Wcast-qual
    -Wnon-virtual-dtor -Woverloaded-virtual
    # With little optimisation, as tests have it, the compiler doubts the standard library's strings.
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:QOR_IS_TEST>>>:-Wnull-dereference>
    -Wformat=2 -Wundef -Wmissing-declarations -Wswitch-enum
    $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op>
    # Only tells that an old compiler passed some records otherwise.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-psabi>
    # GCC's standard library sorts with a function that it calls deprecated itself; clang reports that
    # where stable_sort is called.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-deprecated-declarations>)
