# Installs the headless simulator from BUILD_FOLDER, moves it elsewhere, and does with it, below
# CONSUMER_FOLDER, what the author of a plugin does: builds and runs examples/plugin_test and the test
# on the page docs/headless.md, and flies the plugin. Looks at what they find there.

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/Consumer.cmake")

# The page's first block of the language.
function(extract_block language file)
    file(READ "${SOURCE_FOLDER}/docs/headless.md" page)
    string(FIND "${page}" "```${language}\n" begin)
    if(begin EQUAL -1)
        message(FATAL_ERROR "docs/headless.md has no block of ${language}")
    endif()
    string(LENGTH "```${language}\n" length)
    math(EXPR begin "${begin} + ${length}")
    string(SUBSTRING "${page}" ${begin} -1 page)
    string(FIND "${page}" "```" length)
    string(SUBSTRING "${page}" 0 ${length} block)
    file(WRITE "${file}" "${block}")
endfunction()

function(build_and_test source folder expected)
    build("${source}" "${folder}" "-DCMAKE_PREFIX_PATH=${prefix}")
    output_of(text "${CMAKE_CTEST_COMMAND}" --test-dir "${folder}" --output-on-failure)
    if(NOT text MATCHES "100% tests passed, 0 tests failed out of ${expected}")
        message(FATAL_ERROR "not the tests that are there:\n${text}")
    endif()
endfunction()

function(install_as_shown folder)
    file(READ "${SOURCE_FOLDER}/docs/headless.md" page)
    string(REGEX MATCH "\ncmake --install [^\n]*" command "${page}")
    string(REPLACE "build/release" "${BUILD_FOLDER}" command "${command}")
    string(REPLACE "/where/you/like" "${folder}" command "${command}")
    separate_arguments(command UNIX_COMMAND "${command}")
    run(${command})
endfunction()

function(check_exports)
    file(GLOB_RECURSE library "${prefix}/liborvane-headless.so.7")
    output_of(dynamic readelf --dynamic "${library}")
    if(NOT dynamic MATCHES "soname: \\[liborvane-headless\\.so\\.7\\]" OR
       NOT dynamic MATCHES "RUNPATH[^\n]*\\[\\$ORIGIN\\]")
        message(FATAL_ERROR "not the soname or the run path that it should have:\n${dynamic}")
    endif()
    output_of(symbols nm --dynamic --defined-only --demangle "${library}")
    # Parts of the standard library that it was compiled with aside.
    string(REGEX REPLACE "[^\n]* [WVu] [^\n]*std::[^\n]*\n" "" symbols "${symbols}")
    string(REGEX REPLACE "[^\n]* orvane::headless::[^\n]*\n" "" symbols "${symbols}")
    if(NOT symbols STREQUAL "")
        message(FATAL_ERROR "exports other things than its public headers declare:\n${symbols}")
    endif()
endfunction()

function(check_files)
    foreach(file IN ITEMS share/man/man1/headless-sim.1
            share/bash-completion/completions/headless-sim
            share/zsh/site-functions/_headless-sim
            share/fish/vendor_completions.d/headless-sim.fish include/orvane/sdk/XPLMDefs.h
            include/orvane/headless/Simulator.h)
        if(NOT EXISTS "${prefix}/${file}")
            message(FATAL_ERROR "${file} is not installed")
        endif()
    endforeach()
    file(READ "${prefix}/share/man/man1/headless-sim.1" manual)
    if(NOT manual MATCHES "headless-sim .- The headless simulator" OR
       NOT manual MATCHES ".-.-duration")
        message(FATAL_ERROR "the manual does not say what the program does:\n${manual}")
    endif()
endfunction()

# What a shell that is installed offers for --dur, with its own words for the rest.
function(check_completion shell script)
    find_program(${shell}_found ${shell})
    if(NOT ${shell}_found)
        return()
    endif()
    output_of(words ${shell} -c "${script}")
    if(NOT words MATCHES "^--duration[^\n]*\n$")
        message(FATAL_ERROR "${shell} completes --dur to: ${words}")
    endif()
endfunction()

function(check_completions)
    set(program "${prefix}/bin/headless-sim")
    check_completion(bash "source '${prefix}/share/bash-completion/completions/headless-sim'
        COMP_WORDS=('${program}' --dur) COMP_CWORD=1
        _headless-sim
        echo \"\${COMPREPLY[@]}\"")
    check_completion(zsh "words=('${program}' --dur) CURRENT=2
        _describe() { print -r -- $candidates }
        source '${prefix}/share/zsh/site-functions/_headless-sim'")
    check_completion(fish "source '${prefix}/share/fish/vendor_completions.d/headless-sim.fish'
        complete -C '${program} --dur'")
endfunction()

# The page's call prints what the page says, whatever the numbers are.
function(measure folder)
    extract_block(console "${CONSUMER_FOLDER}/measured")
    file(READ "${CONSUMER_FOLDER}/measured" expected)
    string(REGEX MATCH "^\\\$ headless-sim ([^\n]*)\n" call "${expected}")
    separate_arguments(arguments UNIX_COMMAND "${CMAKE_MATCH_1}")
    string(REPLACE "${call}" "" expected "${expected}")
    execute_process(COMMAND "${prefix}/bin/headless-sim" ${arguments}
        WORKING_DIRECTORY "${folder}" OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "${folder}/" "" text "${text}")
    foreach(printed IN ITEMS expected text)
        string(REGEX REPLACE "[0-9.]+ (us|KB)" "N \\1" ${printed} "${${printed}}")
        string(REGEX REPLACE "us, [0-9]+ calls" "us, N calls" ${printed} "${${printed}}")
    endforeach()
    if(NOT text STREQUAL expected)
        message(FATAL_ERROR "the page says:\n${expected}\nbut it prints:\n${text}")
    endif()
endfunction()

file(REMOVE_RECURSE "${CONSUMER_FOLDER}")
set(prefix "${CONSUMER_FOLDER}/moved")
install_as_shown("${CONSUMER_FOLDER}/installed")
file(RENAME "${CONSUMER_FOLDER}/installed" "${prefix}")
check_files()
check_completions()
check_exports()
check_refusal("${prefix}" "7 REQUIRED COMPONENTS headless client" "not installed: client")

build_and_test("${SOURCE_FOLDER}/examples/plugin_test" "${CONSUMER_FOLDER}/example" 5)
measure("${CONSUMER_FOLDER}/example")

set(page "${CONSUMER_FOLDER}/page-source")
extract_block(cmake "${page}/CMakeLists.txt")
extract_block(cpp "${page}/StopwatchTest.cpp")
file(COPY "${SOURCE_FOLDER}/examples/plugin_test/Stopwatch.cpp" DESTINATION "${page}")
build_and_test("${page}" "${CONSUMER_FOLDER}/page" 1)
build_with_pkg_config("${prefix}" orvane-headless "${CONSUMER_FOLDER}/page/test_of_pkg_config"
    "${page}/StopwatchTest.cpp" "${page}/Stopwatch.cpp" -lgtest_main -lgtest)
run("${CONSUMER_FOLDER}/page/test_of_pkg_config")
