# 32-bit Windows from a Debian machine. The libraries lie in the folders that scripts/windows names in
# QUILLBOX_WINDOWS_PREFIXES; moc, uic, rcc and the translation tools are the machine's own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686) # with "86" in it, or pictures would be computed in the x87's registers
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUILLBOX_WINDOWS_PREFIXES)
set(CMAKE_FIND_ROOT_PATH ${QUILLBOX_WINDOWS_PREFIXES} /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ZLIB_USE_STATIC_LIBS ON) # so that the port library of the simulated printer is one file
set(OPENSSL_USE_STATIC_LIBS ON) # as they are made; their own needs, ws2_32 and crypt32, are then linked behind them
