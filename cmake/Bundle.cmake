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

# Kernels for what the build's machine is; those of the other processors are made to see that they can be.
if(TARGET qvnativec AND NOT QV_BUNDLE_FROM)
    foreach(kind avx2 avx512 neon)
        set(folder ${QV_BUNDLE})
        if(kind STREQUAL "neon" AND CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64" OR
           NOT kind STREQUAL "neon" AND NOT CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64")
            set(folder ${CMAKE_BINARY_DIR}/generated)
        endif()
        qv_add_kernels(${kind} ${folder}/native-${kind}.kernels ${QV_MADE_FILES}/generated/platform.shaderlib
                       ${QV_BUNDLE}/default.shaderlib)
        add_dependencies(QVFilterNative kernels_${kind})
    endforeach()
endif()

include(${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets/Assets.cmake)
