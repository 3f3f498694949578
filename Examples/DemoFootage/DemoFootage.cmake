# The picture and the clips that ./demo renders, drawn like the library's own assets.

set(QV_DEMO_FOOTAGE ${CMAKE_BINARY_DIR}/demo-input)

file(GLOB LANDSCAPE_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/Landscape/*.cpp)
add_library(qv_landscape OBJECT ${LANDSCAPE_SOURCES})
target_include_directories(qv_landscape PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(qv_landscape PRIVATE fmt::fmt)  # as where the headers were precompiled
qv_reuse_precompiled_headers(qv_landscape qv_shaders)
qv_add_asset_program(DemoPhoto ${QV_DEMO_FOOTAGE} LIBRARIES qv_landscape)

file(GLOB CLIP_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/Clips/*.cpp ${CMAKE_CURRENT_LIST_DIR}/Dancer/*.cpp)
qv_add_asset_program(DemoClips ${QV_DEMO_FOOTAGE} SOURCES ${CLIP_SOURCES} LIBRARIES qv_landscape PkgConfig::FFMPEG)
