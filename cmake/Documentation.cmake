# The manual page, the schema of projects, the pages of the classes, and the pages of the API.

install(FILES ${PROJECT_SOURCE_DIR}/Docs/qvfilter.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
install(FILES ${PROJECT_SOURCE_DIR}/Docs/edit.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/QVFilterExtension COMPONENT tool)

# Docs/families as the class objects have it now; a test tells when it is out of date.
add_custom_target(class-pages COMMAND qvfilter list --yes --markdown ${PROJECT_SOURCE_DIR}/Docs/families VERBATIM)

find_program(DOXYGEN doxygen)
if(DOXYGEN)
    set(doxygen_headers ${QV_GENERATED_HEADERS})
    list(TRANSFORM doxygen_headers PREPEND ${QV_GENERATED_INCLUDES}/)
    list(JOIN doxygen_headers " " doxygen_generated)
    list(JOIN QV_PUBLIC_HEADERS " " doxygen_headers)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/generated/Doxyfile CONTENT
"@INCLUDE         = Docs/Doxyfile
INPUT            = README.md CONTRIBUTING.md Docs ${doxygen_headers} ${doxygen_generated}
PROJECT_NUMBER   = ${PROJECT_VERSION}
OUTPUT_DIRECTORY = ${CMAKE_BINARY_DIR}/docs
STRIP_FROM_PATH  = ${PROJECT_SOURCE_DIR} ${QV_GENERATED_INCLUDES}
STRIP_FROM_INC_PATH = ${PROJECT_SOURCE_DIR} ${QV_GENERATED_INCLUDES}
")
    set(doxygen_command ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/docs
        COMMAND ${DOXYGEN} ${CMAKE_BINARY_DIR}/generated/Doxyfile
        # Include lines are those that a program writes: below the root of the headers.
        COMMAND ${CMAKE_COMMAND} -DPAGES=${CMAKE_BINARY_DIR}/docs/html
                "-DROOTS=${PROJECT_SOURCE_DIR}\;${QV_GENERATED_INCLUDES}"
                -P ${PROJECT_SOURCE_DIR}/cmake/scripts/CheckIncludeLines.cmake)
    add_custom_target(docs COMMAND ${doxygen_command} WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
    if(QV_BUILD_TESTS)
        # Fails on any warning, such as a public function without a comment, and on an include line of no header.
        add_test(NAME Documentation COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target docs)
        set_tests_properties(Documentation PROPERTIES LABELS files)
    endif()
endif()
