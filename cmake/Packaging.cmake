# `cpack -G DEB` in a build folder makes two packages: the runtime, and what is needed to build against it.
set(CPACK_PACKAGE_NAME vorlanecore)
set(CPACK_PACKAGE_VENDOR "VorlaneCore maintainers")
set(CPACK_PACKAGE_CONTACT "VorlaneCore maintainers <maintainers@vorlanecore.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_VERBATIM_VARIABLES YES)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libvorlanecore${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvorlanecore-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libvorlanecore${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
# The linker's cache learns of the libraries.
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)

include(CPack)
cpack_add_component(runtime DISPLAY_NAME "Shared libraries")
cpack_add_component(development DISPLAY_NAME "Headers and package files" DEPENDS runtime)
