// The owned names of the reader classes. Private to readgen/.
#ifndef NAMES_H
#define NAMES_H

#include <cstring>
#include <string>

namespace readgen {

// Puts a copy of text (may be null, may be the field itself) into a field that owns its text.
inline void replaceName(const char*& field, const char* text)
{
    char* copy = nullptr;
    if (text) {
        const std::size_t size = std::strlen(text) + 1;
        copy = new char[size];
        std::memcpy(copy, text, size);
    }
    delete[] field;
    field = copy;
}

inline std::string folderOf(const char* dirName, const char* fileName)
{
    return std::string(dirName ? dirName : "") + "/" + (fileName ? fileName : "");
}

} // namespace readgen

#endif
