# Joins the fragments of the grammar in the order in which statements stand in a description
# and runs Bison on the result. Sets tarnlet_grammar_sources.
set(tarnlet_grammar_sources)
if(NOT EXISTS ${PROJECT_SOURCE_DIR}/src/scan/grammar.y)
    return()
endif()

find_package(BISON 3.8 REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(generated ${CMAKE_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${generated})
set(fragments)
foreach(name
        scan/grammar.y header/header.y ports/ports.y registers/registers.y boundary/boundary.y
        isc/isc.y aio/aio.y prg/prg.y scan/grammar_end.y)
    set(fragment ${PROJECT_SOURCE_DIR}/src/${name})
    if(NOT EXISTS ${fragment})
        message(FATAL_ERROR "The grammar lacks its fragment src/${name}")
    endif()
    list(APPEND fragments ${fragment})
    # The five statements of the test access port may stand in any order: one rule for each.
    if(name STREQUAL "ports/ports.y" AND EXISTS ${PROJECT_SOURCE_DIR}/tools/make_tap_orders.py)
        add_custom_command(OUTPUT ${generated}/tap_orders.y
            DEPENDS ${PROJECT_SOURCE_DIR}/tools/make_tap_orders.py
            COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/make_tap_orders.py
                > ${generated}/tap_orders.y
            COMMENT "Printing the orders of the test access port statements")
        list(APPEND fragments ${generated}/tap_orders.y)
    endif()
endforeach()

add_custom_command(OUTPUT ${generated}/tarnlet_grammar.y
    DEPENDS ${fragments} ${PROJECT_SOURCE_DIR}/cmake/JoinGrammar.cmake
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${generated}/tarnlet_grammar.y "-DFRAGMENTS=${fragments}"
        -P ${PROJECT_SOURCE_DIR}/cmake/JoinGrammar.cmake
    VERBATIM
    COMMENT "Joining the grammar")
add_custom_command(
    OUTPUT ${generated}/grammar.cpp ${generated}/grammar.h ${generated}/grammar.xml
    DEPENDS ${generated}/tarnlet_grammar.y
    COMMAND ${BISON_EXECUTABLE} -Wall -Werror=conflicts-sr -Werror=conflicts-rr
        --header=${generated}/grammar.h --xml=${generated}/grammar.xml
        -o ${generated}/grammar.cpp ${generated}/tarnlet_grammar.y
    COMMENT "Building the parser")
set(tarnlet_grammar_sources ${generated}/grammar.cpp ${generated}/grammar.h)
# The skeleton brings helpers that a parser may do without.
set_source_files_properties(${generated}/grammar.cpp PROPERTIES
    COMPILE_OPTIONS "-Wno-unused-function;-Wno-unused-but-set-variable;-Wno-free-nonheap-object")

if(EXISTS ${PROJECT_SOURCE_DIR}/tools/check_markers.py)
    add_custom_command(OUTPUT ${generated}/check_markers.stamp
        DEPENDS ${generated}/grammar.xml ${PROJECT_SOURCE_DIR}/tools/check_markers.py
        COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/check_markers.py
            ${generated}/grammar.xml
        COMMAND ${CMAKE_COMMAND} -E touch ${generated}/check_markers.stamp
        COMMENT "Checking that no scanner mode waits for a look-ahead")
    add_custom_target(tarnlet_check_markers DEPENDS ${generated}/check_markers.stamp)
endif()
