include(CMakePackageConfigHelpers)

install(TARGETS Tarnwick_API EXPORT Tarnwick_API_targets FILE_SET HEADERS)
install(EXPORT Tarnwick_API_targets NAMESPACE Tarnwick_API:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tarnwick_API)

get_target_property(type Tarnwick_API TYPE)
set(TARNWICK_IS_STATIC FALSE)
if(type STREQUAL STATIC_LIBRARY)
    set(TARNWICK_IS_STATIC TRUE)
endif()
list(TRANSFORM TARNWICK_DEPENDENCIES REPLACE "(.+)" "    find_dependency(\\1)" OUTPUT_VARIABLE TARNWICK_FIND_DEPENDENCIES)
list(JOIN TARNWICK_FIND_DEPENDENCIES "\n" TARNWICK_FIND_DEPENDENCIES)
configure_package_config_file(cmake/Tarnwick_APIConfig.cmake.in Tarnwick_APIConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tarnwick_API)
write_basic_package_version_file(Tarnwick_APIConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/Tarnwick_APIConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/Tarnwick_APIConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tarnwick_API)
