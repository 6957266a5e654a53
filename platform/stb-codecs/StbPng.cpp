// libpng's reading and writing calls (png.h) on top of stb_image and
// stb_image_write. A reader takes the whole file through the caller's read
// function chunk by chunk, up to IEND, and decodes it at once.

#include "png.h"

#include <stb/stb_image.h>
#include <stb/stb_image_write.h>

#include <cstring>
#include <vector>

struct png_info_def
{
};

namespace
{
    constexpr size_t largestFile = size_t (1) << 28;

    struct Codec
    {
        png_error_ptr error = nullptr;
        png_rw_ptr readOrWrite = nullptr;
        void* io = nullptr;
        bool failed = false;

        std::vector<png_byte> encoded;
        std::vector<png_byte> pixels; // RGBA when reading, rows as given when writing
        png_uint_32 width = 0, height = 0;
        int channels = 0;
        bool hasAlphaChannel = false, hasTransparentPixels = false;
    };

    Codec& codecOf (png_structp png) { return *static_cast<Codec*> (png->codec); }

    // The caller's error function does not return (it jumps back to the
    // caller); without one, every later call does nothing.
    void fail (png_structp png, png_const_charp message)
    {
        auto& codec = codecOf (png);
        codec.failed = true;

        if (codec.error != nullptr)
            codec.error (png, message);
    }

    png_structp create (void* errorPtr, png_error_ptr error)
    {
        auto* png = new png_struct { errorPtr, new Codec() };
        codecOf (png).error = error;
        return png;
    }

    void destroy (png_structpp png, png_infopp info)
    {
        if (png != nullptr && *png != nullptr)
        {
            delete static_cast<Codec*> ((*png)->codec);
            delete *png;
            *png = nullptr;
        }

        if (info != nullptr)
        {
            delete *info;
            *info = nullptr;
        }
    }

    bool readMore (png_structp png, size_t count)
    {
        auto& codec = codecOf (png);
        const auto start = codec.encoded.size();

        if (count > largestFile - start)
            return false;

        codec.encoded.resize (start + count); // zeros where the stream runs short
        codec.readOrWrite (png, codec.encoded.data() + start, count);
        return true;
    }

    bool isChunkType (const png_byte* type)
    {
        for (int i = 0; i < 4; ++i)
            if (! ((type[i] >= 'A' && type[i] <= 'Z') || (type[i] >= 'a' && type[i] <= 'z')))
                return false;

        return true;
    }

    bool readFile (png_structp png)
    {
        static const png_byte signature[] = { 137, 'P', 'N', 'G', 13, 10, 26, 10 };
        auto& codec = codecOf (png);

        if (! readMore (png, 8) || std::memcmp (codec.encoded.data(), signature, 8) != 0)
            return false;

        for (;;)
        {
            const auto header = codec.encoded.size();

            if (! readMore (png, 8))
                return false;

            const auto* bytes = codec.encoded.data() + header;
            const size_t length = (size_t (bytes[0]) << 24) | (size_t (bytes[1]) << 16) | (size_t (bytes[2]) << 8) | bytes[3];

            if (! isChunkType (bytes + 4))
                return false;

            const bool last = std::memcmp (bytes + 4, "IEND", 4) == 0;

            if (length > largestFile || ! readMore (png, length + 4))
                return false;

            if (last)
                return true;
        }
    }

    bool decode (png_structp png)
    {
        auto& codec = codecOf (png);

        if (codec.failed || codec.readOrWrite == nullptr || ! readFile (png))
            return false;

        int width = 0, height = 0, channels = 0;
        auto* rgba = stbi_load_from_memory (codec.encoded.data(), (int) codec.encoded.size(), &width, &height, &channels, 4);
        codec.encoded = {};

        if (rgba == nullptr)
            return false;

        codec.width = (png_uint_32) width;
        codec.height = (png_uint_32) height;
        codec.pixels.assign (rgba, rgba + size_t (width) * size_t (height) * 4);
        stbi_image_free (rgba);

        // A palette or a tRNS chunk can make pixels of a file without an
        // alpha channel transparent; libpng reports that as tRNS.
        codec.hasAlphaChannel = channels == 2 || channels == 4;

        for (size_t i = 3; i < codec.pixels.size() && ! codec.hasAlphaChannel; i += 4)
            codec.hasTransparentPixels = codec.hasTransparentPixels || codec.pixels[i] != 255;

        return true;
    }

    void writeEncoded (void* context, void* data, int size)
    {
        auto* png = static_cast<png_structp> (context);
        codecOf (png).readOrWrite (png, static_cast<png_bytep> (data), (png_size_t) size);
    }
}

