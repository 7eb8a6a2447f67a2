// Signatures of containers, and the names by which their content shows.
#include "container.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "text/fields.h"
#include "text/mapped_file.h"

namespace kvo {

namespace {

bool beginsWith(const MappedFile& file, std::size_t offset, const char* bytes, std::size_t count)
{
    return file.size() >= offset + count && std::memcmp(file.begin() + offset, bytes, count) == 0;
}

// HDF5 may stand behind a block of the user's: at 0, 512, 1024, 2048, ...
bool isHdf5(const MappedFile& file)
{
    const char signature[] = "\x89HDF\r\n\x1a\n";
    for (std::size_t offset = 0; offset < file.size(); offset = offset == 0 ? 512 : 2 * offset) {
        if (beginsWith(file, offset, signature, 8)) {
            return true;
        }
    }
    return false;
}

// The three classic kinds: with offsets of 32 bits, of 64 bits, with 64-bit data.
bool isNetcdf(const MappedFile& file)
{
    return beginsWith(file, 0, "CDF\x01", 4) || beginsWith(file, 0, "CDF\x02", 4) || beginsWith(file, 0, "CDF\x05", 4);
}

bool isAdf(const MappedFile& file)
{
    return beginsWith(file, 4, "ADF Database Version", 20);
}

bool containsName(const MappedFile& file, const std::string& name)
{
    return std::search(file.begin(), file.end(), std::boyer_moore_horspool_searcher(name.begin(), name.end())) !=
           file.end();
}

// Names that every file of a format has. Group and variable names stand in HDF5 and netCDF files as plain text.
struct Mark
{
    const char* name;
    const char* key;
};

const Mark hdf5Marks[] = {
    {"CGNSLibraryVersion", "cgns"}, {"INFOS_GENERALES", "med"}, {"num_el_blk", "exodus"}, {"num_nodes", "exodus"}};
const Mark netcdfMarks[] = {{"num_el_blk", "exodus"}, {"num_nodes", "exodus"}};
const Mark adfMarks[] = {{"CGNSLibraryVersion", "cgns"}};

template <std::size_t count>
Container markedContainer(const MappedFile& file, const char* storage, const Mark (&marks)[count])
{
    Container container;
    container.found = true;
    container.storage = storage;
    for (const Mark& mark : marks) {
        if (containsName(file, mark.name)) {
            container.format = findContainerFormat(mark.key);
            break;
        }
    }
    return container;
}

} // namespace

const std::vector<ContainerFormat>& containerFormats()
{
    static const std::vector<ContainerFormat> formats = {
        {"cgns", "CGNS", ".cgns .hdf", "structured and unstructured zones; one part per section; families"},
        {"exodus", "Exodus II", ".exo .ex2 .e .g .gen", "one part per element block; node, side and element sets"},
        {"med", "MED", ".med .mmed .rmed", "one part per family; groups; meshes of a file side by side"},
    };
    return formats;
}

const ContainerFormat* findContainerFormat(const std::string& key)
{
    for (const ContainerFormat& format : containerFormats()) {
        if (equalsIgnoringCase(key, format.key)) {
            return &format;
        }
    }
    return nullptr;
}

Container detectContainer(const MappedFile& file)
{
    if (isHdf5(file)) {
        return markedContainer(file, "HDF5", hdf5Marks);
    }
    if (isNetcdf(file)) {
        return markedContainer(file, "netCDF", netcdfMarks);
    }
    if (isAdf(file)) {
        return markedContainer(file, "ADF", adfMarks);
    }
    return {};
}

} // namespace kvo
