# Headers of others take most of the time that a source is compiled for: QOR_UNITY joins several sources
# of a target to one, which parses them once. A source that forgets an include of its own compiles with
# it; the builds that leave it off notice: the preset debug, and the one that lint reads sources with.
option(QOR_UNITY "Compile several sources of a target at once" OFF)

# qor_unity(TARGET [BATCH]): joins up to so many sources of the target, ten unless told otherwise.
function(qor_unity target)
    if(NOT QOR_UNITY)
        return()
    endif()
    set(batch 10)
    if(ARGC GREATER 1)
        set(batch ${ARGV1})
    endif()
    set_target_properties(${target} PROPERTIES
        UNITY_BUILD ON UNITY_BUILD_MODE BATCH UNITY_BUILD_BATCH_SIZE ${batch})
    # The compiler takes a joined source for a header, whose unnamed namespaces it warns of.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()
