# The resource bundle: the compiled shader library and the assets, next to the library that uses them.

set(QV_BUNDLE ${CMAKE_BINARY_DIR}/lib/QVFilterExtension.bundle)
qv_add_shader_library(extension_shaders ${QV_BUNDLE}/default.shaderlib
                      ${PROJECT_SOURCE_DIR}/QVFilterCore/Shaders
                      ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Shaders)
add_dependencies(QVFilterExtension extension_shaders)

include(${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/Assets.cmake)
