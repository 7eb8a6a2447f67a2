// Parsing and resolving id lists.
#include "id_list.h"

#include <algorithm>
#include <charconv>

#include "program_error.h"

namespace kvo {

namespace {

bool parseNumber(const char* from, const char* to, unsigned int& out)
{
    const auto result = std::from_chars(from, to, out);
    return result.ec == std::errc() && result.ptr == to;
}

bool parseRange(const char* begin, const char* end, IdPiece& out)
{
    const char* dash = std::find(begin, end, '-');
    out.single = dash == end;
    if (out.single) {
        return parseNumber(begin, end, out.first) && parseNumber(begin, end, out.last);
    }
    return parseNumber(begin, dash, out.first) && parseNumber(dash + 1, end, out.last) && out.first <= out.last;
}

// out comes with the part of the piece before.
bool parsePiece(const std::string& piece, IdScope scope, IdPiece& out)
{
    const char* begin = piece.data();
    const char* end = begin + piece.size();
    const char* colon = std::find(begin, end, ':');
    if (colon == end) {
        return parseRange(begin, end, out);
    }
    out.ofPart = true;
    return scope == IdScope::Parts && parseNumber(begin, colon, out.part) && parseRange(colon + 1, end, out);
}

std::string formatIds(const IdPiece& range)
{
    return std::to_string(range.first) + (range.single ? "" : "-" + std::to_string(range.last));
}

} // namespace

std::vector<IdPiece> parseIdList(const std::string& text, const std::string& option, IdScope scope)
{
    std::vector<IdPiece> out;
    IdPiece range;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t comma = std::min(text.find(',', from), text.size());
        const std::string piece = text.substr(from, comma - from);
        if (!parsePiece(piece, scope, range)) {
            throw UsageError(option + ": \"" + piece + "\" is neither an id nor a range such as 5-9");
        }
        out.push_back(range);
        from = comma + 1;
    }
    return out;
}

std::string formatIdPiece(const IdPiece& range)
{
    return (range.ofPart ? std::to_string(range.part) + ":" : "") + formatIds(range);
}

std::string formatIdList(const std::vector<IdPiece>& ranges)
{
    std::string out;
    const IdPiece* before = nullptr;
    for (const IdPiece& range : ranges) {
        const bool samePart = before && before->ofPart && before->part == range.part;
        out += (before ? "," : "") + (samePart ? formatIds(range) : formatIdPiece(range));
        before = &range;
    }
    return out;
}

std::set<unsigned int> resolveIds(const std::vector<IdPiece>& ranges, const std::set<unsigned int>& known,
                                  const std::string& kind)
{
    std::set<unsigned int> out;
    for (const IdPiece& range : ranges) {
        if (range.single && !known.count(range.first)) {
            throw ProgramError(kind + " " + std::to_string(range.first) + " is not in the model");
        }
        out.insert(known.lower_bound(range.first), known.upper_bound(range.last));
    }
    return out;
}

} // namespace kvo
