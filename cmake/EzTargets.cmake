# The version of the binary interface, which names the shared libraries and the package of them. Until 1.0.0 the second
# number of ours may change interfaces, from then on only the first.
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(EZ_ABI_VERSION 0.${PROJECT_VERSION_MINOR})
    set(EZ_COMPATIBLE SameMinorVersion)
else()
    set(EZ_ABI_VERSION ${PROJECT_VERSION_MAJOR})
    set(EZ_COMPATIBLE SameMajorVersion)
endif()

# What every target of ours is compiled with. Linked privately, so that nothing of it reaches a user of the libraries.
add_library(ezBuildFlags INTERFACE)
target_compile_options(ezBuildFlags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast)
if(EZ_WERROR)
    target_compile_options(ezBuildFlags INTERFACE -Werror)
endif()
# A stream's thread meets the parsing thread; with older C libraries that takes a library of its own.
find_package(Threads REQUIRED)
target_link_libraries(ezBuildFlags INTERFACE Threads::Threads)
# 64-bit file offsets and times on 32-bit targets.
target_compile_definitions(ezBuildFlags INTERFACE _FILE_OFFSET_BITS=64 _TIME_BITS=64)
if(NOT EZ_ASSERTIONS)
    target_compile_definitions(ezBuildFlags INTERFACE EZ_NO_ASSERTIONS)
endif()
if(EZ_SANITIZE)
    target_compile_options(ezBuildFlags INTERFACE -fsanitize=${EZ_SANITIZE} -fno-sanitize-recover=all
                                                  -fno-omit-frame-pointer)
    target_link_options(ezBuildFlags INTERFACE -fsanitize=${EZ_SANITIZE})
endif()
if(EZ_COVERAGE)
    # The counters stand in the profile itself, so that a test's process that ends by a signal leaves them there.
    target_compile_options(ezBuildFlags INTERFACE -fprofile-instr-generate -fcoverage-mapping -fprofile-update=atomic
                                                  "SHELL:-mllvm -runtime-counter-relocation")
    target_link_options(ezBuildFlags INTERFACE -fprofile-instr-generate)
endif()

# ez_add_library(<name> INCLUDES <folder>... DEPENDS <library>... SOURCES <source>...)
#
# Makes the shared library <name> and, under it, the object library <name>_objects. The product hides everything that
# is not exported; tests, benchmarks and fuzz targets link the objects and so reach the inside.
function(ez_add_library NAME)
    cmake_parse_arguments(ARG "" "" "INCLUDES;DEPENDS;SOURCES" ${ARGN})

    add_library(${NAME}_objects OBJECT ${ARG_SOURCES})
    target_link_libraries(${NAME}_objects PRIVATE ezBuildFlags)
    foreach(INCLUDE ${ARG_INCLUDES})
        target_include_directories(${NAME}_objects PUBLIC ${INCLUDE})
    endforeach()

    add_library(${NAME} SHARED)
    add_library(ez::${NAME} ALIAS ${NAME})
    target_link_libraries(${NAME} PRIVATE ezBuildFlags ${NAME}_objects)
    # Installed, the libraries find each other wherever their folder is: a program names those that it uses itself, and
    # not those that these use.
    set_target_properties(${NAME} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${EZ_ABI_VERSION}
        INSTALL_RPATH "$ORIGIN")
    target_compile_features(${NAME} PUBLIC cxx_std_17)
    if(NOT EZ_SANITIZE) # the sanitizers' own symbols come from the program
        target_link_options(${NAME} PRIVATE -Wl,--no-undefined)
    endif()
    foreach(INCLUDE ${ARG_INCLUDES})
        target_include_directories(${NAME} PUBLIC $<BUILD_INTERFACE:${INCLUDE}>)
    endforeach()
    foreach(DEPENDENCY ${ARG_DEPENDS})
        target_link_libraries(${NAME} PUBLIC ${DEPENDENCY})
        target_link_libraries(${NAME}_objects PUBLIC ${DEPENDENCY}_includes)
    endforeach()

    # The include folders alone, for objects of a library above this one.
    add_library(${NAME}_includes INTERFACE)
    foreach(INCLUDE ${ARG_INCLUDES})
        target_include_directories(${NAME}_includes INTERFACE ${INCLUDE})
    endforeach()

    # The objects with everything in reach: what a test, benchmark or fuzz target links instead of the product.
    add_library(${NAME}_inside STATIC $<TARGET_OBJECTS:${NAME}_objects>)
    target_link_libraries(${NAME}_inside PUBLIC ezBuildFlags ${NAME}_includes)
    foreach(DEPENDENCY ${ARG_DEPENDS})
        target_link_libraries(${NAME}_inside PUBLIC ${DEPENDENCY}_inside)
    endforeach()
endfunction()
