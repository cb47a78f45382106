# Builds the plugin outside of the presets, in the two ways that users do: without any option, and
# against a vendor's SDK folder, for which a copy of our own headers stands in.

set(sdk "${WORK_DIR}/vendor-sdk")
set(plain "${WORK_DIR}/plain")
set(vendor "${WORK_DIR}/vendor")
set(missing "${WORK_DIR}/missing")
set(plugin "XPlaneOrvane/64/lin.xpl")

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE text ERROR_VARIABLE text)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed:\n${text}")
    endif()
endfunction()

function(require_plugin build)
    if(NOT EXISTS "${build}/${plugin}")
        message(FATAL_ERROR "no ${build}/${plugin}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
file(GLOB headers "${SOURCE_DIR}/sdk/*.h")
file(COPY ${headers} DESTINATION "${sdk}/CHeaders/XPLM")

run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${vendor}" -G "${GENERATOR}"
    "-DXPLANE_SDK_DIR=${sdk}" -DORVANE_BUILD_HEADLESS=OFF)
run("${CMAKE_COMMAND}" --build "${vendor}" --parallel 2)
require_plugin("${vendor}")
file(READ "${vendor}/compile_commands.json" commands)
if(NOT commands MATCHES "${sdk}/CHeaders/XPLM" OR commands MATCHES "${SOURCE_DIR}/sdk")
    message(FATAL_ERROR "the plugin was not built with the headers in ${sdk}")
endif()

execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${missing}" -G "${GENERATOR}"
        "-DXPLANE_SDK_DIR=${missing}" -DORVANE_BUILD_HEADLESS=OFF
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE text)
if(result EQUAL 0 OR NOT text MATCHES "XPLANE_SDK_DIR: no CHeaders/XPLM/XPLMDefs.h in")
    message(FATAL_ERROR "a folder without the SDK was accepted:\n${text}")
endif()

run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${plain}")
run("${CMAKE_COMMAND}" --build "${plain}" --parallel 2 --target XPlaneOrvane)
require_plugin("${plain}")

file(REMOVE_RECURSE "${WORK_DIR}")
