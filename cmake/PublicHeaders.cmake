# The headers that are installed: all but those in the rooms that only the library itself enters.

set(QV_PUBLIC_HEADERS)
foreach(folder Platform QVFilterCore QVALObjectContour QVFilterExtension)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    list(APPEND QV_PUBLIC_HEADERS ${headers})
endforeach()
list(FILTER QV_PUBLIC_HEADERS EXCLUDE REGEX "/(Private|Vulkan|ShaderCompiler|Resources)/")
