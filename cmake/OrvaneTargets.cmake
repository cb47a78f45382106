# Interface targets that every library and program of the house links, and helpers to declare them.

add_library(orvane_warnings INTERFACE)
target_compile_options(orvane_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wold-style-cast
    -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wformat=2 -Wundef
    -Wzero-as-null-pointer-constant)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A constructor's parameter may bear the name of the field that it initialises.
    target_compile_options(orvane_warnings INTERFACE -Wshadow=local)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # A class may keep a collaborator that only its constructor needs.
    target_compile_options(orvane_warnings INTERFACE -Wno-unused-private-field)
endif()
if(ORVANE_WARNINGS_AS_ERRORS)
    target_compile_options(orvane_warnings INTERFACE -Werror)
endif()

add_library(orvane_sanitizers INTERFACE)
if(ORVANE_SANITIZE)
    target_compile_options(orvane_sanitizers INTERFACE
        -fsanitize=${ORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(orvane_sanitizers INTERFACE -fsanitize=${ORVANE_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        # It opens a pipe to look at an object, and reports nonsense when no descriptor is free.
        target_compile_options(orvane_sanitizers INTERFACE -fno-sanitize=vptr)
    endif()
endif()

# For the tests' own code, after orvane_sanitizers: addresses alone are checked in it. To check the
# rest as well makes a quarter more to compile.
add_library(orvane_test_sanitizers INTERFACE)
if(ORVANE_SANITIZE MATCHES "undefined")
    target_compile_options(orvane_test_sanitizers INTERFACE -fno-sanitize=undefined)
endif()

# orvane_precompile(TARGET HEADERS...): or REUSE_FROM OTHER.
function(orvane_precompile target)
    if(NOT ARGV1 STREQUAL REUSE_FROM)
        set(scope PRIVATE)
    endif()
    target_precompile_headers(${target} ${scope} ${ARGN})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # GCC forgets there which code is the system's, and warns of std::string (GCC bug 105651).
        target_compile_options(${target} PRIVATE
            -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow)
    endif()
endfunction()

# orvane_fuzzed(): libFuzzer sees which branches of this folder's code an input takes.
macro(orvane_fuzzed)
    if(ORVANE_BUILD_FUZZERS)
        add_compile_options(-fsanitize=fuzzer-no-link)
    endif()
endmacro()

if(ORVANE_COVERAGE)
    target_compile_options(orvane_sanitizers INTERFACE
        -fprofile-instr-generate -fcoverage-mapping)
    target_link_options(orvane_sanitizers INTERFACE -fprofile-instr-generate)
endif()

# orvane_library(NAME [OBJECT] SOURCES... [LINK LIBRARIES...])
#
# A library of one folder of src/, static unless OBJECT is given. Headers are included as
# "folder/Header.h" from src/.
function(orvane_library name)
    cmake_parse_arguments(ARG "OBJECT" "" "LINK" ${ARGN})
    set(kind STATIC)
    if(ARG_OBJECT)
        set(kind OBJECT)
    endif()
    add_library(${name} ${kind} ${ARG_UNPARSED_ARGUMENTS})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    # A unique symbol, which only GCC makes, would pin the plugin in the simulator's process.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${name} PRIVATE -fno-gnu-unique)
    endif()
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE orvane_warnings orvane_sanitizers)
endfunction()
