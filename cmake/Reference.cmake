# The target tarnwick_reference, where there is Doxygen: a reference of the public headers.
find_package(Doxygen QUIET)
if(DOXYGEN_FOUND)
    set(TARNWICK_REFERENCE_FOLDER ${PROJECT_BINARY_DIR}/reference)
    configure_file(docs/reference/Doxyfile.in Doxyfile @ONLY)
    add_custom_target(tarnwick_reference
        COMMAND ${PROJECT_SOURCE_DIR}/docs/reference/make-reference ${DOXYGEN_EXECUTABLE} ${PROJECT_BINARY_DIR}/Doxyfile
            ${TARNWICK_REFERENCE_FOLDER}
        VERBATIM)
endif()
