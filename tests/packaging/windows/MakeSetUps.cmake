cmake_minimum_required(VERSION 3.25)

# cmake -DSOURCE_DIR=… -DBUILD_DIR=… -DCLIENTS=… -DCACHE=… -DVERSIONS=… -P MakeSetUps.cmake
#
# Makes the set-up of BUILD_DIR, and in CLIENTS one for each of VERSIONS, whose builds begin with the variables of CACHE.
# Versions share a build, in which little differs.

function(run)
    execute_process(COMMAND ${CMAKE_COMMAND} ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(--build ${BUILD_DIR} --target windows_set_up)
foreach(version IN LISTS VERSIONS)
    run(-S ${SOURCE_DIR} -B ${CLIENTS} -G Ninja -C ${CACHE} -DQUILLBOX_VERSION=${version})
    run(--build ${CLIENTS} --target windows_set_up)
endforeach()
