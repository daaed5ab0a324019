# A small request runs through most files of the library once. Optimised across them it touches a quarter less code, see
# docs/PERFORMANCE.md.
if(TARNWICK_LINK_TIME_OPTIMIZATION AND NOT CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    message(FATAL_ERROR "TARNWICK_LINK_TIME_OPTIMIZATION needs g++; CMAKE_INTERPROCEDURAL_OPTIMIZATION serves other compilers")
endif()

# tarnwick_optimize_across_files(TARGET): where the build asked for it.
function(tarnwick_optimize_across_files target)
    if(TARNWICK_LINK_TIME_OPTIMIZATION)
        # With machine code beside what the linker optimises, so that an archive needs no compiler of the same version. What
        # runs but once for each request is best when it is small.
        target_compile_options(${target} PRIVATE -flto=auto -ffat-lto-objects -O2 -fno-plt)
        target_link_options(${target} INTERFACE $<BUILD_INTERFACE:-flto=auto> PRIVATE -flto=auto)
    endif()
endfunction()

# tarnwick_optimize_each_file(TARGET [FILE...]): these, or all of this folder, all the same and for speed: they hold loops.
function(tarnwick_optimize_each_file target)
    if(NOT TARNWICK_LINK_TIME_OPTIMIZATION)
        return()
    endif()
    get_target_property(sources ${target} SOURCES)
    foreach(source IN LISTS sources)
        cmake_path(IS_PREFIX CMAKE_CURRENT_SOURCE_DIR "${source}" is_meant)
        cmake_path(GET source FILENAME name)
        if(ARGN AND NOT name IN_LIST ARGN)
            set(is_meant OFF)
        endif()
        if(is_meant)
            set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES COMPILE_OPTIONS "-fno-lto;-O3")
        endif()
    endforeach()
endfunction()

# tarnwick_install_machine_code(TARGET): takes from an archive that is installed what only this compiler's linker reads.
function(tarnwick_install_machine_code target)
    get_target_property(type ${target} TYPE)
    if(NOT TARNWICK_LINK_TIME_OPTIMIZATION OR NOT type STREQUAL STATIC_LIBRARY)
        return()
    endif()
    cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY "\${CMAKE_INSTALL_PREFIX}" OUTPUT_VARIABLE folder)
    install(CODE "execute_process(COMMAND ${CMAKE_OBJCOPY} --wildcard --remove-section=.gnu.lto_* --remove-section=.gnu.debuglto_*
        --strip-symbol=__gnu_lto_v1 \"\$ENV{DESTDIR}${folder}/$<TARGET_FILE_NAME:${target}>\" COMMAND_ERROR_IS_FATAL ANY)"
        COMPONENT development)
endfunction()
