# The files of the page of "orvane serve", and the library that draws its curves, as bytes in the
# program: orvane_tool gets a source that takes them in as they are.

find_library(CPP_HTTPLIB cpp-httplib)
orvane_require_found("${CPP_HTTPLIB}" cpp-httplib libcpp-httplib-dev)
# As Debian has built it; it has the same classes only then.
set_source_files_properties(serve/HttpServer.cpp PROPERTIES
    COMPILE_DEFINITIONS
        "CPPHTTPLIB_OPENSSL_SUPPORT;CPPHTTPLIB_ZLIB_SUPPORT;CPPHTTPLIB_BROTLI_SUPPORT"
    SKIP_PRECOMPILE_HEADERS ON)
find_package(Threads REQUIRED)
target_link_libraries(orvane_tool PRIVATE ${CPP_HTTPLIB} Threads::Threads)

find_file(DYGRAPHS_SCRIPT dygraph.min.js PATHS /usr/share/javascript/dygraphs)
find_file(DYGRAPHS_STYLE dygraph.min.css PATHS /usr/share/javascript/dygraphs)
find_file(DYGRAPHS_LICENCE copyright PATHS /usr/share/doc/libjs-dygraphs NO_DEFAULT_PATH)
foreach(file IN ITEMS "${DYGRAPHS_SCRIPT}" "${DYGRAPHS_STYLE}" "${DYGRAPHS_LICENCE}")
    orvane_require_found("${file}" dygraphs libjs-dygraphs)
endforeach()

set(page_symbols "")
set(page_entries "")
set(page_inputs "")

# page_file(PATH TYPE FILE)
function(page_file path type file)
    list(LENGTH page_inputs number)
    set(symbol "orvanePageFile${number}")
    list(APPEND page_inputs "${file}")
    string(APPEND page_symbols "PAGE_FILE(${symbol}, \"${file}\")\n")
    string(APPEND page_entries "    {\"${path}\", \"${type}\", {${symbol}Begin, ${symbol}End}},\n")
    foreach(name IN ITEMS page_symbols page_entries page_inputs)
        set(${name} "${${name}}" PARENT_SCOPE)
    endforeach()
endfunction()

set(script "text/javascript; charset=utf-8")
set(style "text/css; charset=utf-8")
page_file(/index.html "text/html; charset=utf-8" "${CMAKE_CURRENT_SOURCE_DIR}/serve/page/index.html")
page_file(/style.css "${style}" "${CMAKE_CURRENT_SOURCE_DIR}/serve/page/style.css")
page_file(/icon.svg "image/svg+xml" "${CMAKE_CURRENT_SOURCE_DIR}/serve/page/icon.svg")
foreach(module IN ITEMS address commands history link main marks offers plot texts values)
    page_file(/${module}.js "${script}" "${CMAKE_CURRENT_SOURCE_DIR}/serve/page/${module}.js")
endforeach()
page_file(/dygraph.js "${script}" "${DYGRAPHS_SCRIPT}")
page_file(/dygraph.css "${style}" "${DYGRAPHS_STYLE}")
page_file(/dygraph-licence.txt "text/plain; charset=utf-8" "${DYGRAPHS_LICENCE}")

configure_file(serve/PageFiles.cpp.in "${CMAKE_CURRENT_BINARY_DIR}/PageFiles.cpp" @ONLY)
target_sources(orvane_tool PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/PageFiles.cpp")
set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/PageFiles.cpp" PROPERTIES
    OBJECT_DEPENDS "${page_inputs}" SKIP_PRECOMPILE_HEADERS ON)
