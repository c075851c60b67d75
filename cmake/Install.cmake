# Installs the library as a C/C++ library usually is: the shared library with its SONAME
# links, the public headers, the tool with its manual page, a CMake package
# (find_package(Palvex) -> Palvex::palvex) and a pkg-config file; CPack turns the same into
# a Debian package or, from the cross build, a zip.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(PALVEX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Palvex)

install(TARGETS palvex EXPORT PalvexTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
# The plug-in kit: headers only, and the CMake function that builds a module with them.
install(TARGETS palvex_plugin_kit EXPORT PalvexTargets COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/PalvexPlugin.cmake DESTINATION ${PALVEX_CMAKE_DIR}
  COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/palvex
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# The tool finds the library beside it in the build tree and in ../lib once installed.
file(RELATIVE_PATH _lib_from_bin /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
if(NOT WIN32)
  set_target_properties(palvex_cli PROPERTIES INSTALL_RPATH "$ORIGIN/${_lib_from_bin}")
endif()
install(TARGETS palvex_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
if(NOT WIN32)
  install(FILES ${PROJECT_SOURCE_DIR}/docs/palvex.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
endif()

install(EXPORT PalvexTargets NAMESPACE Palvex:: DESTINATION ${PALVEX_CMAKE_DIR}
  COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/PalvexConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/PalvexConfig.cmake INSTALL_DESTINATION ${PALVEX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/PalvexConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/PalvexConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/PalvexConfigVersion.cmake
  DESTINATION ${PALVEX_CMAKE_DIR} COMPONENT development)

# pkg-config wants absolute folders; a relative install folder is taken below the prefix.
foreach(_dir LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${_dir}}")
    set(PALVEX_PC_${_dir} "${CMAKE_INSTALL_${_dir}}")
  else()
    set(PALVEX_PC_${_dir} "\${prefix}/${CMAKE_INSTALL_${_dir}}")
  endif()
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/palvex.pc.in ${CMAKE_CURRENT_BINARY_DIR}/palvex.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/palvex.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

set(CPACK_PACKAGE_NAME palvex)
set(CPACK_PACKAGE_VENDOR "The Palvex developers")
set(CPACK_PACKAGE_CONTACT "The Palvex developers <palvex@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Reads MGJSON sensor data and converts sensor recordings into it")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SECTION libs)
endif()
include(CPack)
