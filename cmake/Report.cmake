# The page of `tarnlet report`, as a source file of the tool.
set(report_folder ${PROJECT_SOURCE_DIR}/tool/report)
set(tarnlet_report_template ${CMAKE_BINARY_DIR}/generated/report_template.cpp)
file(GLOB report_modules CONFIGURE_DEPENDS ${report_folder}/script/*.js)
# Those that draw use the others when they are loaded; this one starts the page.
list(REMOVE_ITEM report_modules ${report_folder}/script/main.js)
list(APPEND report_modules ${report_folder}/script/main.js)
set(report_parts ${report_folder}/page.html ${report_folder}/page.css)
add_custom_command(OUTPUT ${tarnlet_report_template}
    COMMAND ${CMAKE_COMMAND} -D HTML=${report_folder}/page.html -D STYLE=${report_folder}/page.css
        "-DMODULES=${report_modules}" -D OUTPUT=${tarnlet_report_template}
        -P ${PROJECT_SOURCE_DIR}/cmake/ReportTemplate.cmake
    DEPENDS ${report_parts} ${report_modules} ${PROJECT_SOURCE_DIR}/cmake/ReportTemplate.cmake
    COMMENT "Joining the page of the report"
    VERBATIM)
