# The one place that says how a library, a program and a test of this tree are made. Every library names the
# neighbours that it may use; the same list links it and is what the "include_layers" test checks.

add_library(quillbox_build_flags INTERFACE)
if(MSVC)
    target_compile_options(quillbox_build_flags INTERFACE /W4 /utf-8 $<$<BOOL:${QUILLBOX_WERROR}>:/WX>)
else()
    # Pictures are exact to the bit, so products and sums may not be fused, and 32-bit builds must not
    # compute in the x87's 80-bit registers.
    target_compile_options(quillbox_build_flags INTERFACE
        -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion -ffp-contract=off $<$<BOOL:${QUILLBOX_WERROR}>:-Werror>)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_SYSTEM_PROCESSOR MATCHES "86")
        target_compile_options(quillbox_build_flags INTERFACE -msse2 -mfpmath=sse)
    endif()
    if(QUILLBOX_SANITIZE)
        target_compile_options(quillbox_build_flags INTERFACE
            -fsanitize=${QUILLBOX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(quillbox_build_flags INTERFACE -fsanitize=${QUILLBOX_SANITIZE})
    endif()
endif()
target_compile_definitions(quillbox_build_flags INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_DEPRECATED_WARNINGS QT_MESSAGELOGCONTEXT)
target_include_directories(quillbox_build_flags INTERFACE ${PROJECT_SOURCE_DIR})

# Of every Qt program under the thread sanitizer.
if(QUILLBOX_SANITIZE STREQUAL "thread")
    add_library(quillbox_inline_conversions OBJECT ${PROJECT_SOURCE_DIR}/cmake/inline_conversions.cpp)
    set_target_properties(quillbox_inline_conversions PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
    target_link_libraries(quillbox_inline_conversions PRIVATE Qt5::Core quillbox_build_flags)
endif()

# Turns module names into targets: "globals" is quillbox_globals, "Qt5::Core" stays itself.
function(quillbox_targets out)
    set(targets)
    foreach(use IN LISTS ARGN)
        if(use MATCHES "::")
            list(APPEND targets ${use})
        else()
            list(APPEND targets quillbox::${use})
        endif()
    endforeach()
    set(${out} ${targets} PARENT_SCOPE)
endfunction()

# A library is all of its folder but the sources of programs; a program is its own sources alone.
function(quillbox_record_layer name folder uses headers sources)
    foreach(list IN ITEMS uses headers sources)
        string(REPLACE ";" "," ${list} "${${list}}")
    endforeach()
    set_property(GLOBAL APPEND PROPERTY QUILLBOX_LAYERS "${name}|${folder}|${uses}|${headers}|${sources}")
endfunction()

# quillbox_leave_out(<reason> <modules…>)
# Modules that this build goes without. Tests that use one of them are left out as well, and configuring says so.
function(quillbox_leave_out reason)
    set_property(GLOBAL APPEND PROPERTY QUILLBOX_ABSENT ${ARGN})
    set_property(GLOBAL APPEND PROPERTY QUILLBOX_ABSENT_REASONS "${reason}")
endfunction()

# Sets <out> where one of the modules is left out, and remembers who goes with it.
function(quillbox_goes_without out name)
    get_property(absent GLOBAL PROPERTY QUILLBOX_ABSENT)
    set(${out} FALSE PARENT_SCOPE)
    foreach(use IN LISTS ARGN)
        if(use IN_LIST absent)
            set_property(GLOBAL APPEND PROPERTY QUILLBOX_LEFT_OUT ${name})
            set(${out} TRUE PARENT_SCOPE)
            return()
        endif()
    endforeach()
endfunction()

function(quillbox_tell_left_out)
    get_property(reasons GLOBAL PROPERTY QUILLBOX_ABSENT_REASONS)
    get_property(left_out GLOBAL PROPERTY QUILLBOX_LEFT_OUT)
    if(reasons)
        list(JOIN reasons ", " reasons)
        list(JOIN left_out " " left_out)
        message(STATUS "Left out (${reasons}): ${left_out}")
    endif()
endfunction()

# quillbox_add_library(<name> SOURCES <files…> [USES <modules and imported targets…>])
# The aliases quillbox::<name> make a misspelt neighbour an error of the configure step.
function(quillbox_add_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
    add_library(quillbox_${name} STATIC ${ARG_SOURCES})
    add_library(quillbox::${name} ALIAS quillbox_${name})
    quillbox_targets(targets ${ARG_USES})
    target_link_libraries(quillbox_${name} PUBLIC ${targets} PRIVATE quillbox_build_flags)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    quillbox_record_layer(${name} ${folder} "${ARG_USES}" "" "")
endfunction()

# A contract of headers alone that may be used without the library of its folder.
function(quillbox_add_header_contract name)
    cmake_parse_arguments(ARG "" "" "HEADERS" ${ARGN})
    add_library(quillbox_${name} INTERFACE)
    add_library(quillbox::${name} ALIAS quillbox_${name})
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    list(TRANSFORM ARG_HEADERS PREPEND "${folder}/")
    quillbox_record_layer(${name} "" "" "${ARG_HEADERS}" "")
endfunction()

# quillbox_add_program(<name> SOURCES <files…> USES <modules and imported targets…>)
function(quillbox_add_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    if(NOT folder MATCHES "^(tests|benchmarks)")
        list(TRANSFORM ARG_SOURCES PREPEND "${folder}/" OUTPUT_VARIABLE sources)
        quillbox_record_layer(${name} "" "${ARG_USES}" "" "${sources}")
    endif()
    if(QUILLBOX_SANITIZE STREQUAL "thread" AND ARG_USES MATCHES "Qt5::")
        list(APPEND ARG_SOURCES $<TARGET_OBJECTS:quillbox_inline_conversions>)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    quillbox_targets(targets ${ARG_USES})
    target_link_libraries(${name} PRIVATE ${targets} quillbox_build_flags)
endfunction()

# quillbox_add_test(<name> SOURCES <files…> USES <modules…> LABEL unit|ui|network|usb [TIMEOUT <seconds>] [ON_DISPLAY]
#                   [UNDER <program>] [SCALES <factors…>] [STARTS <programs…>] [DEFINITIONS <macros…>])
# ON_DISPLAY is for tests that need a real X server and a window manager; the others run on the offscreen platform.
# UNDER names a program that starts the test. SCALES runs it once more on each of these denser screens. STARTS names
# programs of this tree that the test starts, SOME_NAME=<program> each: the macro SOME_NAME is then the program's path.
function(quillbox_add_test name)
    cmake_parse_arguments(ARG "ON_DISPLAY" "LABEL;TIMEOUT;UNDER" "SOURCES;USES;SCALES;STARTS;DEFINITIONS" ${ARGN})
    list(TRANSFORM ARG_STARTS REPLACE "^.*=" "" OUTPUT_VARIABLE programs)
    quillbox_goes_without(left_out ${name} ${ARG_USES} ${programs})
    if(left_out)
        return()
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    quillbox_add_program(${name} SOURCES ${ARG_SOURCES} USES ${ARG_USES} Qt5::Test)
    foreach(start IN LISTS ARG_STARTS)
        string(REGEX REPLACE "^(.*)=(.*)$" "\\1=\"$<TARGET_FILE:\\2>\"" macro ${start})
        list(APPEND ARG_DEFINITIONS "${macro}")
    endforeach()
    target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
    if(programs)
        add_dependencies(${name} ${programs})
    endif()
    set(display)
    if(WIN32 AND CMAKE_CROSSCOMPILING)
        set(display ${PROJECT_SOURCE_DIR}/tests/under_wine)
        if(ARG_ON_DISPLAY)
            list(APPEND display --display)
        endif()
    elseif(ARG_ON_DISPLAY)
        set(display ${PROJECT_SOURCE_DIR}/tests/with_display)
    endif()
    add_test(NAME ${name} COMMAND ${display} ${ARG_UNDER} $<TARGET_FILE:${name}>)
    quillbox_test_environment(${name} ${ARG_LABEL})
    set_tests_properties(${name} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
    foreach(factor IN LISTS ARG_SCALES)
        set(scaled ${name}_scale_${factor})
        add_test(NAME ${scaled} COMMAND ${display} $<TARGET_FILE:${name}>)
        quillbox_test_environment(${scaled} ${ARG_LABEL})
        set_tests_properties(${scaled} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
        set_property(TEST ${scaled} APPEND PROPERTY ENVIRONMENT "QT_SCALE_FACTOR=${factor}")
        if(factor MATCHES "\\.")
            set_property(TEST ${scaled} APPEND PROPERTY ENVIRONMENT "QT_SCALE_FACTOR_ROUNDING_POLICY=PassThrough")
        endif()
    endforeach()
endfunction()

# No test opens a window on somebody's desktop or touches a person's settings or drafts.
function(quillbox_test_environment name label)
    set(suppressions ${PROJECT_SOURCE_DIR}/tests/suppressions)
    set(thread_options "suppressions=${suppressions}/tsan.txt:halt_on_error=1")
    if(label MATCHES "^(ui|network)$")
        # Threads, Qt's own of the network among them, post events into the queue of the window's thread, which Qt moves
        # by memmove() under a lock that the sanitizer does not see. What our own code reads and writes is still watched.
        string(APPEND thread_options ":ignore_interceptors_accesses=1")
    endif()
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "\
QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=verify_asan_link_order=0;LC_ALL=C.UTF-8;XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/test_config/${name};\
XDG_DATA_HOME=${CMAKE_BINARY_DIR}/test_data/${name};\
LSAN_OPTIONS=suppressions=${suppressions}/lsan.txt:print_suppressions=0;\
TSAN_OPTIONS=${thread_options};UBSAN_OPTIONS=print_stacktrace=1")
    if(WIN32 AND CMAKE_CROSSCOMPILING)
        list(GET QUILLBOX_WINDOWS_PREFIXES 0 qt)
        set_property(TEST ${name} APPEND PROPERTY ENVIRONMENT "QUILLBOX_WINE=${QUILLBOX_WINE}" "WINEPATH=Z:${qt}/bin")
    endif()
endfunction()

function(quillbox_write_layers)
    get_property(layers GLOBAL PROPERTY QUILLBOX_LAYERS)
    list(JOIN layers "\n" text)
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/layers.txt CONTENT "${text}\n" @ONLY)
endfunction()
