# Headers, both shared libraries, a CMake package and a pkg-config file. What a program needs to run is the component
# Runtime, what a program needs to be built Development; the companions and the tool add theirs.
include(CMakePackageConfigHelpers)

# Include "ezPlatform/..." and "ez/..." (and "ezFormats/...") from these two folders.
set(EZ_INSTALL_EZ_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/ezParsersFramework)
set(EZ_INSTALL_PACKAGEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/ezParsersFramework)

target_include_directories(ezPlatform PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(ezParsersFramework PUBLIC $<INSTALL_INTERFACE:${EZ_INSTALL_EZ_INCLUDEDIR}>)

# ez_install_library(<name>): a shared library of ours, as ez::<name> of the CMake package.
function(ez_install_library NAME)
    install(TARGETS ${NAME} EXPORT ezParsersFrameworkTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development)
endfunction()

# ez_install_pkg_config(<name>): the pkg-config file made of cmake/<template>.pc.in.
function(ez_install_pkg_config NAME TEMPLATE)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${TEMPLATE}.pc.in ${PROJECT_BINARY_DIR}/${NAME}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${NAME}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
            COMPONENT Development)
endfunction()

ez_install_library(ezPlatform)
ez_install_library(ezParsersFramework)
# Headers of ezPlatform that are not installed: they are for the libraries' own sources.
set(EZ_INSIDE_HEADERS System.h CacheName.h DistinctTexts.h HashKey.h HashSlots.h FileSaver.h HeldFiles.h Limits.h NUL.h OrderedByteMap.h)
list(TRANSFORM EZ_INSIDE_HEADERS REPLACE "(.+)" "PATTERN;\\1;EXCLUDE" OUTPUT_VARIABLE EZ_WITHOUT_INSIDE_HEADERS)
install(DIRECTORY ezPlatform DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT Development
        FILES_MATCHING PATTERN "*.h" ${EZ_WITHOUT_INSIDE_HEADERS})
install(DIRECTORY ezParsersFramework/ez DESTINATION ${EZ_INSTALL_EZ_INCLUDEDIR} COMPONENT Development
        FILES_MATCHING PATTERN "*.h")

install(EXPORT ezParsersFrameworkTargets NAMESPACE ez:: DESTINATION ${EZ_INSTALL_PACKAGEDIR} COMPONENT Development)
configure_package_config_file(cmake/ezParsersFrameworkConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/ezParsersFrameworkConfig.cmake
                              INSTALL_DESTINATION ${EZ_INSTALL_PACKAGEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ezParsersFrameworkConfigVersion.cmake
                                 COMPATIBILITY ${EZ_COMPATIBLE})
install(FILES ${PROJECT_BINARY_DIR}/ezParsersFrameworkConfig.cmake
              ${PROJECT_BINARY_DIR}/ezParsersFrameworkConfigVersion.cmake
        DESTINATION ${EZ_INSTALL_PACKAGEDIR} COMPONENT Development)

# Relative to the file itself, so that an installed tree can be moved.
file(RELATIVE_PATH EZ_PC_INCLUDE_FROM_LIB ${CMAKE_INSTALL_FULL_LIBDIR} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
ez_install_pkg_config(ezParsersFramework ezParsersFramework)
