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

include(${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/Assets.cmake)
