# Debian packages: cmake --workflow --preset debian.
find_program(TARNWICK_DPKG dpkg)
if(NOT TARNWICK_DPKG)
    return()
endif()

set(licence "No licence has been chosen by the owner yet.")
set(runtime_package libtarnwick-api${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(development_package libtarnwick-api-dev)
set(tools_package tarnwick-tools)

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development tools)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_NAME tarnwick-api)
set(CPACK_PACKAGE_CONTACT "The developers of Tarnwick_API <tarnwick-api@tarnwick.example>")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/Sources)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS ca-certificates)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "The shared library, for applications that were linked with it.
${licence}")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# What the archive leaves to its users to link with, and what pkg-config looks at for the shared library too.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION}), libcurl4-openssl-dev, libicu-dev, \
libsecret-1-dev, libsimdjson-dev, libspdlog-dev, libsqlite3-dev, libssl-dev, zlib1g-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "pkg-config, cmake (>= 3.25)")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Headers, archive, and what CMake and pkg-config find them by, for building
applications. ${licence}")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${tools_package})
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime_package} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "tarnwick is a command-line client of the service; tarnwick-service stands in for
the service on this computer. ${licence}")

# Every package says under which terms it comes.
file(CONFIGURE OUTPUT copyright CONTENT "${licence}\n")
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${${component}_package} COMPONENT ${component})
endforeach()

include(CPack)
