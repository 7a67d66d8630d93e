# Guides that are installed lead only where an installation has something: what lies elsewhere there is linked
# there, and what is not installed is no link.

# qor_install_documents(DESTINATION COMPONENT FILE...)
function(qor_install_documents destination component)
    string(MAKE_C_IDENTIFIER "${destination}" room)
    set(room "${CMAKE_CURRENT_BINARY_DIR}/documents/${room}")
    foreach(file IN LISTS ARGN)
        file(READ "${file}" text)
        string(REPLACE "](../../../share/" "](../../../qor-power/" text "${text}")
        string(REPLACE "](../../share/" "](../../qor-power/" text "${text}")
        string(REPLACE "](../../../examples/" "](../examples/" text "${text}")
        string(REPLACE "](../../examples/" "](examples/" text "${text}")
        string(REGEX REPLACE "\\[([^]]*)\\]\\((\\.\\./)+(learn|how-to|background|reference)/[^)]*\\)" "\\1"
            text "${text}")
        cmake_path(GET file FILENAME name)
        file(CONFIGURE OUTPUT "${room}/${name}" CONTENT "@text@" @ONLY)
        install(FILES "${room}/${name}" DESTINATION "${destination}" COMPONENT ${component} ${not_by_itself})
    endforeach()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${ARGN})
endfunction()
