# Libraries, headers, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(VORLANE_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/VorlaneCore)
set(VORLANE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/VorlaneCore)

set_target_properties(VorlanePlatform PROPERTIES EXPORT_NAME Platform)
set_target_properties(VorlaneCore PROPERTIES EXPORT_NAME Core)
foreach(library IN ITEMS VorlanePlatform VorlaneCore)
  set_target_properties(${library} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR})
  target_include_directories(${library} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/generated>
    $<INSTALL_INTERFACE:${VORLANE_INCLUDE_DIR}>)
  target_compile_features(${library} PUBLIC cxx_std_17)
endforeach()

install(TARGETS VorlanePlatform VorlaneCore
  EXPORT VorlaneCoreTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${VORLANE_INCLUDE_DIR})

foreach(folder IN ITEMS platform vorlane)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}
    DESTINATION ${VORLANE_INCLUDE_DIR}
    COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "*Internal.h" EXCLUDE)
endforeach()

install(FILES ${PROJECT_BINARY_DIR}/generated/vorlane/Version.h
  DESTINATION ${VORLANE_INCLUDE_DIR}/vorlane
  COMPONENT development)

install(EXPORT VorlaneCoreTargets
  NAMESPACE Vorlane::
  DESTINATION ${VORLANE_PACKAGE_DIR}
  COMPONENT development)

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/VorlaneCoreConfig.cmake.in
  ${PROJECT_BINARY_DIR}/VorlaneCoreConfig.cmake
  INSTALL_DESTINATION ${VORLANE_PACKAGE_DIR})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/VorlaneCoreConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/VorlaneCoreConfig.cmake
  ${PROJECT_BINARY_DIR}/VorlaneCoreConfigVersion.cmake
  DESTINATION ${VORLANE_PACKAGE_DIR}
  COMPONENT development)

# A static VorlaneCore leaves the platform and the C++ runtime to the program that links it.
if(BUILD_SHARED_LIBS)
  set(VORLANE_PKGCONFIG_LIBS "-lVorlaneCore -lVorlanePlatform")
else()
  set(VORLANE_PKGCONFIG_LIBS "-lVorlaneCore -lVorlanePlatform -lstdc++ -lm")
endif()
# The file finds its prefix from where it lies, so that an install can be moved.
file(RELATIVE_PATH VORLANE_PC_TO_PREFIX
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/VorlaneCore.pc.in ${PROJECT_BINARY_DIR}/VorlaneCore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/VorlaneCore.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

# gdb loads the pretty-printers along with the platform's library.
install(FILES ${PROJECT_SOURCE_DIR}/scripts/gdb/vorlane_printers.py
  DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load/${CMAKE_INSTALL_FULL_LIBDIR}
  RENAME libVorlanePlatform.so.${PROJECT_VERSION}-gdb.py
  COMPONENT development)
