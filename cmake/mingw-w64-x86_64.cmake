# Cross-builds for Windows x64 with Debian's MinGW-w64 (POSIX threads, so
# std::thread and std::mutex work as on Linux).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Debian's JUCE package is found on the build machine, with its prebuilt
# juceaide; only JUCE's module sources get cross-compiled.
set(JUCE_DIR /usr/lib/x86_64-linux-gnu/cmake/JUCE-7.0.5 CACHE PATH "")

# Test programs (and test discovery) run under Wine.
find_program(QUORLANE_WINE NAMES wine wine64 NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${QUORLANE_WINE})
