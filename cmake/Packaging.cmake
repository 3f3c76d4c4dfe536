# Debian packages: `cpack -G DEB` in a release build gives libtarnlet1, libtarnlet-dev and tarnlet, and
# with TARNLET_PYTHON python3-tarnlet.
set(CPACK_PACKAGE_NAME tarnlet)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
# As Debian's own tools do, those who build the packages name themselves in the environment.
set(CPACK_PACKAGE_CONTACT "The tarnlet developers <developers@tarnlet.invalid>")
if(DEFINED ENV{DEBEMAIL})
    set(CPACK_PACKAGE_CONTACT "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# Beside what was built, wherever cpack is called.
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/DebianTree.cmake)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development tool)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The exact version: the tool is tested with the library that it is built with.
set(tarnlet_same_version "= ${PROJECT_VERSION}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libtarnlet${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Library that reads and checks BSDL descriptions")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtarnlet-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (${tarnlet_same_version}), libglib2.0-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Header and build files of the tarnlet library")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME tarnlet)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS
    "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (${tarnlet_same_version})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "Command line checker of BSDL descriptions")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

if(TARGET tarnlet_python)
    list(APPEND CPACK_COMPONENTS_ALL python)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-tarnlet)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
    # The module is made for one release of the interpreter.
    set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} \
(${tarnlet_same_version}), python3 (>= 3.11), python3 (<< 3.12)")
    set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
        ${PROJECT_SOURCE_DIR}/bindings/python/debian/postinst
        ${PROJECT_SOURCE_DIR}/bindings/python/debian/prerm)
    set(CPACK_COMPONENT_PYTHON_DESCRIPTION "Python package that reads and checks BSDL descriptions")
endif()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
        COMPONENT ${component})
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/docs/rules.md
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/tarnlet COMPONENT tool)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/tarnlet COMPONENT tool)
include(CPack)
