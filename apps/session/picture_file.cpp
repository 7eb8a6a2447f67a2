// Endings of picture formats.
#include "picture_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

namespace kvo {

std::string wrongPictureEnding(const std::string& file)
{
    static const std::set<std::string> others = {
        ".apng", ".avif", ".bmp",  ".eps",  ".exr", ".gif", ".hdr",  ".heic", ".heif", ".ico", ".j2k", ".jfif",
        ".jp2",  ".jpe",  ".jpeg", ".jpg",  ".jxl", ".pbm", ".pcx",  ".pdf",  ".pgm",  ".pnm", ".ppm", ".ps",
        ".psd",  ".qoi",  ".svg",  ".svgz", ".tga", ".tif", ".tiff", ".webp", ".wmf",  ".xbm", ".xpm"};
    std::string ending = std::filesystem::path(file).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(), [](unsigned char c) { return std::tolower(c); });
    return others.count(ending) ? "\"" + file + "\" does not end in .png, and pictures are PNG files" : "";
}

} // namespace kvo
