#pragma once

// The part of libjpeg's interface that JUCE's JPEG format uses, served by
// stb_image and stb_image_write (StbJpeg.cpp) where no libjpeg build exists.
// Images are read and written as 8-bit RGB.

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef TRUE
 #define TRUE 1
#endif
#ifndef FALSE
 #define FALSE 0
#endif

#define JPOOL_PERMANENT 0
#define JPOOL_IMAGE 1

typedef unsigned char boolean;
typedef unsigned int JDIMENSION;
typedef unsigned char JSAMPLE;
typedef JSAMPLE* JSAMPROW;
typedef JSAMPROW* JSAMPARRAY;
typedef unsigned char JOCTET;

typedef enum { JCS_UNKNOWN, JCS_GRAYSCALE, JCS_RGB, JCS_YCbCr, JCS_CMYK, JCS_YCCK } J_COLOR_SPACE;
typedef enum { JDCT_ISLOW, JDCT_IFAST, JDCT_FLOAT } J_DCT_METHOD;

typedef struct jpeg_common_struct* j_common_ptr;
typedef struct jpeg_decompress_struct* j_decompress_ptr;
typedef struct jpeg_compress_struct* j_compress_ptr;

struct jpeg_error_mgr
{
    void (*error_exit) (j_common_ptr);
    void (*emit_message) (j_common_ptr, int);
    void (*output_message) (j_common_ptr);
    void (*format_message) (j_common_ptr, char*);
    void (*reset_error_mgr) (j_common_ptr);
};

// Allocations live until the codec is destroyed, whatever the pool.
struct jpeg_memory_mgr
{
    void* (*alloc_small) (j_common_ptr, int pool, size_t size);
    JSAMPARRAY (*alloc_sarray) (j_common_ptr, int pool, JDIMENSION samplesPerRow, JDIMENSION rows);
};

struct jpeg_source_mgr
{
    const JOCTET* next_input_byte;
    size_t bytes_in_buffer;
    void (*init_source) (j_decompress_ptr);
    boolean (*fill_input_buffer) (j_decompress_ptr);
    void (*skip_input_data) (j_decompress_ptr, long);
    boolean (*resync_to_restart) (j_decompress_ptr, int);
    void (*term_source) (j_decompress_ptr);
};

struct jpeg_destination_mgr
{
    JOCTET* next_output_byte;
    size_t free_in_buffer;
    void (*init_destination) (j_compress_ptr);
    boolean (*empty_output_buffer) (j_compress_ptr);
    void (*term_destination) (j_compress_ptr);
};

#define QUORLANE_JPEG_COMMON_FIELDS \
    struct jpeg_error_mgr* err;     \
    struct jpeg_memory_mgr* mem;    \
    void* client_data;              \
    void* codec

struct jpeg_common_struct
{
    QUORLANE_JPEG_COMMON_FIELDS;
};

struct jpeg_decompress_struct
{
    QUORLANE_JPEG_COMMON_FIELDS;
    struct jpeg_source_mgr* src;
    JDIMENSION output_width, output_height, output_scanline;
    J_COLOR_SPACE out_color_space;
};

struct jpeg_compress_struct
{
    QUORLANE_JPEG_COMMON_FIELDS;
    struct jpeg_destination_mgr* dest;
    JDIMENSION image_width, image_height, next_scanline;
    int input_components;
    J_COLOR_SPACE in_color_space;
    boolean write_JFIF_header, optimize_coding;
    unsigned short X_density, Y_density;
    J_DCT_METHOD dct_method;
};

void jpeg_create_decompress (j_decompress_ptr);
void jpeg_destroy_decompress (j_decompress_ptr);
int jpeg_read_header (j_decompress_ptr, boolean requireImage);
void jpeg_calc_output_dimensions (j_decompress_ptr);
boolean jpeg_start_decompress (j_decompress_ptr);
JDIMENSION jpeg_read_scanlines (j_decompress_ptr, JSAMPARRAY scanlines, JDIMENSION count);
boolean jpeg_finish_decompress (j_decompress_ptr);
boolean jpeg_resync_to_restart (j_decompress_ptr, int desired);

void jpeg_create_compress (j_compress_ptr);
void jpeg_destroy_compress (j_compress_ptr);
void jpeg_set_defaults (j_compress_ptr);
void jpeg_set_quality (j_compress_ptr, int quality, boolean forceBaseline);
void jpeg_start_compress (j_compress_ptr, boolean writeAllTables);
JDIMENSION jpeg_write_scanlines (j_compress_ptr, JSAMPARRAY scanlines, JDIMENSION count);
void jpeg_finish_compress (j_compress_ptr);

#ifdef __cplusplus
}
#endif
