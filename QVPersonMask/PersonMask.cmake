# Masks of people: a shared object of its own, so that the library needs no OpenCV for it.

option(QV_PERSON_MASK "Build QVPersonMask where OpenCV's dnn module is installed" ON)
if(NOT QV_PERSON_MASK)
    return()
endif()
find_package(OpenCVModules QUIET COMPONENTS imgproc dnn)
if(NOT TARGET OpenCV::dnn)
    message(STATUS "QVPersonMask is left out: it needs OpenCV's dnn and imgproc modules (libopencv-dnn-dev, libopencv-imgproc-dev)")
    return()
endif()

file(GLOB_RECURSE PERSON_MASK_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/*.cpp)
add_library(QVPersonMask SHARED ${PERSON_MASK_SOURCES})
set_target_properties(QVPersonMask PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0 LINK_DEPENDS ${export_map})
target_link_libraries(QVPersonMask PUBLIC QVFilterExtension PRIVATE OpenCV::dnn OpenCV::imgproc)
target_link_options(QVPersonMask PRIVATE LINKER:--version-script=${export_map})
