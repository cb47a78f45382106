# Configures the plugin outside of the presets, in the two ways that users do: without any option, and
# with a vendor's SDK folder, for which a copy of our own headers stands in.
#
# Nothing is built here: the release preset builds what the first way does. Of the second, the
# compiler reads the sources that include the SDK, with its own commands and the vendor's headers.

set(sdk "${WORK_DIR}/vendor-sdk")
set(plain "${WORK_DIR}/plain")
set(vendor "${WORK_DIR}/vendor")
set(missing "${WORK_DIR}/missing")

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE text ERROR_VARIABLE text)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed:\n${text}")
    endif()
endfunction()

# Sets `commands` to the list of compile commands of the plugin's sources.
function(read_plugin_commands build)
    file(READ "${build}/compile_commands.json" json)
    string(JSON count LENGTH "${json}")
    math(EXPR last "${count} - 1")
    set(found)
    foreach(index RANGE ${last})
        string(JSON command GET "${json}" ${index} command)
        if(command MATCHES "${SOURCE_DIR}/src/")
            list(APPEND found "${command}")
        endif()
    endforeach()
    if(NOT found)
        message(FATAL_ERROR "no source of the plugin in ${build}")
    endif()
    set(commands "${found}" PARENT_SCOPE)
endfunction()

function(require_match text pattern)
    if(NOT text MATCHES "${pattern}")
        message(FATAL_ERROR "${pattern} is not in: ${text}")
    endif()
endfunction()

# Whether a source, or the header of its name, includes the SDK.
function(includes_sdk source result)
    string(REGEX REPLACE "\\.cpp$" ".h" header "${source}")
    set(includes)
    foreach(file IN ITEMS "${source}" "${header}")
        if(EXISTS "${file}")
            file(STRINGS "${file}" lines REGEX "#include \"XPLM")
            list(APPEND includes ${lines})
        endif()
    endforeach()
    if(includes)
        set(${result} TRUE PARENT_SCOPE)
    else()
        set(${result} FALSE PARENT_SCOPE)
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
file(GLOB headers "${SOURCE_DIR}/sdk/*.h")
file(COPY ${headers} DESTINATION "${sdk}/CHeaders/XPLM")

run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${vendor}"
    "-DXPLANE_SDK_DIR=${sdk}" -DORVANE_BUILD_HEADLESS=OFF)
read_plugin_commands("${vendor}")
set(checked 0)
foreach(command IN LISTS commands)
    require_match("${command}" " -isystem ${sdk}/CHeaders/XPLM ")
    require_match("${command}" " -DLIN=1 ")
    if(command MATCHES "${SOURCE_DIR}/sdk")
        message(FATAL_ERROR "our own headers are used, too: ${command}")
    endif()
    string(REGEX MATCH "[^ ]+\\.cpp$" source "${command}")
    includes_sdk("${source}" uses_sdk)
    if(uses_sdk)
        separate_arguments(arguments UNIX_COMMAND "${command}")
        run(${arguments} -fsyntax-only)
        math(EXPR checked "${checked} + 1")
    endif()
endforeach()
if(checked EQUAL 0)
    message(FATAL_ERROR "no source includes the SDK")
endif()

execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${vendor}" "-DXPLANE_SDK_DIR=${missing}"
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE text)
if(result EQUAL 0)
    message(FATAL_ERROR "a folder without the SDK was accepted")
endif()
require_match("${text}" "XPLANE_SDK_DIR: no CHeaders/XPLM/XPLMDefs.h in")

run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${plain}")
read_plugin_commands("${plain}")
foreach(command IN LISTS commands)
    require_match("${command}" " -O3 -DNDEBUG ")
    require_match("${command}" " -isystem ${SOURCE_DIR}/sdk ")
endforeach()
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${plain}" --target help OUTPUT_VARIABLE targets)
require_match("${targets}" "[ .]XPlaneOrvane[\n:]")

file(REMOVE_RECURSE "${WORK_DIR}")
