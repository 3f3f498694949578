# One line per family: qv_add_asset_program(NAME DIRECTORY SOURCES...).

set(QV_ASSET_SOURCES ${PROJECT_SOURCE_DIR}/QVFilterExtension/Resources/Assets)

file(GLOB EFFECT_PICTURE_SOURCES CONFIGURE_DEPENDS ${QV_ASSET_SOURCES}/EffectPictures/*.cpp)
qv_add_asset_program(EffectPictures ${QV_BUNDLE} ${EFFECT_PICTURE_SOURCES})
file(GLOB FILM_FRAME_SOURCES CONFIGURE_DEPENDS ${QV_ASSET_SOURCES}/FilmFrames/*.cpp)
qv_add_asset_program(FilmFrames ${QV_BUNDLE} ${FILM_FRAME_SOURCES})
file(GLOB FONT_SOURCES CONFIGURE_DEPENDS ${QV_ASSET_SOURCES}/Fonts/*.cpp)
qv_add_asset_program(Fonts ${QV_BUNDLE} ${FONT_SOURCES})
qv_add_asset_program(LightLeaks ${QV_BUNDLE})
qv_add_asset_program(Lookups ${QV_BUNDLE})
file(GLOB PHOTO_DISSOLVE_SOURCES CONFIGURE_DEPENDS ${QV_ASSET_SOURCES}/PhotoDissolves/*.cpp)
qv_add_asset_program(PhotoDissolves ${QV_BUNDLE} ${PHOTO_DISSOLVE_SOURCES})
file(GLOB TORN_PAPER_SOURCES CONFIGURE_DEPENDS ${QV_ASSET_SOURCES}/TornPapers/*.cpp)
qv_add_asset_program(TornPapers ${QV_BUNDLE} ${TORN_PAPER_SOURCES})

if(QV_BUILD_ASSETS)
    file(GLOB LANDSCAPE_SOURCES CONFIGURE_DEPENDS ${QV_ASSET_SOURCES}/Landscape/*.cpp)
    add_library(qv_landscape OBJECT ${LANDSCAPE_SOURCES})
    target_include_directories(qv_landscape PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(qv_landscape PRIVATE fmt::fmt)  # as where the headers were precompiled
    qv_reuse_precompiled_headers(qv_landscape qv_shaders)

    qv_add_asset_program(DemoPhoto ${CMAKE_BINARY_DIR}/demo-input)
    target_link_libraries(draw_DemoPhoto PRIVATE qv_landscape)

    file(GLOB CLIP_SOURCES CONFIGURE_DEPENDS ${QV_ASSET_SOURCES}/Clips/*.cpp ${QV_ASSET_SOURCES}/Dancer/*.cpp)
    qv_add_asset_program(DemoClips ${CMAKE_BINARY_DIR}/demo-input ${CLIP_SOURCES})
    target_link_libraries(draw_DemoClips PRIVATE qv_landscape PkgConfig::FFMPEG)
endif()
