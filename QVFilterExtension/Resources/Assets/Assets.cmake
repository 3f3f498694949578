# One line per family.

qv_add_asset_program(CameraMarks ${QV_BUNDLE})
qv_add_asset_program(EffectPictures ${QV_BUNDLE})
qv_add_asset_program(FilmFrames ${QV_BUNDLE})
qv_add_asset_program(FilmLooks ${QV_BUNDLE})
qv_add_asset_program(Fonts ${QV_BUNDLE})
qv_add_asset_program(IcePictures ${QV_BUNDLE})
qv_add_asset_program(LightLeaks ${QV_BUNDLE})
qv_add_asset_program(Lookups ${QV_BUNDLE})
qv_add_asset_program(PhotoDissolves ${QV_BUNDLE})
qv_add_asset_program(RetroPictures ${QV_BUNDLE})
qv_add_asset_program(SceneClips ${QV_BUNDLE})
qv_add_asset_program(TornPapers ${QV_BUNDLE} SOURCES ${CMAKE_CURRENT_LIST_DIR}/FilmFrames/EdgePrint.cpp)
