// From a file to its reader.
#include "container_reader.h"

#include <iterator>

#include "place.h"
#include "text/mapped_file.h"

namespace kvo {

namespace {

struct ReaderRow
{
    const char* key;
    Mesh (*read)(const std::string& path, ImportLog& log);
};

const ReaderRow readers[] = {{"cgns", readCgns}, {"exodus", readExodus}, {"med", readMed}};

const ContainerFormat& formatOf(const std::string& path, const MappedFile& file)
{
    const Container container = detectContainer(file);
    if (!container.found) {
        throw ImportError({path, 0}, "is no CGNS, Exodus II or MED file");
    }
    if (!container.format) {
        throw ImportError({path, 0}, "is stored as " + container.storage + ", but is neither CGNS, Exodus II nor MED");
    }
    return *container.format;
}

} // namespace

Mesh readContainer(const std::string& path, const ContainerFormat* format, ImportLog& log)
{
    const MappedFile file(path); // tells a missing file from a damaged one, which not all libraries do
    const ContainerFormat& chosen = format ? *format : formatOf(path, file);
    for (const ReaderRow& row : readers) {
        if (row.key == std::string(chosen.key)) {
            Mesh mesh = row.read(path, log);
            mesh.formatName = chosen.name;
            return mesh;
        }
    }
    throw ImportError({path, 0}, std::string("no reader for ") + chosen.name);
}

} // namespace kvo
