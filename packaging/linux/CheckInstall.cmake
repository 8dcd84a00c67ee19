cmake_minimum_required(VERSION 3.25)

# cmake -DBUILD_DIR=… -DSTAGE=… -DDATA_DIR=… -DVERSION=… -DPRINT_USB_IDS=… -P CheckInstall.cmake
#
# Installs the desktop's files into STAGE and looks for them as a desktop does: by the names that they give each other,
# in the folders of the icon theme, and with icons of the size that their folder promises. The udev rule has to be for
# the printers that PRINT_USB_IDS, a program around the client's table, prints.

set(id com.quillbox.Quillbox)
set(sizes 16 22 24 32 48 64 128 256 512)

unset(ENV{DESTDIR}) # a packager's would move the stage
file(REMOVE_RECURSE ${STAGE})
execute_process(
    COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --component desktop --prefix ${STAGE}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
set(data ${STAGE}/${DATA_DIR})

function(read_field out file pattern)
    file(READ ${file} text)
    if(NOT text MATCHES "${pattern}")
        message(SEND_ERROR "${file} has no ${pattern}")
    endif()
    set(${out} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

function(expect what found wanted)
    if(NOT found STREQUAL wanted)
        message(SEND_ERROR "${what} is '${found}', not '${wanted}'")
    endif()
endfunction()

# A PNG file begins with 16 bytes that are always the same and two 32-bit numbers, its width and its height.
function(expect_png_size file size)
    if(NOT EXISTS ${file})
        message(SEND_ERROR "${file} is not installed")
        return()
    endif()
    file(READ ${file} header LIMIT 24 HEX)
    string(SUBSTRING ${header} 0 16 signature)
    string(SUBSTRING ${header} 32 8 width)
    string(SUBSTRING ${header} 40 8 height)
    math(EXPR width "0x${width}")
    math(EXPR height "0x${height}")
    expect("${file}: signature" ${signature} 89504e470d0a1a0a)
    expect("${file}: size" "${width} x ${height}" "${size} x ${size}")
endfunction()

set(desktop_file ${data}/applications/${id}.desktop)
set(metainfo ${data}/metainfo/${id}.metainfo.xml)

read_field(icon ${desktop_file} "\nIcon=([^\n]+)")
foreach(size IN LISTS sizes)
    expect_png_size(${data}/icons/hicolor/${size}x${size}/apps/${icon}.png ${size})
endforeach()
read_field(root ${data}/icons/hicolor/scalable/apps/${icon}.svg "(<svg )")

read_field(program ${desktop_file} "\nExec=([^ \n]+)")
read_field(provided ${metainfo} "<binary>([^<]+)</binary>")
expect("the program that the metainfo provides" "${provided}" "${program}")
read_field(launched ${metainfo} "<launchable type=\"desktop-id\">([^<]+)</launchable>")
expect("the desktop file that the metainfo launches" "${launched}" "${id}.desktop")
read_field(release ${metainfo} "<release version=\"([^\"]+)\"")
expect("the newest release of the metainfo" "${release}" "${VERSION}")

# Each line of the udev rules that is no comment has to be exactly this, so that none gives more access, or none at all.
set(rule [[^SUBSYSTEM=="usb", ENV{DEVTYPE}=="usb_device", ]])
string(APPEND rule [[ATTR{idVendor}=="(....)", ATTR{idProduct}=="(....)", TAG\+="uaccess"$]])

function(read_usb_rules out file)
    if(NOT EXISTS ${file})
        message(SEND_ERROR "${file} is not installed")
        return()
    endif()
    file(STRINGS ${file} lines REGEX "^[^#]")
    set(ids)
    foreach(line IN LISTS lines)
        if(line MATCHES "${rule}")
            list(APPEND ids ${CMAKE_MATCH_1}:${CMAKE_MATCH_2})
        else()
            message(SEND_ERROR "${file}: this is not how a printer is given to the person at the seat: ${line}")
        endif()
    endforeach()
    set(${out} "${ids}" PARENT_SCOPE)
endfunction()

read_usb_rules(ruled ${STAGE}/lib/udev/rules.d/70-quillbox.rules)
execute_process(COMMAND ${PRINT_USB_IDS} OUTPUT_VARIABLE known COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^\n]+" known "${known}")
list(SORT ruled)
list(SORT known)
expect("the list of printers in the udev rule" "${ruled}" "${known}")
