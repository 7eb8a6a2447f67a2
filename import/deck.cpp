// The table of formats.
#include "deck.h"

#include <filesystem>
#include <sstream>

#include "abaqus/inp_reader.h"
#include "stl/stl_reader.h"
#include "text/fields.h"
#include "text/mapped_file.h"

namespace kvo {

namespace {

bool hasSuffixOf(const DeckFormat& format, const std::string& path)
{
    const std::string suffix = std::filesystem::path(path).extension().string();
    std::istringstream list(format.suffixes);
    std::string known;
    while (list >> known) {
        if (equalsIgnoringCase(suffix, known)) {
            return true;
        }
    }
    return false;
}

std::string knownFormats()
{
    std::string list;
    for (const DeckFormat& format : deckFormats()) {
        list += std::string(list.empty() ? "" : ", ") + format.name + " (" + format.suffixes + ")";
    }
    return list;
}

} // namespace

const std::vector<DeckFormat>& deckFormats()
{
    static const std::vector<DeckFormat> formats = {
        {"Abaqus/CalculiX", ".inp",
         "shells, solids, beams, trusses, springs, dashpots; sections, sets, instances, includes", looksLikeInp,
         readInp},
        {"STL", ".stl", "triangles, ASCII or binary; one part per solid; equal vertices become one node", looksLikeStl,
         readStl},
    };
    return formats;
}

const DeckFormat* detectDeckFormat(const MappedFile& file)
{
    for (const DeckFormat& format : deckFormats()) {
        if (format.looksLike(file)) {
            return &format;
        }
    }
    for (const DeckFormat& format : deckFormats()) {
        if (hasSuffixOf(format, file.path())) {
            return &format;
        }
    }
    return nullptr;
}

bool hasDeckSuffix(const std::string& path)
{
    for (const DeckFormat& format : deckFormats()) {
        if (hasSuffixOf(format, path)) {
            return true;
        }
    }
    return false;
}

Mesh readDeck(const std::string& path, ImportLog& log, Progress progress)
{
    auto file = std::make_unique<MappedFile>(path);
    if (file->size() == 0) {
        throw ImportError({path, 0}, "the file is empty");
    }
    const DeckFormat* format = detectDeckFormat(*file);
    if (!format) {
        throw ImportError({path, 0}, "no known deck format; known are " + knownFormats());
    }
    Mesh mesh = format->read(std::move(file), log, std::move(progress));
    mesh.formatName = format->name;
    return mesh;
}

} // namespace kvo