extern "C"
{
png_structp png_create_read_struct (png_const_charp, void* errorPtr, png_error_ptr error, png_error_ptr)
{
    return create (errorPtr, error);
}

png_structp png_create_write_struct (png_const_charp, void* errorPtr, png_error_ptr error, png_error_ptr)
{
    return create (errorPtr, error);
}

png_infop png_create_info_struct (png_structp) { return new png_info(); }
void png_destroy_read_struct (png_structpp png, png_infopp info, png_infopp) { destroy (png, info); }
void png_destroy_write_struct (png_structpp png, png_infopp info) { destroy (png, info); }

void png_set_error_fn (png_structp png, void* errorPtr, png_error_ptr error, png_error_ptr)
{
    png->error_ptr = errorPtr;
    codecOf (png).error = error;
}

void png_set_read_fn (png_structp png, void* io, png_rw_ptr read)
{
    codecOf (png).io = io;
    codecOf (png).readOrWrite = read;
}

void png_set_write_fn (png_structp png, void* io, png_rw_ptr write, png_flush_ptr)
{
    codecOf (png).io = io;
    codecOf (png).readOrWrite = write;
}

void* png_get_io_ptr (png_structp png) { return codecOf (png).io; }

void png_read_info (png_structp png, png_infop)
{
    if (! decode (png))
        fail (png, "not a PNG image that can be decoded");
}

png_uint_32 png_get_IHDR (png_structp png, png_infop, png_uint_32* width, png_uint_32* height, int* bitDepth,
                          int* colourType, int* interlaceType, int* compressionType, int* filterType)
{
    const auto& codec = codecOf (png);
    const int values[] = { 8, codec.hasAlphaChannel ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                           PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE };
    int* targets[] = { bitDepth, colourType, interlaceType, compressionType, filterType };

    for (size_t i = 0; i < 5; ++i)
        if (targets[i] != nullptr)
            *targets[i] = values[i];

    *width = codec.width;
    *height = codec.height;
    return codec.failed ? 0 : 1;
}

png_uint_32 png_get_valid (png_structp png, png_infop, png_uint_32 flag)
{
    return codecOf (png).hasTransparentPixels ? (flag & PNG_INFO_tRNS) : 0;
}

png_uint_32 png_get_tRNS (png_structp png, png_infop, png_bytep* alpha, int* count, png_color_16p* colour)
{
    const bool transparent = codecOf (png).hasTransparentPixels;

    if (alpha != nullptr)
        *alpha = nullptr;

    if (colour != nullptr)
        *colour = nullptr;

    if (count != nullptr)
        *count = transparent ? 1 : 0;

    return transparent ? PNG_INFO_tRNS : 0;
}

// Decoded pixels are 8-bit RGBA already.
void png_set_strip_16 (png_structp) {}
void png_set_expand (png_structp) {}
void png_set_gray_to_rgb (png_structp) {}
void png_set_add_alpha (png_structp, png_uint_32, int) {}

void png_read_image (png_structp png, png_bytepp rows)
{
    const auto& codec = codecOf (png);
    const size_t stride = size_t (codec.width) * 4;

    if (codec.failed || codec.pixels.size() != stride * codec.height)
        return fail (png, "no decoded image");

    for (size_t y = 0; y < codec.height; ++y)
        std::memcpy (rows[y], codec.pixels.data() + y * stride, stride);
}

void png_read_end (png_structp, png_infop) {}

void png_set_IHDR (png_structp png, png_infop, png_uint_32 width, png_uint_32 height, int,
                   int colourType, int, int, int)
{
    auto& codec = codecOf (png);
    codec.width = width;
    codec.height = height;
    codec.channels = (colourType & PNG_COLOR_MASK_ALPHA) != 0 ? 4 : 3;
    codec.pixels.clear();
}

void png_set_sBIT (png_structp, png_infop, png_color_8p) {}
void png_set_shift (png_structp, png_color_8p) {}
void png_set_packing (png_structp) {}
void png_write_info (png_structp, png_infop) {}

void png_write_rows (png_structp png, png_bytepp rows, png_uint_32 count)
{
    auto& codec = codecOf (png);
    const size_t stride = size_t (codec.width) * size_t (codec.channels);

    for (png_uint_32 i = 0; i < count; ++i)
        codec.pixels.insert (codec.pixels.end(), rows[i], rows[i] + stride);
}

void png_write_end (png_structp png, png_infop)
{
    auto& codec = codecOf (png);
    const int stride = (int) codec.width * codec.channels;

    if (codec.readOrWrite == nullptr || codec.pixels.size() != size_t (stride) * codec.height
        || stbi_write_png_to_func (writeEncoded, png, (int) codec.width, (int) codec.height, codec.channels,
                                   codec.pixels.data(), stride) == 0)
        fail (png, "cannot encode the image");
}
}
