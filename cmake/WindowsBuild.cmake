# The Windows x64 build, cross-compiled with MinGW-w64 (see
# mingw-w64-x86_64.cmake). Included by the top-level CMakeLists.txt.

# JUCE would build its LV2 helper as a Windows program and run it on the build
# machine: Windows hosts get VST 2.4, VST3 and the standalone application.
set(QUORLANE_FORMATS VST VST3 Standalone)

# Every program and plug-in carries its own C++ runtime, libgcc, winpthread and
# zlib, so nothing but system DLLs has to sit beside it on a bare Windows
# (and symbols are stripped: the zip stays small).
add_link_options(-static -s)

# Nor of libpng or libjpeg: JUCE's PNG and JPEG formats run on stb_image and
# stb_image_write instead, behind the two libraries' own interfaces.
find_library(QUORLANE_MINGW_ZLIB NAMES libz.a REQUIRED)
set(QUORLANE_STB_INCLUDE ${CMAKE_BINARY_DIR}/stb-include)
file(MAKE_DIRECTORY ${QUORLANE_STB_INCLUDE})
file(CREATE_LINK /usr/include/stb ${QUORLANE_STB_INCLUDE}/stb SYMBOLIC)
add_library(quorlane_image_codecs STATIC
    ${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbPng.cpp
    ${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbJpeg.cpp
    ${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbLibraries.cpp)
target_include_directories(quorlane_image_codecs
    PUBLIC ${CMAKE_SOURCE_DIR}/platform/stb-codecs
    PRIVATE ${QUORLANE_STB_INCLUDE})
# stb keeps its own warnings.
set_source_files_properties(${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbPng.cpp
    ${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbJpeg.cpp PROPERTIES COMPILE_OPTIONS "-Wall;-Wextra")
target_link_libraries(quorlane_image_codecs PUBLIC ${QUORLANE_MINGW_ZLIB})
