# What every object that leaves this house has to have. scripts/check-object reads the results from the
# ELF headers and scripts/check-flags from the compiler's command lines, so a missing line here fails a
# test.
#
# The shared library leaves the platform's symbols open, so undefined symbols stay allowed when it is
# linked.
add_compile_options(-fstack-protector-strong)

# Jumps and returns go only where the compiler meant them to, on processors that check it: x86-64's.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection QOR_HAS_CONTROL_FLOW_PROTECTION)
if(QOR_HAS_CONTROL_FLOW_PROTECTION)
    add_compile_options(-fcf-protection)
endif()

# The checked variants of the C library's functions exist only with optimisation, and the sanitizers
# check the same calls themselves, better. Undefined first: a distribution's compiler may set it too.
if(NOT QOR_SANITIZE)
    set(optimised "$<CONFIG:Release,RelWithDebInfo,MinSizeRel>")
    add_compile_options("$<${optimised}:-U_FORTIFY_SOURCE>" "$<${optimised}:-D_FORTIFY_SOURCE=2>")
endif()

add_link_options(
    LINKER:-z,relro LINKER:-z,now # everything is resolved at load and then read-only
    LINKER:-z,noexecstack
    LINKER:-z,text                # a relocation in the code is an error
    LINKER:--as-needed)           # only what is used appears as needed

# Programs are position independent as well, but for those of the address sanitizer: tests start them thousands
# of times, and nothing is shipped of them. At a fixed place they have 600,000 addresses less to relocate.
if(QOR_SANITIZE MATCHES "address")
    add_link_options("$<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-no-pie>")
else()
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES CXX)
endif()

# In the build folder programs find the libraries by a path relative to themselves; without it their
# bytes would depend on the folder's name. Installing takes the path out.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
