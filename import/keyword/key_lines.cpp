// Lines of a deck and the state that goes with each of its files.
#include "key_lines.h"

#include "text/fields.h"

namespace kvo {

KeyLines::KeyLines(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress)
    : deck(std::move(file), std::move(progress)), log(log)
{
    sources.emplace_back();
}

// Is the next line from another file than the last one? Then its source becomes the current one. An included file is
// open only while its lines come, and a file cannot include itself: so a file that is open below is gone back to, any
// other is the pending one.
bool KeyLines::moveTo(std::uint32_t file, Kind& kind)
{
    if (sources.back().file == file) {
        hasPending = false; // the included file was empty
        return false;
    }
    for (const Source& source : sources) {
        if (source.file == file) {
            sources.pop_back();
            hasPending = false;
            kind = Kind::Closed;
            return true;
        }
    }
    Source source;
    source.file = file;
    source.widths = sources.back().widths;
    source.include = std::move(pending);
    for (int k = 0; k < KeyOffsets::count; ++k) {
        std::int64_t& offset = source.include.offsets.values[k];
        if (__builtin_add_overflow(offset, sources.back().include.offsets.values[k], &offset)) {
            throw ImportError(source.include.place, "the offsets of ids add up to too much");
        }
    }
    hasPending = false;
    pending = {};
    sources.push_back(std::move(source));
    kind = Kind::Opened;
    return true;
}

KeyLines::Kind KeyLines::next(std::string_view& line)
{
    for (;;) {
        if (!hasHeld && !deck.next(held)) {
            if (sources.size() > 1) {
                sources.pop_back();
                return Kind::Closed;
            }
            return Kind::End;
        }
        Kind kind = Kind::Data;
        hasHeld = (deck.fileIndex() != sources.back().file || hasPending) && moveTo(deck.fileIndex(), kind);
        if (hasHeld) {
            return kind;
        }
        line = held;
        const char first = line.empty() ? '\0' : line.front();
        if (first == '$' || sources.back().ended || inEncrypted || first == '-') {
            if (first != '-' || sources.back().ended || skipEncrypted(line)) {
                continue;
            }
        }
        return first == '*' ? Kind::Keyword : Kind::Data;
    }
}

// A block of encrypted cards; nobody but the solver can read it.
bool KeyLines::skipEncrypted(std::string_view line)
{
    if (line.substr(0, 10) == "-----BEGIN") {
        inEncrypted = true;
        log.count(listKeywordsNotRead, "encrypted block", 1, place());
        return true;
    }
    const bool skipped = inEncrypted;
    inEncrypted = inEncrypted && line.substr(0, 8) != "-----END";
    return skipped;
}

void KeyLines::include(const KeyInclude& what)
{
    deck.include(what.name);
    pending = what;
    hasPending = true;
}

std::int64_t KeyLines::shifted(std::int64_t id, KeyOffsets::Of of) const
{
    const std::int64_t offset = sources.back().include.offsets.values[of];
    std::int64_t sum = 0;
    if (__builtin_add_overflow(id, offset, &sum)) {
        throw ImportError(place(),
                          "id " + std::to_string(id) + " with the offset " + std::to_string(offset) + " is too large");
    }
    return id == 0 ? 0 : sum;
}

} // namespace kvo
