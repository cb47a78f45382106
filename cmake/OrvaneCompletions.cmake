# orvane_install_completions(PROGRAM COMPONENT): for bash, zsh and fish. The program answers
# `PROGRAM __complete WORDS...` with a line per candidate, with a tab and its meaning, and with
# ":files" where file names fit.
include(GNUInstallDirs)

set(orvane_completion_templates "${CMAKE_CURRENT_LIST_DIR}/completion")

function(orvane_install_completions PROGRAM component)
    foreach(place IN ITEMS
            bash:bash-completion/completions/${PROGRAM}
            zsh:zsh/site-functions/_${PROGRAM}
            fish:fish/vendor_completions.d/${PROGRAM}.fish)
        string(REGEX MATCH "^([a-z]+):(.*)/(.*)$" all "${place}")
        set(script "${CMAKE_CURRENT_BINARY_DIR}/completion/${CMAKE_MATCH_1}")
        set(folder "${CMAKE_INSTALL_DATADIR}/${CMAKE_MATCH_2}")
        set(name "${CMAKE_MATCH_3}")
        configure_file("${orvane_completion_templates}/${CMAKE_MATCH_1}.in" "${script}" @ONLY)
        install(FILES "${script}" COMPONENT ${component} DESTINATION "${folder}" RENAME "${name}")
    endforeach()
endfunction()
