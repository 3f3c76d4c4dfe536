# Manual pages and completions, printed by the tool from its own tables of options. They lie in
# the build tree as they do in an installed one.
set(tool_docs_dir ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_DATAROOTDIR})
set(tool_docs_stamp ${CMAKE_BINARY_DIR}/tool_docs.stamp)
add_custom_command(OUTPUT ${tool_docs_stamp}
    COMMAND ${PROJECT_SOURCE_DIR}/tools/print_tool_docs.sh $<TARGET_FILE:tarnlet_tool>
        ${tool_docs_dir}
    COMMAND ${CMAKE_COMMAND} -E touch ${tool_docs_stamp}
    DEPENDS tarnlet_tool ${PROJECT_SOURCE_DIR}/tools/print_tool_docs.sh
    COMMENT "Printing manual pages and completions"
    VERBATIM)
add_custom_target(tarnlet_tool_docs ALL DEPENDS ${tool_docs_stamp})

foreach(folder man bash-completion zsh fish)
    install(DIRECTORY ${tool_docs_dir}/${folder}
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR} COMPONENT tool)
endforeach()
