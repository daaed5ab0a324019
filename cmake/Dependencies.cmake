# What the library is linked with, in the words of find_package. Asked for by the build, and by the installed package where
# that leaves it to its users to link with it.
set(TARNWICK_DEPENDENCIES
    "CURL 7.88"
    "simdjson 3.0"
    "spdlog 1.10"
    "OpenSSL 3.0 COMPONENTS Crypto"
    "SQLite3 3.40"
    "ICU 72 COMPONENTS uc"
    "ZLIB 1.2.9")
set(TARNWICK_LIBSECRET "libsecret-1>=0.20")
