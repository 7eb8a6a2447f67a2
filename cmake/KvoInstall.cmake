# Install rules, the CMake package `kvorender` and the pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS kvorender kvoread kvoscene kvomodel EXPORT kvorenderTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
set(KVO_PUBLIC_HEADERS
    render/boundbox.h render/caeenv.h render/glfuncs.h render/maptypes.h render/mtrans.h render/mview.h
    render/partstr.h render/pickrect.h render/rubberband.h render/trackball.h render/unit_axis.h
    generic/gentime.h generic/kvoexport.h
    readgen/modelinfo.h readgen/modelwriter.h readgen/readelements.h readgen/readids.h readgen/readnodes.h
    import/generic/mantypes.h)
foreach(header IN LISTS KVO_PUBLIC_HEADERS)
  get_filename_component(dir ${header} DIRECTORY)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kvorender/${dir})
endforeach()

foreach(program kvo kvo-convert)
  if(TARGET ${program})
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endforeach()

install(DIRECTORY model/include/kvo scene/include/kvo DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kvorender FILES_MATCHING PATTERN *.h)

set(KVO_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/kvorender)
install(EXPORT kvorenderTargets NAMESPACE kvorender:: DESTINATION ${KVO_PACKAGE_DIR})
configure_package_config_file(cmake/kvorenderConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/kvorenderConfig.cmake
                              INSTALL_DESTINATION ${KVO_PACKAGE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/kvorenderConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kvorenderConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/kvorenderConfigVersion.cmake DESTINATION ${KVO_PACKAGE_DIR})
# Relative, so that the installed tree may be moved.
file(RELATIVE_PATH KVO_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
foreach(name kvorender kvomodel kvoscene)
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
