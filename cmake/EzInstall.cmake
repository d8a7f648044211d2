# Headers, both shared libraries, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

# Include "ezPlatform/..." and "ez/..." from these two folders.
set(EZ_INSTALL_EZ_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/ezParsersFramework)
set(EZ_INSTALL_PACKAGEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/ezParsersFramework)

target_include_directories(ezPlatform PUBLIC $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_include_directories(ezParsersFramework PUBLIC $<INSTALL_INTERFACE:${EZ_INSTALL_EZ_INCLUDEDIR}>)

install(TARGETS ezPlatform ezParsersFramework EXPORT ezParsersFrameworkTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ezPlatform DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h"
        PATTERN "System.h" EXCLUDE
        PATTERN "CacheName.h" EXCLUDE
        PATTERN "OrderedByteMap.h" EXCLUDE)
install(DIRECTORY ezParsersFramework/ez DESTINATION ${EZ_INSTALL_EZ_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

install(EXPORT ezParsersFrameworkTargets NAMESPACE ez:: DESTINATION ${EZ_INSTALL_PACKAGEDIR})
configure_package_config_file(cmake/ezParsersFrameworkConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/ezParsersFrameworkConfig.cmake
                              INSTALL_DESTINATION ${EZ_INSTALL_PACKAGEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ezParsersFrameworkConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ezParsersFrameworkConfig.cmake
              ${PROJECT_BINARY_DIR}/ezParsersFrameworkConfigVersion.cmake
        DESTINATION ${EZ_INSTALL_PACKAGEDIR})

# Relative to the file itself, so that an installed tree can be moved.
file(RELATIVE_PATH EZ_PC_INCLUDE_FROM_LIB ${CMAKE_INSTALL_FULL_LIBDIR} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
configure_file(cmake/ezParsersFramework.pc.in ${PROJECT_BINARY_DIR}/ezParsersFramework.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ezParsersFramework.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
