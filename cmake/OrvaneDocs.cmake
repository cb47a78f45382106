# The target docs: API pages of the public headers in docs/html of the build folder. A warning of
# Doxygen's is an error. Only this target needs it.
find_program(DOXYGEN doxygen)
configure_file(cmake/Doxyfile.in Doxyfile @ONLY)
add_custom_target(docs
    COMMAND "${CMAKE_COMMAND}" -E make_directory docs
    COMMAND "$<IF:$<BOOL:${DOXYGEN}>,${DOXYGEN},doxygen>" Doxyfile
    WORKING_DIRECTORY "${CMAKE_BINARY_DIR}"
    COMMENT "API pages: ${CMAKE_BINARY_DIR}/docs/html/index.html"
    VERBATIM)
