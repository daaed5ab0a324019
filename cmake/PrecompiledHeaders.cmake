# tarnwick_precompile(TARGET HEADER...) or tarnwick_precompile(TARGET REUSE_FROM OTHER): as target_precompile_headers, where
# the build asked for it.
function(tarnwick_precompile target)
    if(NOT TARNWICK_PRECOMPILED_HEADERS)
        return()
    endif()
    if(ARGV1 STREQUAL "REUSE_FROM")
        target_precompile_headers(${target} REUSE_FROM ${ARGV2})
    else()
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
