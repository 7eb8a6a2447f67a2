// Which format a file has, and reading it.
#include "deck.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <sstream>
#include <stdexcept>

#include "container.h"
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

template <class Format> void listFormats(const std::vector<Format>& formats, std::string& list)
{
    for (const Format& format : formats) {
        list += std::string(list.empty() ? "" : ", ") + format.name + " (" + format.suffixes + ")";
    }
}

std::string knownFormats()
{
    std::string list;
    listFormats(deckFormats(), list);
    listFormats(containerFormats(), list);
    return list;
}

// Text has no zero bytes, and binary formats have something else among their first ones.
bool beginsWithZeros(const MappedFile& file)
{
    constexpr std::size_t looked = 4096;
    return file.size() >= looked && std::all_of(file.begin(), file.begin() + looked, [](char c) { return c == 0; });
}

std::unique_ptr<MappedFile> openDeck(const std::string& path, const ReadRules& rules)
{
    std::unique_ptr<MappedFile> file;
    try {
        file = std::make_unique<MappedFile>(path, rules);
    } catch (const std::bad_alloc&) { // of a pipe
        throw ImportError({path, 0}, deckNeedsMoreMemory);
    }
    if (file->size() == 0) {
        throw ImportError({path, 0}, "the file is empty");
    }
    if (beginsWithZeros(*file)) {
        throw ImportError({path, 0}, "begins with zero bytes, as no deck does");
    }
    return file;
}

} // namespace

const char* const deckNeedsMoreMemory = "reading it takes more memory than there is";

const DeckFormat* detectDeckFormat(const MappedFile& file)
{
    const DeckFormat* byContent = nullptr;
    const DeckFormat* bySuffix = nullptr;
    for (const DeckFormat& format : deckFormats()) {
        const bool suffix = hasSuffixOf(format, file.path());
        const bool content = format.looksLike(file);
        if (content && suffix) {
            return &format;
        }
        byContent = content && !byContent ? &format : byContent;
        bySuffix = suffix && !bySuffix ? &format : bySuffix;
    }
    return byContent ? byContent : bySuffix;
}

const DeckFormat* findDeckFormat(const std::string& key)
{
    for (const DeckFormat& format : deckFormats()) {
        if (equalsIgnoringCase(key, format.key)) {
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

Mesh readDeck(const std::string& path, ImportLog& log, Progress progress, const DeckFormat* format,
              const ReadRules& rules)
{
    auto file = openDeck(path, rules);
    format = format ? format : detectDeckFormat(*file);
    if (!format) {
        throw ImportError({path, 0}, "no known deck format; known are " + knownFormats());
    }
    try {
        Mesh mesh = format->read(std::move(file), log, std::move(progress));
        mesh.formatName = format->name;
        return mesh;
    } catch (const std::bad_alloc&) {
        throw ImportError({path, 0}, deckNeedsMoreMemory);
    } catch (const std::length_error&) { // more than any memory
        throw ImportError({path, 0}, deckNeedsMoreMemory);
    }
}

} // namespace kvo
