# What a part of the build needs is there, or the configuration ends with what to do about it.

# orvane_require_found(FOUND WHAT DEBIAN_PACKAGE)
function(orvane_require_found found what debian_package)
    if(NOT found)
        message(FATAL_ERROR "${what} is missing: install it (Debian: ${debian_package}), "
            "or leave out what needs it with -DORVANE_BUILD_...=OFF")
    endif()
endfunction()

# orvane_require_package(PACKAGE DEBIAN_PACKAGE): find_package for this folder and those below.
macro(orvane_require_package package debian_package)
    find_package(${package} QUIET)
    orvane_require_found("${${package}_FOUND}" ${package} ${debian_package})
endmacro()

# orvane_require_parts(PART OTHERS...): a part cannot be built without the others.
function(orvane_require_parts part)
    foreach(other IN LISTS ARGN)
        if(ORVANE_BUILD_${part} AND NOT ORVANE_BUILD_${other})
            message(FATAL_ERROR "ORVANE_BUILD_${part} needs ORVANE_BUILD_${other}")
        endif()
    endforeach()
endfunction()
