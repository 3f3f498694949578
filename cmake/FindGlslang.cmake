# The GLSL to SPIR-V compiler as a library: Glslang::Glslang. Its own CMake package needs programs that we do not.

find_path(GLSLANG_INCLUDE_DIR glslang/Public/ShaderLang.h)
set(GLSLANG_LIBRARIES)
# Each before those it needs; the optimizer's are there only where the library was built with it.
foreach(name SPIRV glslang MachineIndependent GenericCodeGen OGLCompiler OSDependent
             SPIRV-Tools-opt SPIRV-Tools)
    find_library(GLSLANG_${name}_LIBRARY ${name})
    mark_as_advanced(GLSLANG_${name}_LIBRARY)
    if(GLSLANG_${name}_LIBRARY)
        list(APPEND GLSLANG_LIBRARIES ${GLSLANG_${name}_LIBRARY})
    endif()
endforeach()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Glslang REQUIRED_VARS GLSLANG_glslang_LIBRARY GLSLANG_SPIRV_LIBRARY
                                                        GLSLANG_INCLUDE_DIR)
if(Glslang_FOUND AND NOT TARGET Glslang::Glslang)
    add_library(Glslang::Glslang INTERFACE IMPORTED)
    target_include_directories(Glslang::Glslang INTERFACE ${GLSLANG_INCLUDE_DIR})
    target_link_libraries(Glslang::Glslang INTERFACE ${GLSLANG_LIBRARIES})
endif()
