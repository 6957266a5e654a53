# The image codecs of the Linux build. Included by the top-level CMakeLists.txt.
#
# PNG comes from the system's libpng, which every Linux desktop has under the
# same name. JPEG, which nothing of ours reads but JUCE's image loader can
# reach, runs on stb_image behind libjpeg's own calls, as on Windows: libjpeg's
# library name differs between distributions, and the plug-ins must load on
# all of them.
find_package(PkgConfig REQUIRED)
pkg_check_modules(PNG_CODEC REQUIRED IMPORTED_TARGET libpng zlib)

# A folder that holds only the libjpeg interface: the one beside it also
# carries a png.h, which would hide the system's.
set(QUORLANE_JPEG_INCLUDE ${CMAKE_BINARY_DIR}/stb-jpeg-include)
file(MAKE_DIRECTORY ${QUORLANE_JPEG_INCLUDE})
file(CREATE_LINK ${CMAKE_SOURCE_DIR}/platform/stb-codecs/jpeglib.h ${QUORLANE_JPEG_INCLUDE}/jpeglib.h SYMBOLIC)

add_library(quorlane_image_codecs STATIC
    ${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbJpeg.cpp
    ${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbLibraries.cpp)
target_include_directories(quorlane_image_codecs PUBLIC ${QUORLANE_JPEG_INCLUDE})
# The glue is ours and held to our warnings; stb's own code is not.
set_source_files_properties(${CMAKE_SOURCE_DIR}/platform/stb-codecs/StbJpeg.cpp PROPERTIES COMPILE_OPTIONS "-Wall;-Wextra")
target_link_libraries(quorlane_image_codecs PUBLIC PkgConfig::PNG_CODEC)
# Calls to libjpeg's names stay inside the module that carries them, even in a
# host that has the real libjpeg loaded.
set_target_properties(quorlane_image_codecs PROPERTIES CXX_VISIBILITY_PRESET hidden)
