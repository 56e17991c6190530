# Builds for 64-bit Windows with Debian's MinGW-w64, against the Qt in the folder QT_MINGW_PREFIX.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# The trial compilations of CMake start from this file as well and know nothing but what is named here.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QT_MINGW_PREFIX)
if(NOT QT_MINGW_PREFIX)
    set(QT_MINGW_PREFIX "$ENV{QT_MINGW_PREFIX}")
endif()

# What runs while building, such as moc, is that of the system; what is linked never is.
set(CMAKE_FIND_ROOT_PATH ${QT_MINGW_PREFIX} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(QT_HOST_PATH /usr)
file(GLOB QT_HOST_PATH_CMAKE_DIR /usr/lib/*/cmake/Qt6)
cmake_path(GET QT_HOST_PATH_CMAKE_DIR PARENT_PATH QT_HOST_PATH_CMAKE_DIR)

# Two builds of the same files are the same bytes.
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-Wl,--no-insert-timestamp")
endforeach()
