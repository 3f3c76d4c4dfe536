# Flags of everything that is compiled here, as the interface target tarnlet_flags.
include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(tarnlet_flags INTERFACE)
target_compile_options(tarnlet_flags INTERFACE
    -Wall -Wextra
    $<$<BOOL:${TARNLET_WERROR}>:-Werror>
    # Tables name the fields that differ from zero.
    -Wno-missing-field-initializers
    # Release 12 of the compiler is wrong about "text" + std::string.
    $<$<AND:$<COMPILE_LANG_AND_ID:CXX,GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
    -fstack-protector-strong)
target_link_options(tarnlet_flags INTERFACE
    -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed)

if(TARNLET_SANITIZE)
    target_compile_options(tarnlet_flags INTERFACE
        -fsanitize=${TARNLET_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # GCC takes what the sanitizers add for uses of values that were never set.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(tarnlet_flags INTERFACE -fsanitize=${TARNLET_SANITIZE})
else()
    # Needs optimisation, and would hide reads and writes from a sanitizer.
    target_compile_options(tarnlet_flags INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
    # A Python module leaves symbols open that the interpreter has.
    target_link_options(tarnlet_flags INTERFACE
        $<$<NOT:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,MODULE_LIBRARY>>:-Wl,--no-undefined>)
endif()

# Of what only uses the library, the tool and the tests: most of it is headers, and under the sanitizers
# to optimise these and check each pointer in them takes longer than all tests. The options have to
# stand behind those that they take back.
add_library(tarnlet_fewer_checks INTERFACE)
if(TARNLET_SANITIZE)
    target_compile_options(tarnlet_fewer_checks INTERFACE
        -O0 -fno-sanitize=null,vptr,alignment,object-size)
endif()
add_library(tarnlet_user_flags INTERFACE)
target_link_libraries(tarnlet_user_flags INTERFACE tarnlet_flags tarnlet_fewer_checks)

if(TARNLET_COVERAGE)
    target_compile_options(tarnlet_flags INTERFACE --coverage -fprofile-abs-path)
    target_link_options(tarnlet_flags INTERFACE --coverage)
endif()
