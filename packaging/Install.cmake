# What is installed where, and in which component:
#
#   Runtime          the library
#   Development      what a program is built against: headers, CMake package, pkg-config file
#   RecorderRuntime      the flight recorder's library
#   RecorderDevelopment  its headers, its CMake target and its pkg-config file
#   DeskRuntime      the desk platform's library
#   DeskDevelopment  what a test on a desk is built against: desk platform, simulated neighbours
#   Tool             qor-power with its manual, completions for shells, the example radios and
#                    the schema of radio files
#
# The board gets the first alone, and the flight recorder where it records; nothing of the desk is ever
# needed there.
#
# With `way` set, the names of components and exports begin with it, and who installs everything does not
# install them (not_by_itself).
set(not_by_itself)
if(way)
    set(not_by_itself EXCLUDE_FROM_ALL)
endif()

include("${CMAKE_CURRENT_LIST_DIR}/Documents.cmake")
set(headers "${CMAKE_INSTALL_INCLUDEDIR}/qor-output-power-calculator")
set(cmake_package "${CMAKE_INSTALL_LIBDIR}/cmake/QorOutputPowerCalculator")
set(pkgconfig "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# qor_install_library(TARGET EXPORT RUNTIME-COMPONENT DEVELOPMENT-COMPONENT): a library, which those who
# find the CMake package find in it.
function(qor_install_library target export runtime development)
    install(TARGETS ${target} EXPORT ${way}${export}
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT ${way}${runtime} NAMELINK_COMPONENT ${way}${development} ${not_by_itself}
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT ${way}${development} ${not_by_itself}
        INCLUDES DESTINATION "${headers}")
endfunction()

function(qor_install_export export component)
    install(EXPORT ${way}${export} FILE ${export}.cmake NAMESPACE QorOutputPowerCalculator::
        DESTINATION "${cmake_package}" COMPONENT ${way}${component} ${not_by_itself})
endfunction()

# A .pc file finds its prefix from where it lies, so that an installed tree can be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}/${pkgconfig}" OUTPUT_VARIABLE prefix_from_pkgconfig)
function(qor_install_pkgconfig name component)
    configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${name}.pc.in" ${name}.pc @ONLY)
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/${name}.pc" DESTINATION "${pkgconfig}"
        COMPONENT ${way}${component} ${not_by_itself})
endfunction()

# The library

qor_install_library(QorOutputPowerCalculator QorOutputPowerCalculatorTargets Runtime Development)

