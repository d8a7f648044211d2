# Run by cpack over what it packs: Debian keeps manual pages and changelogs compressed.
file(GLOB_RECURSE FILES ${CPACK_TEMPORARY_DIRECTORY}/*)
list(FILTER FILES INCLUDE REGEX "/share/(man/.*\\.[1-9]|doc/[^/]*/changelog)$")
foreach(FILE ${FILES})
    execute_process(COMMAND gzip -9n ${FILE} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
