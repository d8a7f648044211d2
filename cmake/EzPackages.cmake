# Debian packages, one a component of the installation: `cpack` in a build folder that was configured for the prefix
# /usr makes them (./dev packages does both).
set(EZ_PACKAGE_MAINTAINER "Maintainers of ezParsersFramework <maintainers@ezparsersframework.example>"
    CACHE STRING "Who answers for the packages: name <address>")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime Development)
if(TARGET ezannounce)
    list(APPEND CPACK_COMPONENTS_ALL Tool)
endif()
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${EZ_PACKAGE_MAINTAINER})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE ezparsersframework)
# What each binary needs is read off the binary. Our own libraries are in no package yet, so their folders are named,
# and the packages name each other, in the same version.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS Runtime)
set(CPACK_COMPONENT_TOOL_DEPENDS Runtime)
get_property(EZ_COMPANIONS GLOBAL PROPERTY EZ_COMPANIONS)
foreach(LIBRARY ezPlatform ezParsersFramework ${EZ_COMPANIONS})
    get_target_property(LIBRARY_FOLDER ${LIBRARY} BINARY_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${LIBRARY_FOLDER})
endforeach()

# Each description begins with a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")

# Libraries of two binary interfaces can be installed side by side.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libezparsersframework${EZ_ABI_VERSION})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "identification of media for DLNA media servers
The library tells a DLNA media server what a media file is and how it is
announced: MIME type, UPnP class, DLNA 4th field, duration, bit rates and
more. With it come its companions: parsers of formats, streams from
descriptors and over HTTP, readers of playlists, thumbnails, and a host of
all of them with the media types file that it needs.")
# cpack's own scripts refresh the linker's cache; where dpkg does it by this trigger, several packages share one refresh.
file(CONFIGURE OUTPUT packages/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packages/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libezparsersframework-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "identification of media for DLNA media servers - development
The headers, and the files by which CMake and pkg-config find the
libraries that tell a DLNA media server how media are announced.")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ezannounce)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "shows how a DLNA media server announces media
The command ezannounce identifies files and streams as a media server with
the same configuration does, and shows what the server tells its clients
about each.")

# What every Debian package holds about itself. Left out of a plain installation.
string(TIMESTAMP EZ_PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/packages/changelog.in packages/changelog @ONLY)
configure_file(cmake/packages/copyright.in packages/copyright @ONLY)
foreach(COMPONENT ${CPACK_COMPONENTS_ALL})
    string(TOUPPER ${COMPONENT} KEY)
    install(FILES ${PROJECT_BINARY_DIR}/packages/changelog ${PROJECT_BINARY_DIR}/packages/copyright
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${KEY}_PACKAGE_NAME}
            COMPONENT ${COMPONENT} EXCLUDE_FROM_ALL)
endforeach()
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/packages/compress.cmake)

include(CPack)
