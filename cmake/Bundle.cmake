# The resource bundle: the compiled shader library and the assets, next to the library that uses them.

set(QV_BUNDLE ${CMAKE_BINARY_DIR}/lib/QVFilterExtension.bundle)
qv_add_shader_library(extension_shaders ${QV_BUNDLE}/default.shaderlib
                      ${PROJECT_SOURCE_DIR}/QVFilterCore/Shaders
                      ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Shaders)
add_dependencies(QVFilterExtension extension_shaders)

# Each program in Resources/Assets draws one family of assets: `draw_NAME DIRECTORY` writes its files there. It is
# run again only when it, or what it links, changed.
function(qv_add_asset_program name directory)
    add_executable(draw_${name} ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/${name}.cpp ${ARGN})
    target_link_libraries(draw_${name} PRIVATE qv_platform fmt::fmt Threads::Threads)
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

include(${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/Assets.cmake)
