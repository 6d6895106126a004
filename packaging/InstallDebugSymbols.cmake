# The debug information of `library`, as Debian keeps it: by build identity, compressed.
execute_process(COMMAND "${readelf}" --notes --wide "${library}"
    OUTPUT_VARIABLE notes
    COMMAND_ERROR_IS_FATAL ANY)
if(NOT notes MATCHES "Build ID: ([0-9a-f][0-9a-f])([0-9a-f]+)")
    message(FATAL_ERROR "${library} has no build identity")
endif()
set(folder "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/lib/debug/.build-id/${CMAKE_MATCH_1}")
file(MAKE_DIRECTORY "${folder}")
set(symbols "${folder}/${CMAKE_MATCH_2}.debug")
execute_process(
    COMMAND "${objcopy}" --only-keep-debug --compress-debug-sections "${library}" "${symbols}"
    COMMAND_ERROR_IS_FATAL ANY)
file(CHMOD "${symbols}" PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
