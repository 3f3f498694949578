# The shader compiler, and shader libraries made with it.

# What the compiler and the platform share. The build compiles with glslc, which optimises; what is compiled at run
# time is compiled in the process.
set(SHADER_SOURCES Foundation/OutputFile.cpp ImageGraph/ShaderLibrary.cpp ImageGraph/ShaderCompiler/ShaderSource.cpp
    ImageGraph/ShaderCompiler/ShaderTokens.cpp ImageGraph/ShaderCompiler/ShaderTranslator.cpp)
list(TRANSFORM SHADER_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/Platform/)
add_library(qv_shaders OBJECT ${SHADER_SOURCES})
target_include_directories(qv_shaders PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(qv_shaders PUBLIC fmt::fmt)
qv_precompile_headers(qv_shaders)
add_executable(qvshaderc ${PROJECT_SOURCE_DIR}/Platform/ImageGraph/ShaderCompiler/qvshaderc.cpp)
target_include_directories(qvshaderc PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(qvshaderc PRIVATE qv_shaders)

# Compiles every .glsl, .vert and .frag file of the given folders, each on its own, and packs them into one library file.
function(qv_add_shader_library target output)
    if(QV_BUNDLE_FROM)
        add_custom_target(${target})
        return()
    endif()
    set(compiled)
    foreach(folder IN LISTS ARGN)
        file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.glsl ${folder}/*.vert ${folder}/*.frag)
        file(GLOB includes CONFIGURE_DEPENDS ${folder}/include/*.glsl
             ${PROJECT_SOURCE_DIR}/Platform/ImageGraph/Shaders/include/*.glsl)
        foreach(source IN LISTS sources)
            get_filename_component(stem ${source} NAME)
            set(object ${CMAKE_BINARY_DIR}/generated/${target}/${stem}.shader)
            add_custom_command(OUTPUT ${object}
                COMMAND qvshaderc compile --glslc ${GLSLC} -I ${folder}/include
                        -I ${PROJECT_SOURCE_DIR}/Platform/ImageGraph/Shaders/include -o ${object} ${source}
                DEPENDS qvshaderc ${source} ${includes}
                COMMENT "Compiling shader ${stem}" VERBATIM)
            list(APPEND compiled ${object})
        endforeach()
    endforeach()
    list(JOIN compiled "\n" names)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/generated/${target}.list CONTENT "${names}\n")
    add_custom_command(OUTPUT ${output}
        COMMAND qvshaderc pack -o ${output} @${CMAKE_BINARY_DIR}/generated/${target}.list
        DEPENDS qvshaderc ${compiled} ${CMAKE_BINARY_DIR}/generated/${target}.list
        COMMENT "Packing ${target}" VERBATIM)
    add_custom_target(${target} DEPENDS ${output})
endfunction()

# An assembler file that holds `input` as the bytes `symbol`, `symbol`Size of them.
function(qv_embed_file target input symbol output)
    file(GENERATE OUTPUT ${output} CONTENT
".section .rodata
.global ${symbol}
.global ${symbol}Size
.balign 16
${symbol}:
.incbin \"${input}\"
${symbol}End:
.balign 8
${symbol}Size:
.quad ${symbol}End - ${symbol}
.section .note.GNU-stack,\"\",%progbits
")
    set_source_files_properties(${output} PROPERTIES OBJECT_DEPENDS ${input} GENERATED TRUE)
endfunction()
