# GTest::gtest, GTest::gmock and GTest::gmock_main: as a package here, built from Debian's source package
# for the board.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(GTest REQUIRED)
    return()
endif()

set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
foreach(library gtest gmock gmock_main)
    if(NOT TARGET GTest::${library})
        add_library(GTest::${library} ALIAS ${library})
    endif()
    # Other people's headers: our warnings are not for them.
    get_target_property(folders ${library} INTERFACE_INCLUDE_DIRECTORIES)
    set_target_properties(${library} PROPERTIES INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${folders}")
endforeach()
