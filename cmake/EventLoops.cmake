# The main queue on the host's event loop: headers of their own for each toolkit, which users of another never include.
include(${CMAKE_CURRENT_LIST_DIR}/Tarnwick_APIEventLoops.cmake)

set(TARNWICK_EVENT_LOOPS Asio GLib Qt CACHE STRING "Event loops of hosts to look for, of Asio, GLib and Qt")

set(folder ${PROJECT_SOURCE_DIR}/include/Tarnwick_API/Platform/EventLoops)
foreach(loop IN LISTS TARNWICK_EVENT_LOOPS)
    if(NOT EXISTS ${folder}/${loop}MainQueue.hpp)
        message(FATAL_ERROR "TARNWICK_EVENT_LOOPS: there is no main queue on \"${loop}\"")
    endif()
    tarnwick_find_event_loop(${loop} toolkit)
    if(NOT toolkit)
        message(STATUS "${loop} not found: Tarnwick_API::${loop}, its tests and its example are NOT built")
        continue()
    endif()
    add_library(Tarnwick_API_${loop} INTERFACE)
    add_library(Tarnwick_API::${loop} ALIAS Tarnwick_API_${loop})
    target_link_libraries(Tarnwick_API_${loop} INTERFACE Tarnwick_API ${toolkit})
    target_sources(Tarnwick_API_${loop} INTERFACE FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/include
        FILES ${folder}/${loop}MainQueue.hpp ${folder}/HostLoopTasks.hpp)
    set_target_properties(Tarnwick_API_${loop} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endforeach()
