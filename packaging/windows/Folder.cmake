cmake_minimum_required(VERSION 3.25)

# cmake -DFOLDER=… -DFILES=… -DPLUGINS=… -DFROM=… -DLICENSES=… -DSTRIP=… -DOBJDUMP=… -DLIST=… -P Folder.cmake
#
# Makes FOLDER, which runs wherever it lies: FILES (the client and its port), Qt's PLUGINS by their names below one of the
# plug-in folders of FROM, and each DLL that one of them imports, from the folders of FROM. A DLL that is neither there nor
# a part of Windows is an error, so nothing in the folder lacks one. LIST gets the names of the files but quillbox.exe, and
# of the two that the set-up adds.

# Of every Windows from 7 on.
set(windows_dlls advapi32 bcrypt cfgmgr32 comctl32 comdlg32 crypt32 d3d11 dnsapi dwmapi dxgi gdi32 imm32 iphlpapi kernel32 mpr msvcrt netapi32
    ole32 oleaut32 secur32 setupapi shell32 shlwapi user32 userenv uxtheme version winmm winspool.drv ws2_32 wtsapi32)

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})

set(waiting)
function(take file folder)
    get_filename_component(name ${file} NAME)
    file(COPY ${file} DESTINATION ${FOLDER}/${folder} FOLLOW_SYMLINK_CHAIN)
    execute_process(COMMAND ${STRIP} ${FOLDER}/${folder}/${name} COMMAND_ERROR_IS_FATAL ANY)
    list(APPEND waiting ${FOLDER}/${folder}/${name})
    set(waiting ${waiting} PARENT_SCOPE)
endfunction()

# find_in(<out> <name>): its path in the first folder of FROM that has it
function(find_in out name)
    foreach(folder IN LISTS FROM)
        if(EXISTS ${folder}/${name})
            set(${out} ${folder}/${name} PARENT_SCOPE)
            return()
        endif()
    endforeach()
    message(FATAL_ERROR "${name}, which ${ARGV2} needs, is neither a part of Windows nor in: ${FROM}")
endfunction()

foreach(file IN LISTS FILES)
    take(${file} .)
endforeach()
foreach(plugin IN LISTS PLUGINS)
    get_filename_component(folder ${plugin} DIRECTORY)
    find_in(file ${plugin} "the client")
    take(${file} ${folder})
endforeach()

while(waiting)
    list(POP_FRONT waiting file)
    execute_process(COMMAND ${OBJDUMP} -p ${file} OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${headers}")
    foreach(import IN LISTS imports)
        string(REPLACE "DLL Name: " "" name ${import})
        string(TOLOWER ${name} lower)
        string(REGEX REPLACE "\\.dll$" "" lower ${lower})
        if(NOT lower IN_LIST windows_dlls AND NOT EXISTS ${FOLDER}/${name})
            find_in(dll ${name} ${file})
            take(${dll} .)
        endif()
    endforeach()
endwhile()

file(MAKE_DIRECTORY ${FOLDER}/licenses)
foreach(text IN LISTS LICENSES)
    get_filename_component(name ${text} NAME)
    string(REGEX REPLACE "\\.txt$" "" name ${name})
    file(COPY_FILE ${text} ${FOLDER}/licenses/${name}.txt)
endforeach()

file(GLOB_RECURSE names RELATIVE ${FOLDER} ${FOLDER}/*)
list(REMOVE_ITEM names quillbox.exe)
list(APPEND names installed.txt uninstall.exe)
string(REPLACE "/" "\\" names "${names}")
list(JOIN names "\r\n" text)
file(WRITE ${LIST} "${text}\r\n")
