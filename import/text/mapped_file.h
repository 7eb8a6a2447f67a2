// A whole file as one read-only range of memory.
#ifndef KVO_IMPORT_MAPPED_FILE_H
#define KVO_IMPORT_MAPPED_FILE_H

#include <cstddef>
#include <string>
#include <vector>

namespace kvo {

class MappedFile
{
public:
    // Maps path; a pipe or device is read to its end instead. Throws ImportError naming the path and the reason.
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const std::string& path() const { return name; }
    const char* begin() const { return data; }
    const char* end() const { return data + length; }
    std::size_t size() const { return length; }

private:
    void readAll(int descriptor);

    std::string name;
    const char* data = nullptr;
    std::size_t length = 0;
    bool mapped = false;
    std::vector<char> copy; // of what cannot be mapped
};

} // namespace kvo

#endif
