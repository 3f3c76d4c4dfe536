# Debian packages: `cpack -G DEB` in a release build gives libtarnlet1, libtarnlet-dev and tarnlet.
set(CPACK_PACKAGE_NAME tarnlet)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_CONTACT "The tarnlet developers <tarnlet@localhost>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
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
set(CPACK_DEBIAN_RUNTIME_PACKAGE_GENERATE_SHLIBS ON)
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

# What the programs link is looked up where dpkg-dev is there, and known otherwise.
find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
foreach(component RUNTIME TOOL)
    if(DPKG_SHLIBDEPS)
        set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS ON)
    else()
        string(APPEND CPACK_DEBIAN_${component}_PACKAGE_DEPENDS
            ", libc6, libstdc++6, libgcc-s1, libglib2.0-0")
        string(REGEX REPLACE "^, " "" CPACK_DEBIAN_${component}_PACKAGE_DEPENDS
            "${CPACK_DEBIAN_${component}_PACKAGE_DEPENDS}")
    endif()
endforeach()
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

foreach(component runtime development tool)
    string(TOUPPER ${component} upper)
    install(FILES ${PROJECT_SOURCE_DIR}/LICENSE RENAME copyright
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
        COMPONENT ${component})
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/tarnlet COMPONENT tool)
include(CPack)
