#include "MailCore/Platform/ImageHeader.h"

#include <csetjmp>
#include <cstdio> // jpeglib.h needs FILE and size_t
#include <cstring>

#include <gif_lib.h>
#include <jpeglib.h>
#include <png.h>

#include <algorithm>
#include <memory>

namespace MailCore {

namespace {

/// What a decoder's read function consumes.
struct Source {
    ByteView left;

    std::size_t read(void* into, std::size_t count) noexcept {
        const std::size_t taken = std::min(count, left.size());
        if (taken > 0) std::memcpy(into, left.data(), taken);
        left = left.subspan(taken);
        return taken;
    }
};

// libpng and libjpeg report errors by a jump. A function that can be jumped back into holds only values
// without destructors, set before setjmp and unchanged after it; whatever they own is released by its caller.

struct PNG {
    explicit PNG(ByteView data) noexcept : source{data} {
        reader = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
        if (reader != nullptr) info = png_create_info_struct(reader);
    }
    PNG(const PNG&) = delete;
    PNG& operator=(const PNG&) = delete;
    ~PNG() { png_destroy_read_struct(&reader, &info, nullptr); }

    bool readHeader() noexcept {
        if (info == nullptr) return false;
        if (setjmp(png_jmpbuf(reader)) != 0) return false;
        png_set_read_fn(reader, this, read);
        // Colour profiles and texts are skipped, not inflated; only the animation control is looked at.
        png_set_keep_unknown_chunks(reader, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_set_keep_unknown_chunks(reader, PNG_HANDLE_CHUNK_ALWAYS, animationControl, 1);
        png_set_chunk_malloc_max(reader, 65'536);
        png_set_read_user_chunk_fn(reader, this, seeChunk);
        png_read_info(reader, info);
        return true;
    }

    [[noreturn]] static void fail(png_structp reader, png_const_charp) { png_longjmp(reader, 1); }
    static void ignore(png_structp, png_const_charp) {}
    static void read(png_structp reader, png_bytep into, std::size_t count) {
        if (static_cast<PNG*>(png_get_io_ptr(reader))->source.read(into, count) != count)
            png_error(reader, "cut off");
    }
    static int seeChunk(png_structp reader, png_unknown_chunkp chunk) {
        auto* self = static_cast<PNG*>(png_get_user_chunk_ptr(reader));
        if (std::memcmp(chunk->name, animationControl, 4) == 0 && chunk->size >= 4)
            self->frames = png_get_uint_32(chunk->data);
        return 1;
    }

    static constexpr png_byte animationControl[5] = {'a', 'c', 'T', 'L', 0};
    Source source;
    png_structp reader = nullptr;
    png_infop info = nullptr;
    std::uint32_t frames = 1; // the animation control says otherwise
};

std::optional<ImageHeader> pngHeader(ByteView data) noexcept {
    PNG png(data);
    if (!png.readHeader()) return std::nullopt;
    return ImageHeader{.width = png_get_image_width(png.reader, png.info),
                       .height = png_get_image_height(png.reader, png.info),
                       .frames = std::min(png.frames, 2U)};
}

struct JPEG {
    JPEG() noexcept {
        decoder.err = jpeg_std_error(&errors);
        errors.error_exit = fail;
        errors.emit_message = [](j_common_ptr, int) {};
        errors.output_message = [](j_common_ptr) {};
        decoder.client_data = this;
    }
    JPEG(const JPEG&) = delete;
    JPEG& operator=(const JPEG&) = delete;
    ~JPEG() { jpeg_destroy_decompress(&decoder); } // does nothing when creating failed

    bool readHeader(ByteView data) noexcept {
        if (setjmp(jump) != 0) return false;
        jpeg_create_decompress(&decoder);
        jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(data.data()), data.size());
        return jpeg_read_header(&decoder, TRUE) == JPEG_HEADER_OK;
    }

    [[noreturn]] static void fail(j_common_ptr decoder) {
        std::longjmp(static_cast<JPEG*>(decoder->client_data)->jump, 1);
    }

    jpeg_decompress_struct decoder{};
    jpeg_error_mgr errors{};
    std::jmp_buf jump{};
};

std::optional<ImageHeader> jpegHeader(ByteView data) noexcept {
    JPEG jpeg;
    if (!jpeg.readHeader(data)) return std::nullopt;
    return ImageHeader{.width = jpeg.decoder.image_width, .height = jpeg.decoder.image_height, .frames = 1};
}

struct GIFRelease {
    void operator()(GifFileType* file) const noexcept { DGifCloseFile(file, nullptr); }
};

/// Moves over the blocks of an extension; false when they are cut off.
bool skipExtension(GifFileType* file) noexcept {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(file, &code, &block) == GIF_ERROR) return false;
    while (block != nullptr) {
        if (DGifGetExtensionNext(file, &block) == GIF_ERROR) return false;
    }
    return true;
}

/// Moves over the compressed pixels of an image; false when they are cut off.
bool skipPixels(GifFileType* file) noexcept {
    int codeSize = 0;
    GifByteType* block = nullptr;
    if (DGifGetCode(file, &codeSize, &block) == GIF_ERROR) return false;
    while (block != nullptr) {
        if (DGifGetCodeNext(file, &block) == GIF_ERROR) return false;
    }
    return true;
}

std::optional<ImageHeader> gifHeader(ByteView data) noexcept {
    Source source{data};
    const auto read = [](GifFileType* file, GifByteType* into, int count) {
        return static_cast<int>(
            static_cast<Source*>(file->UserData)->read(into, static_cast<std::size_t>(std::max(count, 0))));
    };
    const std::unique_ptr<GifFileType, GIFRelease> file(DGifOpen(&source, read, nullptr));
    if (!file) return std::nullopt;
    ImageHeader header{.width = static_cast<std::uint32_t>(std::max(file->SWidth, 0)),
                       .height = static_cast<std::uint32_t>(std::max(file->SHeight, 0)),
                       .frames = 0};
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    while (header.frames < 2 && DGifGetRecordType(file.get(), &record) != GIF_ERROR) {
        if (record == EXTENSION_RECORD_TYPE) {
            if (!skipExtension(file.get())) break;
        } else if (record == IMAGE_DESC_RECORD_TYPE) {
            if (DGifGetImageDesc(file.get()) == GIF_ERROR) break;
            ++header.frames;
            // A frame that reaches beyond the logical screen widens what a viewer draws.
            const GifImageDesc& image = file->Image;
            header.width = std::max(header.width, static_cast<std::uint32_t>(image.Left + image.Width));
            header.height = std::max(header.height, static_cast<std::uint32_t>(image.Top + image.Height));
            if (!skipPixels(file.get())) break;
        } else {
            break;
        }
    }
    if (header.frames == 0) return std::nullopt;
    return header;
}

bool beginsWith(ByteView data, std::string_view signature) noexcept {
    return charsOf(data).starts_with(signature);
}

} // namespace

std::optional<ImageHeader> imageHeader(ByteView data) noexcept {
    if (beginsWith(data, "\x89PNG\r\n\x1A\n")) return pngHeader(data);
    if (beginsWith(data, "\xFF\xD8\xFF")) return jpegHeader(data);
    if (beginsWith(data, "GIF8")) return gifHeader(data);
    return std::nullopt;
}

} // namespace MailCore
