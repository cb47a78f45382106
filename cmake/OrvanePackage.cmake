# The CMake package that users find with find_package(Orvane). Its components are installed one by one.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(orvane_config_template "${CMAKE_CURRENT_LIST_DIR}/OrvaneConfig.cmake.in")
set(orvane_pkg_config_template "${CMAKE_CURRENT_LIST_DIR}/orvane.pc.in")

# orvane_install_package(COMPONENT EXPORT): the targets of one component, and what finds them.
function(orvane_install_package component export)
    set(folder "${CMAKE_INSTALL_LIBDIR}/cmake/Orvane")
    set(config "${CMAKE_CURRENT_BINARY_DIR}/OrvaneConfig.cmake")
    set(version "${CMAKE_CURRENT_BINARY_DIR}/OrvaneConfigVersion.cmake")
    configure_package_config_file("${orvane_config_template}" "${config}"
        INSTALL_DESTINATION "${folder}" NO_SET_AND_CHECK_MACRO)
    write_basic_package_version_file("${version}" COMPATIBILITY SameMajorVersion)
    install(EXPORT ${export} COMPONENT ${component}
        FILE ${export}.cmake NAMESPACE Orvane:: DESTINATION "${folder}")
    install(FILES "${config}" "${version}" COMPONENT ${component} DESTINATION "${folder}")
endfunction()

# orvane_install_pkg_config(COMPONENT DESCRIPTION CFLAGS LIBS): the same for pkg-config, with what the
# library's users need besides its headers and itself.
function(orvane_install_pkg_config component description cflags libs)
    set(folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
    set(file "${CMAKE_CURRENT_BINARY_DIR}/orvane-${component}.pc")
    file(RELATIVE_PATH prefix "/${folder}" "/")
    configure_file("${orvane_pkg_config_template}" "${file}" @ONLY)
    install(FILES "${file}" COMPONENT ${component} DESTINATION "${folder}")
endfunction()
