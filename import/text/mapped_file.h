// A whole file as one read-only range of memory. A mark of UTF-8 before a text ("byte order mark") is no part of it.
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
    const char* begin() const { return data + mark; }
    const char* end() const { return data + length; }
    std::size_t size() const { return length - mark; }

private:
    void readAll(int descriptor);
    void passMark();

    std::string name;
    const char* data = nullptr;
    std::size_t length = 0;
    std::size_t mark = 0; // bytes of it
    bool mapped = false;
    std::vector<char> copy; // of what cannot be mapped
};

} // namespace kvo

#endif
