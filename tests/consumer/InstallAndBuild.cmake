# Builds, below CONSUMER_FOLDER, the examples and the programs of docs/client.md and README.md as users
# of the library do: against the static library, installed from BUILD_FOLDER, and against the shared
# one, installed from a project that has this one in it. Looks at what they find there.

cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/Consumer.cmake")

# A program on a page is a block of C++ with a main; they are numbered from 1. The page's lines of
# CMake build the first.
function(extract_programs folder)
    file(READ "${SOURCE_FOLDER}/docs/client.md" page)
    file(READ "${SOURCE_FOLDER}/README.md" readme)
    if(NOT page MATCHES "```cmake\n([^`]*)```")
        message(FATAL_ERROR "docs/client.md has no block of CMake")
    endif()
    set(lines_of_cmake "${CMAKE_MATCH_1}")
    string(APPEND page "${readme}")
    set(count 0)
    while(TRUE)
        string(FIND "${page}" "```cpp\n" begin)
        if(begin EQUAL -1)
            break()
        endif()
        math(EXPR begin "${begin} + 7")
        string(SUBSTRING "${page}" ${begin} -1 page)
        string(FIND "${page}" "```" length)
        string(SUBSTRING "${page}" 0 ${length} block)
        math(EXPR length "${length} + 3")
        string(SUBSTRING "${page}" ${length} -1 page)
        if(NOT block MATCHES "int main\\(")
            message(FATAL_ERROR "a page has a block of C++ that is not a program:\n${block}")
        endif()
        math(EXPR count "${count} + 1")
        file(WRITE "${folder}/program_${count}.cpp" "${block}")
    endwhile()
    file(WRITE "${folder}/CMakeLists.txt" "
cmake_minimum_required(VERSION 3.16)
project(Page LANGUAGES CXX)
add_executable(my_panel program_1.cpp)
${lines_of_cmake}
foreach(number RANGE 2 ${count})
    add_executable(program_\${number} program_\${number}.cpp)
    target_link_libraries(program_\${number} PRIVATE Orvane::client)
endforeach()
")
endfunction()

# The library as a part of another project, which gets nothing else.
function(install_from_subproject prefix)
    set(source "${CONSUMER_FOLDER}/subproject-source")
    file(WRITE "${source}/CMakeLists.txt" "
cmake_minimum_required(VERSION 3.25)
project(Cockpit LANGUAGES CXX)
add_subdirectory(\"${SOURCE_FOLDER}\" orvane)
add_executable(reading \"${CONSUMER_FOLDER}/page-source/program_1.cpp\")
target_link_libraries(reading PRIVATE Orvane::client)
")
    set(folder "${CONSUMER_FOLDER}/subproject")
    build("${source}" "${folder}" -DBUILD_SHARED_LIBS=ON)
    output_of(targets "${CMAKE_COMMAND}" --build "${folder}" --target help)
    if(targets MATCHES "XPlaneOrvane|headless-sim|orvane-demo|orvane_tool" OR
       NOT targets MATCHES "orvane_client")
        message(FATAL_ERROR "another project gets more than the client:\n${targets}")
    endif()
    run("${CMAKE_COMMAND}" --install "${folder}" --component client --prefix "${prefix}")
endfunction()

function(check_shared_library prefix)
    file(GLOB_RECURSE library "${prefix}/liborvane-client.so.7")
    output_of(dynamic readelf --dynamic "${library}")
    if(NOT dynamic MATCHES "soname: \\[liborvane-client\\.so\\.7\\]")
        message(FATAL_ERROR "not the soname that belongs to version 7:\n${dynamic}")
    endif()
    output_of(symbols nm --dynamic --defined-only --demangle "${library}")
    if(symbols MATCHES "orvane::detail::|::wire::|::Session::|inputRecordOf" OR
       NOT symbols MATCHES "orvane::tarnel::Client::exchange")
        message(FATAL_ERROR "exports other things than its public headers declare:\n${symbols}")
    endif()
endfunction()

function(build_consumers kind)
    set(folder "${CONSUMER_FOLDER}/${kind}")
    set(prefix "${folder}/prefix")
    build("${SOURCE_FOLDER}/examples" "${folder}/examples" "-DCMAKE_PREFIX_PATH=${prefix}")
    build("${CONSUMER_FOLDER}/page-source" "${folder}/page" "-DCMAKE_PREFIX_PATH=${prefix}")
    build_with_pkg_config("${prefix}" orvane-client "${folder}/page/program_of_pkg_config"
        "${CONSUMER_FOLDER}/page-source/program_1.cpp"
        -Wall -Wextra -Wconversion -Wshadow -pedantic -Werror)
    check_refusal("${prefix}" "8 REQUIRED" "requested version \"8\"")
    check_refusal("${prefix}" "7 REQUIRED COMPONENTS client wings" "not installed: wings")
endfunction()

file(REMOVE_RECURSE "${CONSUMER_FOLDER}")
extract_programs("${CONSUMER_FOLDER}/page-source")
run("${CMAKE_COMMAND}" --install "${BUILD_FOLDER}" --component client
    --prefix "${CONSUMER_FOLDER}/Static/prefix")
install_from_subproject("${CONSUMER_FOLDER}/Shared/prefix")
check_shared_library("${CONSUMER_FOLDER}/Shared/prefix")
build_consumers(Static)
build_consumers(Shared)
