# cmake -DOBJDUMP=… -DLIBRARY=… -P check_exports.cmake
#
# A library of ports exports io_port_creator and nothing else.
if(LIBRARY MATCHES "\\.dll$")
    set(option -p)
    set(exported "\n[ \t]*\\[ *[0-9]+\\][^\n]* ([A-Za-z_][^ \n]*)")
else()
    set(option -T)
    set(exported "\n[0-9a-f]+ +[gw] [^\n]*[ \t]([^ \t\n]+)")
endif()
execute_process(COMMAND ${OBJDUMP} ${option} ${LIBRARY} OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "^.*\\[Ordinal/Name Pointer\\] Table" "" listing "${listing}")
string(REGEX REPLACE "\n[^\n]*\\*UND\\*[^\n]*" "" listing "${listing}")
string(REGEX MATCHALL "${exported}" lines "${listing}")
list(TRANSFORM lines REPLACE "${exported}" "\\1" OUTPUT_VARIABLE names)
if(NOT names STREQUAL "io_port_creator")
    message(FATAL_ERROR "${LIBRARY} exports: ${names}")
endif()
