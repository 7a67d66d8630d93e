# QOR_SANITIZE=address,undefined or QOR_SANITIZE=thread builds everything with them. The first report
# ends the program, and so does what the standard library finds wrong, such as an empty optional that is
# read.
if(QOR_SANITIZE)
    add_compile_options(-fsanitize=${QOR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    add_link_options(-fsanitize=${QOR_SANITIZE})
endif()

# qor_optimise_sanitized(TARGET): even a debug build with sanitizers optimises the target. For those in
# which the tests spend their time; what is compiled for longer than it runs stays as it is.
function(qor_optimise_sanitized target)
    if(QOR_SANITIZE)
        target_compile_options(${target} PRIVATE $<$<CONFIG:Debug>:-O1>)
    endif()
endfunction()

# qor_replaces_operator_new(TARGET): the program has an operator new of its own. In one source with what
# uses it the compiler would doubt it. clang links its thread sanitizer as a whole, operators included,
# which would then be there twice; its shared form gives way.
function(qor_replaces_operator_new target)
    set_target_properties(${target} PROPERTIES UNITY_BUILD OFF)
    if(QOR_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        execute_process(
            COMMAND ${CMAKE_CXX_COMPILER}
                -print-file-name=libclang_rt.tsan-${CMAKE_SYSTEM_PROCESSOR}.so
            OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        cmake_path(GET runtime PARENT_PATH folder)
        target_link_options(${target} PRIVATE -shared-libsan "LINKER:-rpath,${folder}")
    endif()
endfunction()
