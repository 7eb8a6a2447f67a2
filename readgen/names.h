// The owned names of the reader classes. Private to readgen/.
#ifndef NAMES_H
#define NAMES_H

#include <cstring>
#include <string>

namespace readgen {

inline const char* copyOf(const char* text)
{
    if (!text) {
        return nullptr;
    }
    const std::size_t size = std::strlen(text) + 1;
    return static_cast<const char*>(std::memcpy(new char[size], text, size));
}

// Puts copies of two names into the fields of an object that owns them. Either may be null or one of the old ones.
template <class Reader> void replaceNames(Reader& reader, const char* dir, const char* file)
{
    const char* dirCopy = copyOf(dir);
    const char* fileCopy = copyOf(file);
    delete[] reader.dirName;
    delete[] reader.modelName;
    reader.dirName = dirCopy;
    reader.modelName = fileCopy;
}

inline std::string folderOf(const char* dirName, const char* fileName)
{
    return std::string(dirName ? dirName : "") + "/" + (fileName ? fileName : "");
}

} // namespace readgen

#endif
