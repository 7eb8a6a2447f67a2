// PNG files of pictures, by libpng's simplified interface.
#include "picture.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <png.h>
#include <unistd.h>

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

// Empty on success. The file is flushed to the disk's keeping before it may replace an older one.
std::string writeStream(const Picture& picture, std::FILE* file)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGBA;
    std::string problem;
    if (!png_image_write_to_stdio(&image, file, 0, picture.rgba.data(), 0, nullptr)) {
        problem = image.message;
    } else if (std::fflush(file) != 0 || fsync(fileno(file)) != 0) {
        problem = systemError();
    }
    png_image_free(&image);
    return problem;
}

} // namespace

void writePng(const Picture& picture, const std::string& path)
{
    const std::string temporary = path + ".tmp" + std::to_string(getpid());
    std::FILE* file = std::fopen(temporary.c_str(), "wbx");
    if (!file) {
        fail(path, "cannot be written (" + systemError() + ")");
    }
    std::string problem = writeStream(picture, file);
    if (std::fclose(file) != 0 && problem.empty()) {
        problem = systemError();
    }
    if (problem.empty() && std::rename(temporary.c_str(), path.c_str()) != 0) {
        problem = systemError();
    }
    if (!problem.empty()) {
        std::remove(temporary.c_str());
        fail(path, "cannot be written (" + problem + ")");
    }
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
