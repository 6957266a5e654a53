#pragma once

// The part of libpng's interface that JUCE's PNG format uses, served by
// stb_image and stb_image_write (StbPng.cpp) where no libpng build exists.
// Images are always read as 8-bit RGBA and written as 8-bit RGB or RGBA.

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#define PNG_LIBPNG_VER_STRING "1.6.39"

#define PNG_COLOR_MASK_ALPHA 4
#define PNG_COLOR_TYPE_GRAY 0
#define PNG_COLOR_TYPE_PALETTE 3
#define PNG_COLOR_TYPE_RGB 2
#define PNG_COLOR_TYPE_RGB_ALPHA 6
#define PNG_COLOR_TYPE_GRAY_ALPHA 4
#define PNG_INFO_tRNS 0x0010U
#define PNG_FILLER_AFTER 1
#define PNG_INTERLACE_NONE 0
#define PNG_COMPRESSION_TYPE_BASE 0
#define PNG_FILTER_TYPE_BASE 0

typedef unsigned char png_byte;
typedef png_byte* png_bytep;
typedef png_byte** png_bytepp;
typedef const char* png_const_charp;
typedef unsigned int png_uint_32;
typedef unsigned short png_uint_16;
typedef size_t png_size_t;

// A reader's or writer's state. error_ptr is the only member callers touch.
typedef struct png_struct_def
{
    void* error_ptr;
    void* codec;
} png_struct;
typedef png_struct* png_structp;
typedef png_struct** png_structpp;

typedef struct png_info_def png_info;
typedef png_info* png_infop;
typedef png_info** png_infopp;

typedef struct png_color_8_struct { png_byte red, green, blue, gray, alpha; } png_color_8;
typedef png_color_8* png_color_8p;
typedef struct png_color_16_struct { png_byte index; png_uint_16 red, green, blue, gray; } png_color_16;
typedef png_color_16* png_color_16p;

typedef void (*png_rw_ptr) (png_structp, png_bytep, png_size_t);
typedef void (*png_flush_ptr) (png_structp);
typedef void (*png_error_ptr) (png_structp, png_const_charp);

png_structp png_create_read_struct (png_const_charp version, void* errorPtr, png_error_ptr error, png_error_ptr warning);
png_structp png_create_write_struct (png_const_charp version, void* errorPtr, png_error_ptr error, png_error_ptr warning);
png_infop png_create_info_struct (png_structp);
void png_destroy_read_struct (png_structpp, png_infopp, png_infopp);
void png_destroy_write_struct (png_structpp, png_infopp);

void png_set_error_fn (png_structp, void* errorPtr, png_error_ptr error, png_error_ptr warning);
void png_set_read_fn (png_structp, void* io, png_rw_ptr read);
void png_set_write_fn (png_structp, void* io, png_rw_ptr write, png_flush_ptr flush);
void* png_get_io_ptr (png_structp);

void png_read_info (png_structp, png_infop);
png_uint_32 png_get_IHDR (png_structp, png_infop, png_uint_32* width, png_uint_32* height, int* bitDepth,
                          int* colourType, int* interlaceType, int* compressionType, int* filterType);
png_uint_32 png_get_valid (png_structp, png_infop, png_uint_32 flag);
png_uint_32 png_get_tRNS (png_structp, png_infop, png_bytep* alpha, int* count, png_color_16p* colour);
void png_set_strip_16 (png_structp);
void png_set_expand (png_structp);
void png_set_gray_to_rgb (png_structp);
void png_set_add_alpha (png_structp, png_uint_32 filler, int flags);
void png_read_image (png_structp, png_bytepp rows);
void png_read_end (png_structp, png_infop);

void png_set_IHDR (png_structp, png_infop, png_uint_32 width, png_uint_32 height, int bitDepth,
                   int colourType, int interlaceType, int compressionType, int filterType);
void png_set_sBIT (png_structp, png_infop, png_color_8p);
void png_set_shift (png_structp, png_color_8p);
void png_set_packing (png_structp);
void png_write_info (png_structp, png_infop);
void png_write_rows (png_structp, png_bytepp rows, png_uint_32 count);
void png_write_end (png_structp, png_infop);

#ifdef __cplusplus
}
#endif
