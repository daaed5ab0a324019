# tarnwick_document(PROGRAM): its manual page and completions, which it prints itself, built with it and installed.
function(tarnwick_document program)
    # A program for another machine can't be asked.
    if(CMAKE_CROSSCOMPILING)
        return()
    endif()
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/documentation)
    file(MAKE_DIRECTORY ${folder})
    set(manual ${folder}/${program}.1)
    set(bash ${folder}/${program})
    set(zsh ${folder}/_${program})
    set(fish ${folder}/${program}.fish)
    add_custom_command(TARGET ${program} POST_BUILD
        COMMAND ${program} --manual >${manual}
        COMMAND ${program} --completion bash >${bash}
        COMMAND ${program} --completion zsh >${zsh}
        COMMAND ${program} --completion fish >${fish}
        BYPRODUCTS ${manual} ${bash} ${zsh} ${fish}
        COMMENT "Asking ${program} for its manual page and completions")
    if(TARNWICK_INSTALL)
        # Debian keeps the completions of its packages apart from those that an administrator installs.
        set(zsh_folder site-functions)
        if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" AND EXISTS /etc/debian_version)
            set(zsh_folder vendor-completions)
        endif()
        install(FILES ${manual} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
        install(FILES ${bash} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
        install(FILES ${zsh} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${zsh_folder} COMPONENT tools)
        install(FILES ${fish} DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tools)
    endif()
endfunction()
