// libjpeg's decompression and compression calls (jpeglib.h) on top of
// stb_image and stb_image_write. The reader decodes everything its source
// holds at jpeg_read_header; the writer collects the rows and encodes them at
// jpeg_finish_compress. Failures go to the caller's error_exit.

#include "jpeglib.h"

#include <stb/stb_image.h>
#include <stb/stb_image_write.h>

#include <cstring>
#include <memory>
#include <vector>

namespace
{
    struct Codec
    {
        jpeg_memory_mgr memory {};
        std::vector<std::unique_ptr<unsigned char[]>> allocations;
        std::vector<JSAMPLE> pixels; // RGB rows, or rows of input_components when writing
        int quality = 75;
        bool failed = false;
    };

    Codec& codecOf (j_common_ptr info) { return *static_cast<Codec*> (info->codec); }
    template <typename Info> Codec& codecOf (Info* info) { return codecOf (reinterpret_cast<j_common_ptr> (info)); }

    void fail (j_common_ptr info)
    {
        codecOf (info).failed = true;

        if (info->err != nullptr && info->err->error_exit != nullptr)
            info->err->error_exit (info);
    }

    template <typename Info> void fail (Info* info) { fail (reinterpret_cast<j_common_ptr> (info)); }

    void* allocate (j_common_ptr info, int, size_t size)
    {
        auto& codec = codecOf (info);
        codec.allocations.push_back (std::make_unique<unsigned char[]> (size));
        return codec.allocations.back().get();
    }

    JSAMPARRAY allocateRows (j_common_ptr info, int pool, JDIMENSION samplesPerRow, JDIMENSION rows)
    {
        auto* array = static_cast<JSAMPARRAY> (allocate (info, pool, rows * sizeof (JSAMPROW)));

        for (JDIMENSION i = 0; i < rows; ++i)
            array[i] = static_cast<JSAMPROW> (allocate (info, pool, samplesPerRow));

        return array;
    }

    void create (j_common_ptr info)
    {
        auto* codec = new Codec();
        codec->memory.alloc_small = allocate;
        codec->memory.alloc_sarray = allocateRows;
        info->codec = codec;
        info->mem = &codec->memory;
    }

    void destroy (j_common_ptr info)
    {
        delete static_cast<Codec*> (info->codec);
        info->codec = nullptr;
        info->mem = nullptr;
    }

    // Hands the encoded bytes to the caller's destination, a buffer at a time.
    void writeEncoded (void* context, void* data, int size)
    {
        auto* info = static_cast<j_compress_ptr> (context);
        auto* bytes = static_cast<const JOCTET*> (data);
        auto* dest = info->dest;

        while (size > 0)
        {
            if (dest->free_in_buffer == 0 && ! dest->empty_output_buffer (info))
                return fail (info);

            const auto count = std::min ((size_t) size, dest->free_in_buffer);
            std::memcpy (dest->next_output_byte, bytes, count);
            dest->next_output_byte += count;
            dest->free_in_buffer -= count;
            bytes += count;
            size -= (int) count;
        }
    }
}

extern "C"
{
void jpeg_create_decompress (j_decompress_ptr info)
{
    create (reinterpret_cast<j_common_ptr> (info));
    info->client_data = nullptr;
    info->src = nullptr;
    info->output_width = info->output_height = info->output_scanline = 0;
    info->out_color_space = JCS_RGB;
}

void jpeg_destroy_decompress (j_decompress_ptr info) { destroy (reinterpret_cast<j_common_ptr> (info)); }

int jpeg_read_header (j_decompress_ptr info, boolean)
{
    auto& codec = codecOf (info);
    auto* src = info->src;
    int width = 0, height = 0, channels = 0;
    stbi_uc* rgb = nullptr;

    if (src != nullptr && src->bytes_in_buffer > 0 && src->bytes_in_buffer <= (size_t) 0x7fffffff)
        rgb = stbi_load_from_memory (src->next_input_byte, (int) src->bytes_in_buffer, &width, &height, &channels, 3);

    if (rgb == nullptr)
    {
        fail (info);
        return 0;
    }

    codec.pixels.assign (rgb, rgb + size_t (width) * size_t (height) * 3);
    stbi_image_free (rgb);
    src->next_input_byte += src->bytes_in_buffer;
    src->bytes_in_buffer = 0;
    info->output_width = (JDIMENSION) width;
    info->output_height = (JDIMENSION) height;
    return 1;
}

void jpeg_calc_output_dimensions (j_decompress_ptr info)
{
    if (codecOf (info).pixels.empty())
        fail (info);
}

boolean jpeg_start_decompress (j_decompress_ptr info)
{
    info->output_scanline = 0;
    return codecOf (info).pixels.empty() ? FALSE : TRUE;
}

JDIMENSION jpeg_read_scanlines (j_decompress_ptr info, JSAMPARRAY scanlines, JDIMENSION count)
{
    const auto& codec = codecOf (info);
    const size_t stride = size_t (info->output_width) * 3;
    JDIMENSION read = 0;

    for (; read < count && info->output_scanline < info->output_height; ++read, ++info->output_scanline)
        std::memcpy (scanlines[read], codec.pixels.data() + stride * info->output_scanline, stride);

    if (read < count)
        fail (info);

    return read;
}

boolean jpeg_finish_decompress (j_decompress_ptr) { return TRUE; }
boolean jpeg_resync_to_restart (j_decompress_ptr, int) { return FALSE; }

void jpeg_create_compress (j_compress_ptr info)
{
    create (reinterpret_cast<j_common_ptr> (info));
    info->next_scanline = 0;
}

void jpeg_destroy_compress (j_compress_ptr info) { destroy (reinterpret_cast<j_common_ptr> (info)); }
void jpeg_set_defaults (j_compress_ptr) {}
void jpeg_set_quality (j_compress_ptr info, int quality, boolean) { codecOf (info).quality = quality; }

void jpeg_start_compress (j_compress_ptr info, boolean)
{
    codecOf (info).pixels.clear();
    info->next_scanline = 0;

    if (info->input_components != 1 && info->input_components != 3)
        return fail (info);

    if (info->dest != nullptr)
        info->dest->init_destination (info);
}

JDIMENSION jpeg_write_scanlines (j_compress_ptr info, JSAMPARRAY scanlines, JDIMENSION count)
{
    auto& codec = codecOf (info);
    const size_t stride = size_t (info->image_width) * size_t (info->input_components);
    JDIMENSION written = 0;

    for (; written < count && info->next_scanline < info->image_height; ++written, ++info->next_scanline)
        codec.pixels.insert (codec.pixels.end(), scanlines[written], scanlines[written] + stride);

    return written;
}

void jpeg_finish_compress (j_compress_ptr info)
{
    auto& codec = codecOf (info);

    if (codec.failed || info->dest == nullptr || info->next_scanline != info->image_height
        || stbi_write_jpg_to_func (writeEncoded, info, (int) info->image_width, (int) info->image_height,
                                   info->input_components, codec.pixels.data(), codec.quality) == 0)
        return fail (info);

    if (! codec.failed)
        info->dest->term_destination (info);
}
}
