# A board's own platform headers (QOR_PLATFORM_HEADERS): that they offer what the library uses is found out at
# configure time, and not by a board that crashes at its start.
include(CheckTypeSize)

# qor_check_platform_headers(FOLDER...): fails unless the headers in these folders offer what
# cmake/PlatformContract.cpp uses, with the sizes that QOR_PLATFORM_SIZES states.
function(qor_check_platform_headers)
    foreach(folder IN LISTS ARGN)
        if(NOT IS_ABSOLUTE "${folder}" OR NOT IS_DIRECTORY "${folder}")
            message(FATAL_ERROR "QOR_PLATFORM_HEADERS: ${folder} is no absolute path of a folder")
        endif()
    endforeach()
    foreach(header IN ITEMS BoardSupport.h CStorageManager.h InterfaceBroker.h RawTrace.h VelTrace.h)
        set(places ${ARGN})
        list(TRANSFORM places APPEND "/${header}")
        unset(place)
        foreach(candidate IN LISTS places)
            if(EXISTS "${candidate}")
                set(place "${candidate}")
            endif()
        endforeach()
        if(NOT place)
            message(FATAL_ERROR "QOR_PLATFORM_HEADERS: there is no ${header} in ${ARGN}")
        endif()
    endforeach()

    # Compiled anew each time, as a header may have changed.
    set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
    set(searched ${ARGN} "${PROJECT_SOURCE_DIR}/interfaces")
    try_compile(offers
        SOURCES "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/PlatformContract.cpp"
        CMAKE_FLAGS "-DINCLUDE_DIRECTORIES=${searched}"
        CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON
        OUTPUT_VARIABLE output
        NO_CACHE)
    if(NOT offers)
        message(FATAL_ERROR "QOR_PLATFORM_HEADERS: ${ARGN} lacks something that the library uses, "
            "see cmake/PlatformContract.cpp:\n${output}")
    endif()

    # The library makes room for these two itself.
    set(CMAKE_REQUIRED_INCLUDES "${searched}")
    set(CMAKE_REQUIRED_QUIET ON)
    set(CMAKE_EXTRA_INCLUDE_FILES VelTrace.h RawTrace.h)
    set(sizes "")
    foreach(type IN ITEMS VelTrace TraceHeader)
        unset(QOR_SIZE_OF_${type} CACHE)
        unset(HAVE_QOR_SIZE_OF_${type} CACHE)
        check_type_size(${type} QOR_SIZE_OF_${type} LANGUAGE CXX)
        list(APPEND sizes "${type}=${QOR_SIZE_OF_${type}}")
    endforeach()
    message(STATUS "Platform headers of ${ARGN}, with the sizes ${sizes}")
    foreach(stated IN LISTS QOR_PLATFORM_SIZES)
        if(NOT stated IN_LIST sizes)
            message(FATAL_ERROR "QOR_PLATFORM_SIZES: ${stated} is stated, "
                "but this compiler makes ${sizes} of the headers in ${ARGN}")
        endif()
    endforeach()
endfunction()
