// PNG files of pictures, by libpng's simplified interface.
#include "picture.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include <png.h>

#include "output_file.h"

namespace kvo {

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& what)
{
    throw HostError(path + ": " + what);
}

std::string systemError()
{
    return std::strerror(errno);
}

} // namespace

std::string encodePng(const Picture& picture)
{
    char* bytes = nullptr;
    std::size_t size = 0;
    std::FILE* memory = open_memstream(&bytes, &size);
    if (!memory) {
        throw std::bad_alloc();
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGBA;
    const bool made = png_image_write_to_stdio(&image, memory, 0, picture.rgba.data(), 0, nullptr) != 0;
    const std::string problem = image.message;
    png_image_free(&image);
    const bool kept = std::fclose(memory) == 0;
    const std::string out = made && kept ? std::string(bytes, size) : std::string();
    std::free(bytes);
    if (!made || !kept) {
        throw HostError("the picture cannot be made a PNG file (" + (made ? systemError() : problem) + ")");
    }
    return out;
}

void writePng(const Picture& picture, const std::string& path)
{
    const OutputFile file(path);
    std::string bytes;
    try {
        bytes = encodePng(picture);
    } catch (const HostError& error) {
        fail(path, error.what());
    }
    file.write(bytes);
}

Picture readPng(const std::string& path)
{
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) {
        fail(path, "cannot be opened (" + systemError() + ")");
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    Picture out;
    if (png_image_begin_read_from_stdio(&image, file)) {
        image.format = PNG_FORMAT_RGBA;
        // The header's size is only a claim until the pixels are there; no buffer for absurd ones.
        if (PNG_IMAGE_SIZE(image) <= (std::size_t(1) << 31)) {
            out = Picture(static_cast<int>(image.width), static_cast<int>(image.height));
            png_image_finish_read(&image, nullptr, out.rgba.data(), 0, nullptr);
        } else {
            std::snprintf(image.message, sizeof image.message, "too large");
            image.warning_or_error = PNG_IMAGE_ERROR;
        }
    }
    std::fclose(file);
    const bool failed = PNG_IMAGE_FAILED(image);
    const std::string problem = image.message;
    png_image_free(&image);
    if (failed) {
        fail(path, "is no readable PNG picture (" + problem + ")");
    }
    return out;
}

} // namespace kvo
