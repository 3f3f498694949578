# Programs that draw pictures, fonts and clips at build time.

# NAME.cpp, and what lies in the folder NAME, beside the list file that calls this make `draw_NAME DIRECTORY`, which
# writes its files there. SOURCES and LIBRARIES are what it needs besides. Every build compares the files with the list of
# what was drawn, and draws again what is missing or altered, or when the program, or what it links, changed.
function(qv_add_asset_program name directory)
    if(QV_BUNDLE_FROM)
        add_custom_target(${name}_assets)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "SOURCES;LIBRARIES")
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/${name}/*.cpp)
    add_executable(draw_${name} ${CMAKE_CURRENT_LIST_DIR}/${name}.cpp ${sources} ${arg_SOURCES})
    target_link_libraries(draw_${name} PRIVATE qv_platform fmt::fmt Threads::Threads ${arg_LIBRARIES})
    qv_share_precompiled_headers(draw_${name} asset_programs)
    set(list ${CMAKE_BINARY_DIR}/generated/assets/${name}.sha256)
    add_custom_target(${name}_assets ALL
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:draw_${name}> -DDIRECTORY=${directory} -DLIST=${list}
                -P ${PROJECT_SOURCE_DIR}/cmake/scripts/DrawAssets.cmake
        DEPENDS draw_${name} COMMENT "Checking ${name}" VERBATIM)
    set_property(GLOBAL APPEND PROPERTY QV_ASSET_TARGETS ${name}_assets)
    set_property(GLOBAL APPEND PROPERTY QV_ASSET_LISTS ${list})
    if(directory STREQUAL QV_BUNDLE)
        set_property(GLOBAL APPEND PROPERTY QV_BUNDLE_TARGETS ${name}_assets)
    endif()
endfunction()
