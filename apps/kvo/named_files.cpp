// Comparing the files of a command line.
#include "named_files.h"

#include <filesystem>

#include "picture_file.h"
#include "program_error.h"

namespace fs = std::filesystem;

namespace kvo {

namespace {

// The same place in the file system, whether there is something or not.
bool samePlace(const std::string& a, const std::string& b)
{
    std::error_code error;
    const fs::file_status status = fs::status(a, error);
    if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)) {
        return false; // a device
    }
    if (fs::equivalent(a, b, error)) {
        return true;
    }
    const fs::path first = fs::weakly_canonical(a, error);
    const fs::path second = fs::weakly_canonical(b, error);
    return !first.empty() && first == second;
}

} // namespace

void checkWrittenFiles(const std::vector<NamedFile>& written, const std::vector<NamedFile>& read)
{
    for (std::size_t k = 0; k < written.size(); ++k) {
        std::vector<NamedFile> others(written.begin(), written.begin() + static_cast<std::ptrdiff_t>(k));
        others.insert(others.end(), read.begin(), read.end());
        for (const NamedFile& other : others) {
            const std::string& file = written[k].file;
            if (!file.empty() && !other.file.empty() && samePlace(file, other.file)) {
                throw UsageError(written[k].option + ": \"" + file + "\" is also " + other.option);
            }
        }
    }
}

void checkPictureName(const std::string& file, const std::string& option)
{
    const std::string wrong = wrongPictureEnding(file);
    if (!wrong.empty()) {
        throw UsageError(option + ": " + wrong);
    }
}

} // namespace kvo
