// A whole file as one read-only range of memory. A mark of UTF-8 before a text ("byte order mark") is no part of it.
//
// Who cuts the file off while it is mapped makes the next look at it a SIGBUS. A program that must outlive that, or
// wants to say which file it was, catches the signal; reading every deck into memory instead would cost a copy of it.
#ifndef KVO_IMPORT_MAPPED_FILE_H
#define KVO_IMPORT_MAPPED_FILE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace kvo {

// What may be read.
struct ReadRules
{
    std::string root;            // nothing outside of this folder, links resolved; "": everything
    std::uint64_t mostPiped = 0; // bytes of a pipe or device; 0: 16 GiB, or half of the memory if that is less
};

// Is this a name of what the program was given open: "-" for standard input, /dev/stdin, /dev/fd/N, /proc/self/fd/N?
bool isGivenOpen(const std::string& path);

class MappedFile
{
public:
    // Maps path, which must be a regular file. "-" is standard input; that, /dev/stdin and /dev/fd/N, as a shell writes
    // for <(...), may be pipes: these are read to their end. Throws ImportError naming the path and the reason.
    explicit MappedFile(const std::string& path, const ReadRules& rules = {});
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const std::string& path() const { return name; }
    const ReadRules& rules() const { return limits; }
    const char* begin() const { return data + mark; }
    const char* end() const { return data + length; }
    std::size_t size() const { return length - mark; }

private:
    struct Free
    {
        void operator()(char* bytes) const;
    };

    void map(int descriptor);
    void readAll(int descriptor);
    void grow(std::size_t capacity);
    void passMark();

    std::string name;
    ReadRules limits;
    const char* data = nullptr;
    std::size_t length = 0;
    std::size_t mark = 0; // bytes of it
    bool mapped = false;
    std::unique_ptr<char, Free> copy; // of what cannot be mapped
};

} // namespace kvo

#endif
