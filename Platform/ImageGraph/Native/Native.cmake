# Kernels for processors: their compiler is a shared object of its own, so that the library needs no LLVM. The
# library looks for it beside itself.

# What `devices` says before the component is loaded.
set(native_device_source ${CMAKE_CURRENT_LIST_DIR}/NativeDevice.cpp)
set_source_files_properties(${native_device_source} PROPERTIES COMPILE_DEFINITIONS QV_NATIVE_DRIVER="none")
option(QV_NATIVE "Build QVFilterNative where LLVM 15 is installed" ON)
if(QV_NATIVE)
    find_package(LLVM 15 QUIET CONFIG HINTS /usr/lib/llvm-15)
endif()
# Kernels that another version of these sources made are not used: the compiler, LLVM, and what makes its input of shaders.
# The library knows it too, and so needs no compiler to tell which kernels are good.
set(native_version_header ${CMAKE_BINARY_DIR}/generated/native/Platform/ImageGraph/Native/CompilerVersion.h)
file(GLOB native_version_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*Kernel.h
     ${CMAKE_CURRENT_LIST_DIR}/NativeCompiler.h ${CMAKE_CURRENT_LIST_DIR}/Compiler/* ${PROJECT_SOURCE_DIR}/Platform/ImageGraph/ShaderCompiler/*Shader*.cpp
     ${PROJECT_SOURCE_DIR}/Platform/ImageGraph/ShaderCompiler/GlslCompiler.cpp ${GLSLANG_INCLUDE_DIR}/glslang/build_info.h)
if(TARGET LLVM)
    list(APPEND native_version_sources ${LLVM_INCLUDE_DIRS}/llvm/Config/llvm-config.h)
endif()
add_custom_command(OUTPUT ${native_version_header}
    COMMAND ${CMAKE_COMMAND} -D OUTPUT=${native_version_header} -P ${PROJECT_SOURCE_DIR}/cmake/scripts/HashOfFiles.cmake
            kNativeCompilerSources ${native_version_sources}
    DEPENDS ${native_version_sources} ${PROJECT_SOURCE_DIR}/cmake/scripts/HashOfFiles.cmake VERBATIM)
target_sources(qv_platform PRIVATE ${native_version_header})
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/NativeComponent.cpp PROPERTIES
                            INCLUDE_DIRECTORIES ${CMAKE_BINARY_DIR}/generated/native)
if(NOT TARGET LLVM)
    if(QV_NATIVE)
        message(STATUS "QVFilterNative is left out: it needs LLVM 15 (llvm-15-dev)")
    endif()
    return()
endif()

file(GLOB NATIVE_COMPILER_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/Compiler/*.cpp)
list(FILTER NATIVE_COMPILER_SOURCES EXCLUDE REGEX "/qvnativec[.]cpp$")
# Once for the shared object, for the tool that compiles beforehand, and for the tests of its parts.
add_library(qv_native_compiler OBJECT ${NATIVE_COMPILER_SOURCES} ${native_version_header})
target_include_directories(qv_native_compiler PRIVATE ${PROJECT_SOURCE_DIR} ${GLSLANG_INCLUDE_DIR} ${CMAKE_BINARY_DIR}/generated/native)
target_include_directories(qv_native_compiler SYSTEM PUBLIC ${LLVM_INCLUDE_DIRS})
target_link_libraries(qv_native_compiler PUBLIC LLVM ${GLSLANG_SPIRV-Tools_LIBRARY} fmt::fmt)
if(NOT LLVM_ENABLE_RTTI)
    target_compile_options(qv_native_compiler PRIVATE -fno-rtti -fno-sanitize=vptr)
endif()

set_source_files_properties(${native_device_source} PROPERTIES COMPILE_DEFINITIONS
    "QV_NATIVE_DRIVER=\"LLVM ${LLVM_PACKAGE_VERSION}\"")

add_library(QVFilterNative SHARED)
set(native_export_map ${PROJECT_SOURCE_DIR}/cmake/NativeSymbols.map)
target_link_libraries(QVFilterNative PRIVATE qv_native_compiler)
target_link_options(QVFilterNative PRIVATE LINKER:--version-script=${native_export_map})
set_target_properties(QVFilterNative PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0
                      LINK_DEPENDS ${native_export_map} LINKER_LANGUAGE CXX)

# Beforehand, so that a pass of one function compiles nothing when it is first drawn.
add_executable(qvnativec ${CMAKE_CURRENT_LIST_DIR}/Compiler/qvnativec.cpp ${CMAKE_CURRENT_LIST_DIR}/KernelLibrary.cpp
    ${CMAKE_CURRENT_LIST_DIR}/NativeTarget.cpp ${PROJECT_SOURCE_DIR}/Platform/ImageGraph/ShaderCompiler/GlslCompiler.cpp)
target_include_directories(qvnativec PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(qvnativec PRIVATE qv_native_compiler qv_shaders Glslang::Glslang Threads::Threads)

# Kernels of every function of the shader libraries that are named after `output`, for `target`, as one file.
function(qv_add_kernels target output)
    if(QV_BUNDLE_FROM)
        return()
    endif()
    add_custom_command(OUTPUT ${output}
        COMMAND qvnativec ${target} ${output} ${ARGN}
        DEPENDS qvnativec ${ARGN} COMMENT "Compiling kernels for ${target}" VERBATIM)
    add_custom_target(kernels_${target} DEPENDS ${output})
endfunction()
