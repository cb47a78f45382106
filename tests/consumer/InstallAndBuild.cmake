# Installs the client library of BUILD_FOLDER, and builds against it, below CONSUMER_FOLDER, the
# examples and the programs on the page docs/client.md.

cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(build source folder)
    run("${CMAKE_COMMAND}" -S "${source}" -B "${folder}" "-DCMAKE_PREFIX_PATH=${prefix}"
        "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=-O0 -Wall -Wextra -Werror")
    run("${CMAKE_COMMAND}" --build "${folder}")
endfunction()

set(prefix "${CONSUMER_FOLDER}/prefix")
file(REMOVE_RECURSE "${CONSUMER_FOLDER}")
run("${CMAKE_COMMAND}" --install "${BUILD_FOLDER}" --component client --prefix "${prefix}")

# A program on the page is a block of C++ with a main; they are numbered from 1.
file(READ "${SOURCE_FOLDER}/docs/client.md" page)
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
    if(block MATCHES "int main\\(")
        math(EXPR count "${count} + 1")
        file(WRITE "${CONSUMER_FOLDER}/page-source/program_${count}.cpp" "${block}")
    endif()
endwhile()
if(count EQUAL 0)
    message(FATAL_ERROR "docs/client.md has no program")
endif()
file(WRITE "${CONSUMER_FOLDER}/page-source/CMakeLists.txt" "
cmake_minimum_required(VERSION 3.16)
project(Page LANGUAGES CXX)
find_package(Orvane 7 REQUIRED)
foreach(number RANGE 1 ${count})
    add_executable(program_\${number} program_\${number}.cpp)
    target_link_libraries(program_\${number} PRIVATE Orvane::client)
endforeach()
")

build("${SOURCE_FOLDER}/examples" "${CONSUMER_FOLDER}/examples")
build("${CONSUMER_FOLDER}/page-source" "${CONSUMER_FOLDER}/page")
