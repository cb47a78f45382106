# What a user of an installed part does. SOURCE_FOLDER is the repository, CONSUMER_FOLDER where the
# user works, and COMPILER theirs.

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(output_of variable)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

function(configure source folder)
    run("${CMAKE_COMMAND}" -S "${source}" -B "${folder}" -G Ninja
        "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=-O0 -Wall -Wextra -Werror" ${ARGN})
endfunction()

function(build source folder)
    configure("${source}" "${folder}" ${ARGN})
    run("${CMAKE_COMMAND}" --build "${folder}")
endfunction()

# Builds a program from the sources as pkg-config says.
function(build_with_pkg_config prefix package program)
    file(GLOB_RECURSE file "${prefix}/${package}.pc")
    cmake_path(GET file PARENT_PATH folder)
    output_of(flags "${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${folder}"
        pkg-config --cflags --libs ${package})
    output_of(libraries "${CMAKE_COMMAND}" -E env "PKG_CONFIG_PATH=${folder}"
        pkg-config --variable=libdir ${package})
    string(STRIP "${libraries}" libraries)
    separate_arguments(flags UNIX_COMMAND "${flags}")
    run("${COMPILER}" -std=c++20 ${ARGN} -o "${program}" ${flags} "-Wl,-rpath,${libraries}")
endfunction()

# What find_package says to somebody who asks for what is not there.
function(check_refusal prefix arguments expected)
    set(source "${CONSUMER_FOLDER}/refused-source")
    file(WRITE "${source}/CMakeLists.txt" "
cmake_minimum_required(VERSION 3.16)
project(Refused LANGUAGES NONE)
find_package(Orvane ${arguments})
")
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${CONSUMER_FOLDER}/refused" --fresh
            "-DCMAKE_PREFIX_PATH=${prefix}"
        RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE text)
    string(REGEX REPLACE "[ \n]+" " " text "${text}")
    if(result EQUAL 0 OR NOT text MATCHES "${expected}")
        message(FATAL_ERROR "find_package(Orvane ${arguments}) says:\n${text}")
    endif()
endfunction()
