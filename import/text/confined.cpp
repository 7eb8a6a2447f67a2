// Resolving paths of which the end may be missing.
#include "confined.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace kvo {

std::string realPlace(const std::string& path)
{
    std::error_code error;
    const fs::path full = fs::canonical(path, error);
    if (!error) {
        return full.string();
    }
    if (fs::is_symlink(fs::symlink_status(path, error))) {
        return "";
    }
    fs::path absolute = fs::absolute(path, error);
    if (!absolute.has_filename()) { // "folder/"
        absolute = absolute.parent_path();
    }
    const fs::path name = absolute.filename();
    if (error || name == "." || name == ".." || absolute == absolute.root_path()) {
        return "";
    }
    const std::string parent = realPlace(absolute.parent_path().string());
    return parent.empty() ? "" : (fs::path(parent) / name).string();
}

bool liesWithin(const std::string& path, const std::string& folder)
{
    if (folder.empty()) {
        return true;
    }
    const fs::path place = realPlace(path), root = realPlace(folder);
    if (place.empty() || root.empty()) {
        return false;
    }
    return std::mismatch(root.begin(), root.end(), place.begin(), place.end()).first == root.end();
}

} // namespace kvo