# They include each other by plain names, so they lie in one folder. A library that is laid out for a board's
# own platform headers is used with those.
file(GLOB public_headers CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/Control/OutputPowerCalculator/*.h"
    "${PROJECT_SOURCE_DIR}/interfaces/*.h")
if(NOT QOR_PLATFORM_HEADERS)
    file(GLOB platform_headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/platform/*.h")
    list(APPEND public_headers ${platform_headers})
endif()
install(FILES ${public_headers} DESTINATION "${headers}"
    COMPONENT ${way}Development ${not_by_itself})

qor_install_export(QorOutputPowerCalculatorTargets Development)
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/QorOutputPowerCalculatorConfig.cmake.in"
    QorOutputPowerCalculatorConfig.cmake INSTALL_DESTINATION "${cmake_package}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(QorOutputPowerCalculatorConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(
    FILES
        "${CMAKE_CURRENT_BINARY_DIR}/QorOutputPowerCalculatorConfig.cmake"
        "${CMAKE_CURRENT_BINARY_DIR}/QorOutputPowerCalculatorConfigVersion.cmake"
    DESTINATION "${cmake_package}" COMPONENT ${way}Development ${not_by_itself})
qor_install_pkgconfig(qor-output-power-calculator Development)

# The manual of the library, for who builds against it.
file(STRINGS "${PROJECT_SOURCE_DIR}/debian/changelog" dated REGEX "^ -- ")
string(REGEX MATCH "[0-9]+ [A-Z][a-z][a-z] [0-9]+" QOR_DATE "${dated}")
foreach(page IN ITEMS OutputPowerCalculator.3 qor-board-platform.7)
    configure_file("${CMAKE_CURRENT_LIST_DIR}/manual/${page}" manual/${page} @ONLY)
    string(REGEX MATCH "[0-9]$" section ${page})
    install(FILES "${CMAKE_CURRENT_BINARY_DIR}/manual/${page}"
        DESTINATION "${CMAKE_INSTALL_MANDIR}/man${section}" COMPONENT ${way}Development ${not_by_itself})
endforeach()

# A host on a board, with a template of the platform that the board brings.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/host" "${PROJECT_SOURCE_DIR}/examples/board-platform"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/libqoroutputpowercalculator-dev/examples"
    COMPONENT ${way}Development ${not_by_itself}
    PATTERN build-with-pkg-config PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The flight recorder

qor_install_library(QorRadioFileRecorder
    QorOutputPowerCalculatorRecorderTargets RecorderRuntime RecorderDevelopment)
qor_install_export(QorOutputPowerCalculatorRecorderTargets RecorderDevelopment)
file(GLOB recorder_headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/recorder/*.h")
install(FILES ${recorder_headers} DESTINATION "${headers}"
    COMPONENT ${way}RecorderDevelopment ${not_by_itself})
qor_install_pkgconfig(qor-radio-file-recorder RecorderDevelopment)

set(recorder_documents "${CMAKE_INSTALL_DATAROOTDIR}/doc/libqorradiofilerecorder-dev")
qor_install_documents("${recorder_documents}" ${way}RecorderDevelopment
    "${PROJECT_SOURCE_DIR}/docs/how-to/field-case.md")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/recorder"
    DESTINATION "${recorder_documents}/examples" COMPONENT ${way}RecorderDevelopment ${not_by_itself}
    PATTERN build-with-pkg-config PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

if(NOT QOR_TOOLS)
    return()
endif()

# The desk: stand-ins for the board's platform and for the neighbours

qor_install_library(QorDeskPlatform
    QorOutputPowerCalculatorDeskTargets DeskRuntime DeskDevelopment)
qor_install_library(qor_simulated_neighbours
    QorOutputPowerCalculatorDeskTargets DeskRuntime DeskDevelopment)
qor_install_export(QorOutputPowerCalculatorDeskTargets DeskDevelopment)

# CMake strips programs and shared libraries only.
install(CODE "
    if(CMAKE_INSTALL_DO_STRIP)
        set(archive \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\"
            \"/${CMAKE_INSTALL_LIBDIR}/$<TARGET_FILE_NAME:qor_simulated_neighbours>\")
        list(JOIN archive \"\" archive)
        execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-debug --remove-section=.comment
            --enable-deterministic-archives \"\${archive}\" COMMAND_ERROR_IS_FATAL ANY)
    endif()" COMPONENT ${way}DeskDevelopment ${not_by_itself})

file(GLOB desk_headers CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/desk/Simulated*.h" "${PROJECT_SOURCE_DIR}/platform/standin/*.h")
install(
    FILES
        ${desk_headers}
        "${PROJECT_SOURCE_DIR}/desk/Answer.h"
        "${PROJECT_SOURCE_DIR}/desk/CallLog.h"
        "${PROJECT_SOURCE_DIR}/desk/CallRecorder.h"
        "${PROJECT_SOURCE_DIR}/desk/FailureDrill.h"
    DESTINATION "${headers}" COMPONENT ${way}DeskDevelopment ${not_by_itself})
qor_install_pkgconfig(qor-desk-platform DeskDevelopment)
qor_install_pkgconfig(qor-simulated-neighbours DeskDevelopment)

set(desk_documents "${CMAKE_INSTALL_DATAROOTDIR}/doc/libqordeskplatform-dev")
qor_install_documents("${desk_documents}" ${way}DeskDevelopment
    "${PROJECT_SOURCE_DIR}/docs/how-to/simulated-neighbours.md")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/desk" "${PROJECT_SOURCE_DIR}/examples/simulated"
    DESTINATION "${desk_documents}/examples" COMPONENT ${way}DeskDevelopment ${not_by_itself}
    PATTERN build-with-pkg-config PERMISSIONS
        OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The tool

install(TARGETS qor-power RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    COMPONENT ${way}Tool ${not_by_itself})

set(tool_documents "${CMAKE_INSTALL_DATAROOTDIR}/doc/qor-power")
qor_install_documents("${tool_documents}" ${way}Tool
    "${PROJECT_SOURCE_DIR}/docs/reference/checks.md"
    "${PROJECT_SOURCE_DIR}/docs/reference/qor-power.md"
    "${PROJECT_SOURCE_DIR}/docs/reference/radio-file.md")
# Beside them as in the sources, so that their links hold.
file(GLOB tool_guides CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/reference/commands/*.md")
qor_install_documents("${tool_documents}/commands" ${way}Tool ${tool_guides})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/reference/pictures"
    DESTINATION "${tool_documents}" COMPONENT ${way}Tool ${not_by_itself})
# For editors.
install(FILES "${PROJECT_SOURCE_DIR}/share/qor-power-answers.schema.json"
    "${PROJECT_SOURCE_DIR}/share/qor-radio-file.schema.json"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/qor-power" COMPONENT ${way}Tool ${not_by_itself})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/radios" DESTINATION "${tool_documents}/examples"
    COMPONENT ${way}Tool ${not_by_itself} FILES_MATCHING PATTERN "*.json")
install(PROGRAMS "${PROJECT_SOURCE_DIR}/examples/fleet/on-hosts" "${PROJECT_SOURCE_DIR}/examples/fleet/on-slurm"
    DESTINATION "${tool_documents}/examples/fleet" COMPONENT ${way}Tool ${not_by_itself})
install(FILES "${PROJECT_SOURCE_DIR}/examples/fleet/on_spark.py"
    DESTINATION "${tool_documents}/examples/fleet" COMPONENT ${way}Tool ${not_by_itself})

# What the built tool says of itself: a manual page, and a script for each shell.
set(tool_says "${PROJECT_BINARY_DIR}/tools/qor-power/documents")
install(FILES "${tool_says}/qor-power.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
    COMPONENT ${way}Tool ${not_by_itself})
install(FILES "${tool_says}/qor-power.bash" RENAME qor-power
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions"
    COMPONENT ${way}Tool ${not_by_itself})
install(FILES "${tool_says}/qor-power.fish"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d"
    COMPONENT ${way}Tool ${not_by_itself})
install(FILES "${tool_says}/_qor-power"
    DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/zsh/vendor-completions"
    COMPONENT ${way}Tool ${not_by_itself})
