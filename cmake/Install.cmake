# The package by which an application finds the installed library: by CMake and by pkg-config.
tarnwick_install_library(Tarnwick_API Tarnwick_API_targets)

# A library that is shared has linked with its needs already.
set(TARNWICK_LIBRARY_NEEDS Threads)
set(TARNWICK_PC_REQUIRES Requires.private)
if(NOT BUILD_SHARED_LIBS)
    set(TARNWICK_LIBRARY_NEEDS ${TARNWICK_NEEDS})
    set(TARNWICK_PC_REQUIRES Requires)
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

# Found from where the file lies, so that the installed tree can be moved; unless its folders lie apart.
set(TARNWICK_PC_FOLDER ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(TARNWICK_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
    file(RELATIVE_PATH up /prefix/${TARNWICK_PC_FOLDER} /prefix)
    string(REGEX REPLACE "/$" "" up ${up})
    set(TARNWICK_PC_PREFIX "\${pcfiledir}/${up}")
endif()
foreach(folder IN ITEMS LIBDIR INCLUDEDIR)
    set(TARNWICK_PC_${folder} ${CMAKE_INSTALL_${folder}})
    if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_${folder}})
        set(TARNWICK_PC_${folder} "\${prefix}/${CMAKE_INSTALL_${folder}}")
    endif()
endforeach()
list(JOIN TARNWICK_MODULES ", " TARNWICK_PC_MODULES)
configure_file(cmake/Tarnwick_API.pc.in Tarnwick_API.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/Tarnwick_API.pc DESTINATION ${TARNWICK_PC_FOLDER} COMPONENT development)
