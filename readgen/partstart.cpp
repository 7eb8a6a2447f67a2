// Reading and writing part_start.
#include "partstart.h"

#include <algorithm>
#include <cstring>

#include "modelfile.h"

namespace readgen {

namespace {

constexpr std::uint64_t extentsSize = 6 * sizeof(float);
constexpr std::uint64_t namesOffset = extentsSize + sizeof(std::uint32_t);
constexpr std::uint32_t longestName = 255;

constexpr const char stampMagic[] = "KVO_STMP"; // eight characters, no terminator
constexpr std::uint64_t magicSize = sizeof stampMagic - 1;

// Takes fixed-size values and texts off a mapped file, never past its end.
class Cursor
{
public:
    explicit Cursor(const MappedFile& file) : file(file) {}
    void take(void* to, std::uint64_t size)
    {
        if (size > rest()) {
            badFile(file.path, offset, "the file ends where " + std::to_string(size) + " bytes are due");
        }
        std::memcpy(to, file.bytes + offset, size);
        offset += size;
    }
    std::uint32_t takeNumber()
    {
        std::uint32_t value;
        take(&value, sizeof value);
        return value;
    }
    std::uint64_t rest() const { return file.size - offset; }
    const char* next() const { return file.bytes + offset; }
    std::uint64_t offset = 0;

private:
    const MappedFile& file;
};

std::string takeName(Cursor& cursor, const std::string& path)
{
    const std::uint64_t start = cursor.offset;
    const std::uint32_t length = cursor.takeNumber();
    if (length == 0 || length > longestName) {
        badFile(path, start, "a file name of " + std::to_string(length) + " bytes; 1 to 255 are allowed");
    }
    std::string name(length, '\0');
    cursor.take(&name[0], length);
    return name;
}

// Older files end before it. Whatever else follows is none of ours.
void takeStamp(Cursor& cursor, const MappedFile& file, PartStart& start)
{
    const std::uint64_t known = std::min(cursor.rest(), magicSize);
    if (known == 0) {
        return;
    }
    if (std::memcmp(cursor.next(), stampMagic, known) != 0) {
        start.whole = false;
        return;
    }
    char magic[magicSize];
    cursor.take(magic, magicSize);
    cursor.take(&start.stamp, sizeof start.stamp);
    const std::uint64_t checked = cursor.offset;
    std::uint64_t sum = 0;
    cursor.take(&sum, sizeof sum);
    if (sum != checksum(file.bytes, checked)) {
        badFile(file.path, checked, "the contents do not match their checksum");
    }
    start.whole = cursor.rest() == 0;
}

template <class Value> void append(std::string& bytes, const Value& value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

} // namespace

PartStart readPartStart(const std::string& path, const std::string& modelName)
{
    const MappedFile file(path);
    Cursor cursor(file);
    PartStart start;
    cursor.take(start.extents, extentsSize);
    const std::uint32_t numFiles = cursor.takeNumber();
    if (numFiles > 1 && numFiles > (file.size - namesOffset) / sizeof(std::uint32_t)) {
        badFile(path, extentsSize, std::to_string(numFiles) + " file names do not fit the file");
    }
    if (numFiles <= 1) {
        start.files.push_back(modelName);
    } else {
        for (std::uint32_t k = 0; k < numFiles; ++k) {
            start.files.push_back(takeName(cursor, path));
        }
    }
    takeStamp(cursor, file, start);
    return start;
}

std::string partStartBytes(const PartStart& start)
{
    std::string bytes;
    append(bytes, start.extents);
    append(bytes, static_cast<std::uint32_t>(start.files.size()));
    if (start.files.size() > 1) {
        for (const std::string& name : start.files) {
            append(bytes, static_cast<std::uint32_t>(name.size()));
            bytes += name;
        }
    }
    bytes.append(stampMagic, magicSize);
    append(bytes, start.stamp);
    append(bytes, checksum(bytes.data(), bytes.size()));
    return bytes;
}

} // namespace readgen
