# The resource bundle: the compiled shader library and the assets, next to the library that uses them.

set(QV_BUNDLE ${QV_MADE_FILES}/lib/QVFilterExtension.bundle)
if(QV_BUNDLE_FROM)
    file(MAKE_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
    file(CREATE_LINK ${QV_BUNDLE} ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/QVFilterExtension.bundle SYMBOLIC)
endif()
qv_add_shader_library(extension_shaders ${QV_BUNDLE}/default.shaderlib
                      ${PROJECT_SOURCE_DIR}/QVFilterCore/Shaders
                      ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Shaders)
add_dependencies(QVFilterExtension extension_shaders)

# Each program in Resources/Assets draws one family of assets: `draw_NAME DIRECTORY` writes its files there. It is
# run again only when it, or what it links, changed.
function(qv_add_asset_program name directory)
    if(QV_BUNDLE_FROM)
        add_custom_target(${name}_assets)
        return()
    endif()
    add_executable(draw_${name} ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/${name}.cpp ${ARGN})
    target_link_libraries(draw_${name} PRIVATE qv_platform fmt::fmt Threads::Threads)
    set(stamp ${CMAKE_BINARY_DIR}/generated/${name}.stamp)
    add_custom_command(OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}
        COMMAND draw_${name} ${directory}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS draw_${name} COMMENT "Drawing ${name}" VERBATIM)
    add_custom_target(${name}_assets ALL DEPENDS ${stamp})
    set_property(GLOBAL APPEND PROPERTY QV_ASSET_TARGETS ${name}_assets)
    if(directory STREQUAL QV_BUNDLE)
        set_property(GLOBAL APPEND PROPERTY QV_BUNDLE_TARGETS ${name}_assets)
    endif()
endfunction()

include(${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/Assets.cmake)
