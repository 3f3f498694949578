# Programs that draw pictures, fonts and clips at build time.

# NAME.cpp, and what lies in the folder NAME, beside the list file that calls this make `draw_NAME DIRECTORY`, which
# writes its files there. SOURCES and LIBRARIES are what it needs besides. It is run again only when it, or what it
# links, changed.
function(qv_add_asset_program name directory)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "SOURCES;LIBRARIES")
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/${name}/*.cpp)
    add_executable(draw_${name} ${CMAKE_CURRENT_LIST_DIR}/${name}.cpp ${sources} ${arg_SOURCES})
    target_link_libraries(draw_${name} PRIVATE qv_platform fmt::fmt Threads::Threads ${arg_LIBRARIES})
    qv_share_precompiled_headers(draw_${name} asset_programs)
    set(stamp ${CMAKE_BINARY_DIR}/generated/${name}.stamp)
    add_custom_command(OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}
        COMMAND draw_${name} ${directory}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS draw_${name} COMMENT "Drawing ${name}" VERBATIM)
    add_custom_target(${name}_assets ALL DEPENDS ${stamp})
    set_property(GLOBAL APPEND PROPERTY QV_ASSET_TARGETS ${name}_assets)
endfunction()
