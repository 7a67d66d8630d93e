# The Debian packages, one for each component, made by cpack -G DEB.
#
# The desk platform has packages of its own: a board that installs the library and a board's SDK that
# installs its -dev package must not get the stand-in for the platform that they bring themselves.
set(package_of_Runtime libqoroutputpowercalculator${PROJECT_VERSION_MAJOR})
set(package_of_Development libqoroutputpowercalculator-dev)
set(package_of_DeskRuntime libqordeskplatform${PROJECT_VERSION_MAJOR})
set(package_of_DeskDevelopment libqordeskplatform-dev)
set(package_of_Tool qor-power)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qor-output-power-calculator)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime Development DeskRuntime DeskDevelopment Tool)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER
    "Output Power Calculator maintainers <maintainers@example.invalid>")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Dependencies

# qor_cross_dependency(VARIABLE PACKAGE): PACKAGE in the version that the cross compiler links against.
# Nothing newer can be needed.
function(qor_cross_dependency variable package)
    execute_process(
        COMMAND dpkg-query -W -f "\${Version}" ${package}-${CPACK_DEBIAN_PACKAGE_ARCHITECTURE}-cross
        OUTPUT_VARIABLE version COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "-[^-]*$" "" version "${version}")
    set(${variable} "${package} (>= ${version})" PARENT_SCOPE)
endfunction()

if(CMAKE_CROSSCOMPILING)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
    # dpkg-shlibdeps would name the cross compiler's packages, which no board has.
    qor_cross_dependency(libc libc6)
    qor_cross_dependency(libgcc libgcc-s1)
    qor_cross_dependency(libstdcxx libstdc++6)
    set(runtime_depends "${libc}, ${libgcc}, ${libstdcxx}")
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "${runtime_depends}")
    set(CPACK_DEBIAN_DESKRUNTIME_PACKAGE_DEPENDS "${runtime_depends}")
    set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${runtime_depends}, ")
else()
    foreach(component IN ITEMS RUNTIME DESKRUNTIME TOOL)
        set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS ON)
    endforeach()
    # The tool's own libraries lie in other packages, which are named below.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
endif()

set(this "(= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${package_of_Runtime} ${this}")
set(CPACK_DEBIAN_DESKDEVELOPMENT_PACKAGE_DEPENDS
    "${package_of_DeskRuntime} ${this}, ${package_of_Development} ${this}")
string(APPEND CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS
    "${package_of_Runtime} (>= ${PROJECT_VERSION}), "
    "${package_of_DeskRuntime} (>= ${PROJECT_VERSION})")

# What depends on the libraries is told by their shlibs files to ask for this version or a later one.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
foreach(component IN ITEMS RUNTIME DESKRUNTIME)
    set(CPACK_DEBIAN_${component}_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers")
endforeach()

# Sections and descriptions

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
"transmit power calculator of microwave radios - library
The output power calculator answers how much transmit power a microwave radio
may deliver, at most and at least, for every modulation and code of its frame
format.

The program that loads this library brings the platform: the interface
broker, the traces, the stored variables and the board support.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"transmit power calculator of microwave radios - development files
Headers, CMake package and pkg-config file of the output power calculator,
which answers how much transmit power a microwave radio may deliver.

The headers state the neighbours that the calculator asks, and the platform
that the program has to bring.")

set(CPACK_DEBIAN_DESKRUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DESKRUNTIME_DESCRIPTION
"desk platform of the transmit power calculator - library
Stand-in for the platform of a radio's board: interface broker, traces,
stored variables and board support in memory. With it the output power
calculator runs in a program on a desk or in a test.

No board needs this library.")

set(CPACK_DEBIAN_DESKDEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DESKDEVELOPMENT_DESCRIPTION
"desk platform and simulated neighbours - development files
For tests of programs that use the output power calculator: the stand-in for
a board's platform, and simulated neighbours that answer as programmed,
record their calls and fail when told to.

Examples and a manual of the simulated neighbours are included.")

set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_DESCRIPTION
"transmit power tables of microwave radios
qor-power reads a description of a radio and prints the powers of every
modulation and code of a frame format, with the reason where there is none.
It explains each power, compares radios, sweeps over their inputs, checks
their descriptions, replays recorded requests, and does so for whole fleets.

Example radios are included.")

# What policy asks for in every package

set(changelog "${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog")
file(STRINGS "${changelog}" newest LIMIT_COUNT 1)
if(NOT newest MATCHES "^qor-output-power-calculator \\(([^)]*)\\)"
        OR NOT CMAKE_MATCH_1 VERSION_EQUAL PROJECT_VERSION)
    message(FATAL_ERROR "${changelog} does not begin with version ${PROJECT_VERSION}")
endif()

# Without the time and the name of the file, so that the bytes depend on its content alone.
function(qor_compress input output)
    add_custom_command(OUTPUT ${output}
        COMMAND gzip -9nc "${input}" > ${output} DEPENDS "${input}" VERBATIM)
endfunction()
qor_compress("${changelog}" changelog.gz)
qor_compress("${tool_says}/qor-power.1" qor-power.1.gz)
add_custom_target(qor_compressed_documents ALL DEPENDS changelog.gz qor-power.1.gz)
add_dependencies(qor_compressed_documents qor_power_documents)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/qor-power.1.gz"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT Tool)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    set(package ${package_of_${component}})
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    install(FILES debian/copyright "${CMAKE_CURRENT_BINARY_DIR}/changelog.gz"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}" COMPONENT ${component})
endforeach()

include(CPack)
