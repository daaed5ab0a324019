# Compiles for macOS on Debian, where nothing of it can be linked or run. The compiler brings that system's headers and C++
# library, Debian the other libraries' headers, and the tests' double the frameworks'. TARNWICK_ZIG is the compiler's program
# (scripts/macos-compiler gives it), CMAKE_SYSTEM_PROCESSOR arm64 or x86_64.
if(NOT TARNWICK_ZIG)
    message(FATAL_ERROR "TARNWICK_ZIG is not set: TARNWICK_ZIG=$(scripts/macos-compiler) cmake --preset ...")
endif()
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TARNWICK_ZIG CMAKE_SYSTEM_PROCESSOR)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

string(REPLACE arm64 aarch64 processor ${CMAKE_SYSTEM_PROCESSOR})
set(CMAKE_CXX_COMPILER ${TARNWICK_ZIG} c++ -target ${processor}-macos)
set(CMAKE_CXX_ABI_COMPILED TRUE)
set(CMAKE_CXX_SIZEOF_DATA_PTR 8)
set(CMAKE_SIZEOF_VOID_P 8)
set(CMAKE_OSX_SYSROOT "")
set(CMAKE_INSTALL_NAME_TOOL false)
# Of a program only the objects are made.
set(CMAKE_CXX_LINK_EXECUTABLE "<CMAKE_COMMAND> -E touch <TARGET>")

# One by one, as the C library's headers lie beside them. Where a library's headers are in two folders, both are needed.
set(headers ${CMAKE_CURRENT_LIST_DIR}/../build/macos-headers)
foreach(name IN ITEMS CLI curl fmt nlohmann openssl simdjson.h spdlog sqlite3.h toml++ unicode zconf.h zlib.h)
    file(GLOB found /usr/include/${name} /usr/include/*-linux-gnu/${name})
    foreach(origin IN LISTS found)
        cmake_path(GET origin PARENT_PATH folder)
        cmake_path(GET folder FILENAME folder)
        file(MAKE_DIRECTORY ${headers}/${folder})
        file(CREATE_LINK ${origin} ${headers}/${folder}/${name} SYMBOLIC)
    endforeach()
endforeach()
file(GLOB folders ${headers}/*)
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES
    ${CMAKE_CURRENT_LIST_DIR}/../Tests/Support/AppleFrameworksDouble/Frameworks ${folders})
file(GLOB CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES /usr/include /usr/include/*-linux-gnu)
file(GLOB CMAKE_LIBRARY_ARCHITECTURE RELATIVE /usr/lib /usr/lib/*-linux-gnu)
