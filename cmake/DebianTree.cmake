# Run by cpack on what is installed into the packages: puts it where Debian wants it.
foreach(program dpkg-shlibdeps file gzip)
    find_program(found_${program} ${program})
    if(NOT found_${program})
        message(FATAL_ERROR
            "Making packages needs more: apt-get install --no-install-recommends dpkg-dev file")
    endif()
endforeach()

# A package of Debian is read by its changelog; what is new in the version stands in CHANGELOG.md.
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(changelog "tarnlet (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n  * Version ${CPACK_PACKAGE_VERSION}.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${now}\n")

file(GLOB copyrights ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/copyright)
foreach(copyright IN LISTS copyrights)
    cmake_path(GET copyright PARENT_PATH folder)
    file(WRITE ${folder}/changelog "${changelog}")
    execute_process(COMMAND gzip -9nf ${folder}/changelog COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# Debian's zsh leaves site-functions to the administrator.
file(GLOB completions ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/zsh/site-functions)
foreach(folder IN LISTS completions)
    cmake_path(REPLACE_FILENAME folder vendor-completions OUTPUT_VARIABLE vendor)
    file(RENAME ${folder} ${vendor})
endforeach()
