# The package by which an application finds the installed library: by CMake and by pkg-config.
tarnwick_install_library(Tarnwick_API Tarnwick_API_targets)

# A library that is shared has linked with its needs already.
set(TARNWICK_LIBRARY_NEEDS Threads)
if(NOT BUILD_SHARED_LIBS)
    set(TARNWICK_LIBRARY_NEEDS ${TARNWICK_NEEDS})
endif()

function(tarnwick_quote_all result)
    list(TRANSFORM ARGN REPLACE "(.+)" "\"\\1\"")
    list(JOIN ARGN " " quoted)
    set(${result} ${quoted} PARENT_SCOPE)
endfunction()
tarnwick_quote_all(TARNWICK_LIBRARY_NEEDS ${TARNWICK_LIBRARY_NEEDS})
get_property(TARNWICK_COMPONENTS GLOBAL PROPERTY TARNWICK_COMPONENTS)
set(TARNWICK_COMPONENT_NEEDS "")
foreach(component IN LISTS TARNWICK_COMPONENTS)
    get_property(needs GLOBAL PROPERTY TARNWICK_${component}_NEEDS)
    tarnwick_quote_all(needs ${needs})
    string(APPEND TARNWICK_COMPONENT_NEEDS "set(_tarnwick_${component}_needs ${needs})\n")
endforeach()
list(JOIN TARNWICK_COMPONENTS " " TARNWICK_COMPONENTS)

include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/Tarnwick_APIConfig.cmake.in Tarnwick_APIConfig.cmake
    INSTALL_DESTINATION ${TARNWICK_CMAKE_FOLDER}
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
configure_file(cmake/Tarnwick_APIConfigVersion.cmake.in Tarnwick_APIConfigVersion.cmake @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/Tarnwick_APIConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/Tarnwick_APIConfigVersion.cmake
    cmake/Tarnwick_APINeeds.cmake
    DESTINATION ${TARNWICK_CMAKE_FOLDER} COMPONENT development)

# tarnwick_install_module(NAME LIBRARY REQUIRES [HOW]): what pkg-config is told of LIBRARY, which needs the dependencies' modules in
# every link (Requires) or in those without shared libraries (Requires.private).
function(tarnwick_install_module name library requires)
    set(how ${ARGN})
    list(JOIN TARNWICK_MODULES ", " modules)
    set(folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    # Found from where the file lies, so that the installed tree can be moved. The system's own is not, and compilers know it.
    set(prefix ${CMAKE_INSTALL_PREFIX})
    if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR} AND NOT prefix STREQUAL "/usr")
        file(RELATIVE_PATH up /prefix/${folder} /prefix)
        string(REGEX REPLACE "/$" "" up ${up})
        set(prefix "\${pcfiledir}/${up}")
    endif()
    cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY /prefix OUTPUT_VARIABLE libdir)
    cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_INCLUDEDIR BASE_DIRECTORY /prefix OUTPUT_VARIABLE includedir)
    string(REGEX REPLACE "^/prefix/" "\${prefix}/" libdir ${libdir})
    string(REGEX REPLACE "^/prefix/" "\${prefix}/" includedir ${includedir})
    configure_file(cmake/Tarnwick_API.pc.in ${name}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${folder} COMPONENT development)
endfunction()
if(BUILD_SHARED_LIBS)
    tarnwick_install_module(Tarnwick_API "-L\${libdir} -lTarnwick_API" Requires.private)
else()
    tarnwick_install_module(Tarnwick_API "-L\${libdir} -lTarnwick_API" Requires)
endif()
# By its path, as a linker that finds both by name takes the shared library.
tarnwick_install_module(Tarnwick_API_Static "\${libdir}/libTarnwick_API.a" Requires " (archive)")
