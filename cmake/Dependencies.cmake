include(${CMAKE_CURRENT_LIST_DIR}/Tarnwick_APINeeds.cmake)

# What the library is linked with, in the words of tarnwick_api_find, and the same for pkg-config. Asked for by the build, and
# by the installed package where that leaves it to its users to link with it.
set(TARNWICK_NEEDS
    "Threads"
    "CURL 7.88"
    "simdjson 3.0"
    "spdlog 1.10"
    "OpenSSL 3.0 COMPONENTS SSL Crypto"
    "SQLite3 3.40"
    "ICU 72 COMPONENTS uc"
    "ZLIB 1.2.9")
set(TARNWICK_MODULES
    "libcurl >= 7.88" "simdjson >= 3.0" "spdlog >= 1.10" "libssl >= 3.0" "libcrypto >= 3.0" "sqlite3 >= 3.40" "icu-uc >= 72" "zlib >= 1.2.9")
if(NOT APPLE)
    list(APPEND TARNWICK_NEEDS "PkgConfig::Tarnwick_API_libsecret libsecret-1>=0.20")
    list(APPEND TARNWICK_MODULES "libsecret-1 >= 0.20")
endif()
