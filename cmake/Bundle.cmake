# The resource bundle: the compiled shader library and the assets, next to the library that uses them.

set(QV_BUNDLE ${CMAKE_BINARY_DIR}/lib/QVFilterExtension.bundle)
qv_add_shader_library(extension_shaders ${QV_BUNDLE}/default.shaderlib
                      ${PROJECT_SOURCE_DIR}/QVFilterCore/Shaders
                      ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Shaders)
add_dependencies(QVFilterExtension extension_shaders)

# Each program in Resources/Assets draws one family of assets: `draw_NAME DIRECTORY` writes its files there. Every build
# compares them with the list of what was drawn, and draws again what is missing or altered, or when the program, or
# what it links, changed.
function(qv_add_asset_program name directory)
    add_executable(draw_${name} ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/${name}.cpp ${ARGN})
    target_link_libraries(draw_${name} PRIVATE qv_platform fmt::fmt Threads::Threads)
    set(list ${CMAKE_BINARY_DIR}/generated/assets/${name}.sha256)
    add_custom_target(${name}_assets ALL
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:draw_${name}> -DDIRECTORY=${directory} -DLIST=${list}
                -P ${PROJECT_SOURCE_DIR}/cmake/scripts/DrawAssets.cmake
        DEPENDS draw_${name} COMMENT "Checking ${name}" VERBATIM)
    set_property(GLOBAL APPEND PROPERTY QV_ASSET_TARGETS ${name}_assets)
    set_property(GLOBAL APPEND PROPERTY QV_ASSET_LISTS ${list})
endfunction()

include(${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/Assets.cmake)
