# cpp-httplib as a distribution builds it, which brings no CMake package: httplib::httplib, Httplib_FOUND.
# Its records depend on what it was built with, so a user of the header has to say the same.

find_path(Httplib_INCLUDE_DIR httplib.h)
find_library(Httplib_LIBRARY NAMES cpp-httplib)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Httplib REQUIRED_VARS Httplib_LIBRARY Httplib_INCLUDE_DIR
    REASON_FAILURE_MESSAGE "It is in the Debian package libcpp-httplib-dev.")

if(Httplib_FOUND AND NOT TARGET httplib::httplib)
    find_package(OpenSSL REQUIRED)
    find_package(ZLIB REQUIRED)
    add_library(httplib::httplib UNKNOWN IMPORTED)
    set_target_properties(httplib::httplib PROPERTIES
        IMPORTED_LOCATION ${Httplib_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${Httplib_INCLUDE_DIR}
        INTERFACE_COMPILE_DEFINITIONS
            "CPPHTTPLIB_OPENSSL_SUPPORT;CPPHTTPLIB_ZLIB_SUPPORT;$<IF:$<BOOL:${WIN32}>,_WIN32_WINNT=0x0A00,CPPHTTPLIB_BROTLI_SUPPORT>"
        INTERFACE_LINK_LIBRARIES
            "OpenSSL::SSL;OpenSSL::Crypto;ZLIB::ZLIB;Threads::Threads;$<$<BOOL:${WIN32}>:ws2_32;crypt32>")
endif()
mark_as_advanced(Httplib_INCLUDE_DIR Httplib_LIBRARY)
