# tarnwick_component(NAME [NEED...]): the target Tarnwick_API_NAME, as Tarnwick_API::NAME, becomes a component of the package: it
# is installed with its headers and found when an application asks for it, together with each NEED (in the words of
# tarnwick_api_find). Nothing else lists the components.
function(tarnwick_component name)
    set(target Tarnwick_API_${name})
    add_library(Tarnwick_API::${name} ALIAS ${target})
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
    if(NOT TARNWICK_INSTALL)
        return()
    endif()
    set_property(GLOBAL APPEND PROPERTY TARNWICK_COMPONENTS ${name})
    set_property(GLOBAL PROPERTY TARNWICK_${name}_NEEDS "${ARGN}")
    tarnwick_install_library(${target} Tarnwick_API_${name}_targets)
endfunction()

# tarnwick_install_library(TARGET EXPORT): with its public headers, and the file of that name from which CMake imports it.
function(tarnwick_install_library target export)
    get_target_property(sets ${target} INTERFACE_HEADER_SETS)
    set(headers "")
    if(sets)
        set(headers FILE_SET HEADERS COMPONENT development)
    endif()
    install(TARGETS ${target} EXPORT ${export}
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        ${headers})
    tarnwick_install_machine_code(${target})
    install(EXPORT ${export} NAMESPACE Tarnwick_API:: DESTINATION ${TARNWICK_CMAKE_FOLDER} COMPONENT development)
endfunction()
