# libusb-1.0, which brings no CMake package of its own: libusb::libusb, Libusb_FOUND.

find_path(Libusb_INCLUDE_DIR libusb.h PATH_SUFFIXES libusb-1.0)
find_library(Libusb_LIBRARY NAMES usb-1.0 libusb-1.0)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Libusb REQUIRED_VARS Libusb_LIBRARY Libusb_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "It is in the Debian package libusb-1.0-0-dev.")

if(Libusb_FOUND AND NOT TARGET libusb::libusb)
    add_library(libusb::libusb UNKNOWN IMPORTED)
    set_target_properties(libusb::libusb PROPERTIES
        IMPORTED_LOCATION ${Libusb_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${Libusb_INCLUDE_DIR})
endif()
mark_as_advanced(Libusb_INCLUDE_DIR Libusb_LIBRARY)
