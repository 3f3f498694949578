# The manual page, the pages of the classes, and the pages of the API.

install(FILES ${PROJECT_SOURCE_DIR}/Docs/qvfilter.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# Docs/families as the class objects have it now; a test tells when it is out of date.
add_custom_target(class-pages COMMAND qvfilter list --yes --markdown ${PROJECT_SOURCE_DIR}/Docs/families VERBATIM)

find_program(DOXYGEN doxygen)
if(DOXYGEN)
    list(JOIN QV_PUBLIC_HEADERS " " doxygen_headers)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/generated/Doxyfile CONTENT
"@INCLUDE         = Docs/Doxyfile
INPUT            = README.md Docs ${doxygen_headers}
PROJECT_NUMBER   = ${PROJECT_VERSION}
OUTPUT_DIRECTORY = ${CMAKE_BINARY_DIR}/docs
STRIP_FROM_PATH  = ${PROJECT_SOURCE_DIR}
")
    set(doxygen_command ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/docs
        COMMAND ${DOXYGEN} ${CMAKE_BINARY_DIR}/generated/Doxyfile)
    add_custom_target(docs COMMAND ${doxygen_command} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
    if(QV_BUILD_TESTS)
        # Fails on any warning, such as a public function without a comment.
        add_test(NAME Documentation COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target docs)
        set_tests_properties(Documentation PROPERTIES LABELS files)
    endif()
endif()
