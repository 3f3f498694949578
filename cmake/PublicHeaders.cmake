# The headers that are installed: all but those in the rooms that only the library itself enters.

set(QV_PUBLIC_HEADERS)
set(folders Platform QVFilterCore QVALObjectContour QVFilterExtension)
if(TARGET QVPersonMask)
    list(APPEND folders QVPersonMask)
endif()
foreach(folder IN LISTS folders)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    list(APPEND QV_PUBLIC_HEADERS ${headers})
endforeach()
list(FILTER QV_PUBLIC_HEADERS EXCLUDE REGEX "/(Private|Vulkan|Native|ShaderCompiler|Resources)/")

# Headers that the configuration writes, named like the others but below a folder of their own.
set(QV_GENERATED_INCLUDES ${CMAKE_BINARY_DIR}/generated/include)
set(QV_GENERATED_HEADERS QVFilterExtension/QVFilterVersion.h)
foreach(header IN LISTS QV_GENERATED_HEADERS)
    configure_file(${PROJECT_SOURCE_DIR}/${header}.in ${QV_GENERATED_INCLUDES}/${header} @ONLY)
endforeach()
target_include_directories(QVFilterExtension PUBLIC $<BUILD_INTERFACE:${QV_GENERATED_INCLUDES}>)
