# Manual pages and completions, printed by the tool from its own tables of options. They lie in
# the build tree as they do in an installed one.
set(tool_docs_dir ${CMAKE_BINARY_DIR}/${CMAKE_INSTALL_DATAROOTDIR})
set(tool_docs
    man/man1/tarnlet.1
    bash-completion/completions/tarnlet
    zsh/site-functions/_tarnlet
    fish/vendor_completions.d/tarnlet.fish)
set(tool_pages check ebst info pins cells instructions registers diff list)
foreach(page IN LISTS tool_pages)
    list(APPEND tool_docs man/man1/tarnlet-${page}.1)
endforeach()
list(TRANSFORM tool_docs PREPEND ${tool_docs_dir}/ OUTPUT_VARIABLE tool_docs_files)

add_custom_command(OUTPUT ${tool_docs_files}
    COMMAND ${PROJECT_SOURCE_DIR}/tools/print_tool_docs.sh
        $<TARGET_FILE:tarnlet_tool> ${tool_docs_dir} "${tool_pages}"
    DEPENDS tarnlet_tool ${PROJECT_SOURCE_DIR}/tools/print_tool_docs.sh
    COMMENT "Printing manual pages and completions"
    VERBATIM)
add_custom_target(tarnlet_tool_docs ALL DEPENDS ${tool_docs_files})

foreach(file IN LISTS tool_docs)
    cmake_path(GET file PARENT_PATH folder)
    install(FILES ${tool_docs_dir}/${file}
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/${folder} COMPONENT tool)
endforeach()
