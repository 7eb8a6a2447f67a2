// Parsing and resolving id lists.
#include "id_list.h"

#include <charconv>

#include "program_error.h"

namespace kvo {

namespace {

bool parseNumber(const char* from, const char* to, unsigned int& out)
{
    const auto result = std::from_chars(from, to, out);
    return result.ec == std::errc() && result.ptr == to;
}

bool parsePiece(const std::string& piece, IdRange& out)
{
    const char* begin = piece.data();
    const char* end = begin + piece.size();
    const std::size_t dash = piece.find('-');
    out.single = dash == std::string::npos;
    if (out.single)
        return parseNumber(begin, end, out.first) && parseNumber(begin, end, out.last);
    return parseNumber(begin, begin + dash, out.first) && parseNumber(begin + dash + 1, end, out.last) &&
           out.first <= out.last;
}

} // namespace

std::vector<IdRange> parseIdList(const std::string& text, const std::string& option)
{
    std::vector<IdRange> out;
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t comma = std::min(text.find(',', from), text.size());
        const std::string piece = text.substr(from, comma - from);
        IdRange range;
        if (!parsePiece(piece, range))
            throw UsageError(option + ": \"" + piece + "\" is neither an id nor a range such as 5-9");
        out.push_back(range);
        from = comma + 1;
    }
    return out;
}

std::set<unsigned int> resolveIds(const std::vector<IdRange>& ranges, const std::set<unsigned int>& known,
                                  const std::string& kind)
{
    std::set<unsigned int> out;
    for (const IdRange& range : ranges) {
        if (range.single && !known.count(range.first))
            throw ProgramError(kind + " " + std::to_string(range.first) + " is not in the model");
        out.insert(known.lower_bound(range.first), known.upper_bound(range.last));
    }
    return out;
}

} // namespace kvo
