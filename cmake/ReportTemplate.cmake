# Run as a script: joins the parts of the page that `tarnlet report` writes and prints them as a
# C++ source, -D HTML=..., -D STYLE=..., -D MODULES=a.js;b.js, -D OUTPUT=...
#
# The modules import from each other so that each can be read, checked and tested by itself. In the
# page they are one script: their names are unique, so it is enough to leave out what imports and
# exports.
function(add_bytes name text_file)
    file(READ "${text_file}" bytes HEX)
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(REGEX REPLACE "(................................................................................)"
        "\\1\n" bytes "${bytes}")
    set(source "${source}
static constexpr unsigned char ${name}_BYTES[] = {
${bytes}};
const std::string_view ${name}(reinterpret_cast<const char *>(${name}_BYTES), sizeof ${name}_BYTES);
" PARENT_SCOPE)
endfunction()

set(script "")
foreach(module IN LISTS MODULES)
    file(READ "${module}" text)
    string(REGEX REPLACE "(^|\n)import [^;]*;" "\\1" text "${text}")
    string(REGEX REPLACE "(^|\n)export " "\\1" text "${text}")
    string(APPEND script "${text}")
endforeach()
file(WRITE "${OUTPUT}.js" "'use strict';\n(() => {\n${script}\n})();\n")

set(source "#include \"report/template.h\"\n")
add_bytes(REPORT_HTML "${HTML}")
add_bytes(REPORT_STYLE "${STYLE}")
add_bytes(REPORT_SCRIPT "${OUTPUT}.js")
file(WRITE "${OUTPUT}" "${source}")
