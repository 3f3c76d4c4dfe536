# Writes FRAGMENTS one after another to OUTPUT, each behind a mark of its file and line, which
# Bison follows: warnings, conflicts and breakpoints name the fragment.
set(joined "")
foreach(fragment IN LISTS FRAGMENTS)
    file(READ ${fragment} text)
    string(APPEND joined "#line 1 \"${fragment}\"\n${text}\n")
endforeach()
file(WRITE ${OUTPUT} "${joined}")
