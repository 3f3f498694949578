# What is installed, by the package that it belongs to: library, native, persons, development, tool, plugins, python.

include(CMakePackageConfigHelpers)

set(library_place LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} NAMELINK_COMPONENT development)
install(TARGETS QVFilterExtension qv EXPORT QVFilterExtensionTargets ${library_place} COMPONENT library)
install(DIRECTORY ${QV_BUNDLE} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library PATTERN *.kernels EXCLUDE)
if(TARGET QVFilterNative)
    get_filename_component(bundle_name ${QV_BUNDLE} NAME)
    install(TARGETS QVFilterNative LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} NAMELINK_SKIP COMPONENT native)
    install(DIRECTORY ${QV_BUNDLE}/ DESTINATION ${CMAKE_INSTALL_LIBDIR}/${bundle_name} COMPONENT native
            FILES_MATCHING PATTERN *.kernels)
endif()
if(TARGET QVPersonMask)
    set_target_properties(QVPersonMask PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS QVPersonMask EXPORT QVFilterExtensionTargets ${library_place} COMPONENT persons)
    install(PROGRAMS ${PROJECT_SOURCE_DIR}/cmake/scripts/qvfilter-fetch-person-model DESTINATION ${CMAKE_INSTALL_BINDIR}
            COMPONENT persons)
endif()
set_target_properties(qvfilter PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
install(TARGETS qvfilter RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
set(completion ${CMAKE_BINARY_DIR}/completion)
install(FILES ${completion}/bash/qvfilter DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tool)
install(FILES ${completion}/zsh/_qvfilter DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tool)
install(DIRECTORY Bindings/Python/qv DESTINATION lib/python3/dist-packages COMPONENT python PATTERN __pycache__ EXCLUDE)

# The rest is for who builds against the library.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
install(FILES Bindings/C/qv.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(header IN LISTS QV_PUBLIC_HEADERS)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/QVFilterExtension/${folder})
endforeach()
install(DIRECTORY ${QV_GENERATED_INCLUDES}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/QVFilterExtension)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QVFilterExtension)
install(EXPORT QVFilterExtensionTargets NAMESPACE QVFilterExtension:: DESTINATION ${package_dir})
configure_package_config_file(cmake/QVFilterExtensionConfig.cmake.in
    ${CMAKE_BINARY_DIR}/generated/QVFilterExtensionConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/generated/QVFilterExtensionConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
# The file finds its prefix from where it lies, so that an installation may be anywhere and be moved.
file(RELATIVE_PATH QV_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" QV_PC_PREFIX ${QV_PC_PREFIX})
file(RELATIVE_PATH QV_PC_LIBDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH QV_PC_INCLUDEDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
foreach(package QVFilterExtension QVPersonMask)
    if(TARGET ${package})
        configure_file(cmake/${package}.pc.in ${CMAKE_BINARY_DIR}/generated/${package}.pc @ONLY)
        install(FILES ${CMAKE_BINARY_DIR}/generated/${package}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    endif()
endforeach()
install(FILES ${CMAKE_BINARY_DIR}/generated/QVFilterExtensionConfig.cmake
    ${CMAKE_BINARY_DIR}/generated/QVFilterExtensionConfigVersion.cmake DESTINATION ${package_dir})
configure_file(Bindings/C/qv.pc.in ${CMAKE_BINARY_DIR}/generated/qv.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/generated/qv.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
