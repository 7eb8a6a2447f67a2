// Binary containers: files that this library does not read itself. It tells what they are; the program kvo-convert,
// which is linked to the libraries of these formats, makes model directories of them.
#ifndef KVO_IMPORT_CONTAINER_H
#define KVO_IMPORT_CONTAINER_H

#include <string>
#include <vector>

namespace kvo {

class MappedFile;

// One row per container format.
struct ContainerFormat
{
    const char* key;      // for command lines: "cgns"
    const char* name;     // "CGNS"
    const char* suffixes; // ".cgns", several separated by blanks
    const char* summary;  // one line for a manual: what is read
};

const std::vector<ContainerFormat>& containerFormats();

// The format of that key, in any case, or null.
const ContainerFormat* findContainerFormat(const std::string& key);

// What a file is that begins as HDF5, netCDF or ADF files do.
struct Container
{
    bool found = false;                      // it is one of these
    std::string storage;                     // "HDF5", "netCDF", "ADF"
    const ContainerFormat* format = nullptr; // what is in it; null: none of the known formats
};

// By content only: the file's signature, then the names in it.
Container detectContainer(const MappedFile& file);

} // namespace kvo

#endif
