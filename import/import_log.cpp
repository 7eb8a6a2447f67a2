// Warnings, remarks and lists of an import.
#include "import_log.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <ostream>

namespace kvo {

const char* const listKeywordsNotRead = "keywords not read";
const char* const listElementsNotDrawn = "element types not drawn";

namespace {

constexpr std::size_t mostListed = 100;   // notes, and entries of a list
constexpr std::size_t longestText = 1000; // of a warning, in bytes
constexpr std::size_t longestName = 200;

// 1234567 as "1,234,567".
std::string grouped(std::size_t number)
{
    std::string digits = std::to_string(number);
    for (std::size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, ",");
    }
    return digits;
}

// The lines of the first rows, and how many rows there are beside them.
template <class Row, class Format>
void addFirst(std::vector<std::string>& lines, const std::vector<Row>& rows, std::size_t most,
              const std::string& indent, const char* things, Format format)
{
    const std::size_t shown = std::min(most, rows.size());
    std::transform(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(shown), std::back_inserter(lines), format);
    if (shown < rows.size()) {
        lines.push_back(indent + "and " + grouped(rows.size() - shown) + " more " + things);
    }
}

// A line of a deck may have megabytes, and a message may quote it.
std::string clipped(const std::string& text, std::size_t most)
{
    return text.size() <= most ? text : text.substr(0, most) + "...";
}

} // namespace

ImportLog::Warnings& ImportLog::kindOf(const std::string& kind)
{
    const auto found = kindIndex.emplace(kind, kinds.size());
    if (found.second) {
        kinds.push_back({kind, 0, {}});
    }
    return kinds[found.first->second];
}

void ImportLog::warn(const std::string& kind, const Place& place, const std::string& text)
{
    Warnings& warnings = kindOf(kind);
    ++warnings.count;
    if (warnings.lines.size() < maxPerKind) {
        const std::string what = clipped(text, longestText);
        warnings.lines.push_back(printable(place.file.empty() ? what : place.text() + ": " + what));
    }
}

void ImportLog::warnMore(const std::string& kind, std::uint64_t count)
{
    kindOf(kind).count += count;
}

void ImportLog::note(const std::string& text)
{
    remarks.push_back(text);
}

void ImportLog::count(const std::string& list, const std::string& fullName, std::uint64_t count, const Place& place)
{
    const std::string name = clipped(fullName, longestName);
    auto found = entryIndex.find({list, name});
    if (found == entryIndex.end()) {
        auto summary = std::find_if(summaries.begin(), summaries.end(), [&](const List& l) { return l.title == list; });
        if (summary == summaries.end()) {
            summary = summaries.insert(summaries.end(), List{list, {}});
        }
        summary->entries.push_back({name, 0, place.text()});
        const std::size_t listIndex = static_cast<std::size_t>(summary - summaries.begin());
        found = entryIndex.emplace(std::make_pair(list, name), std::make_pair(listIndex, summary->entries.size() - 1))
                    .first;
    }
    summaries[found->second.first].entries[found->second.second].count += count;
}

std::uint64_t ImportLog::warningCount(const std::string& kind) const
{
    const auto found = kindIndex.find(kind);
    return found == kindIndex.end() ? 0 : kinds[found->second].count;
}

std::uint64_t ImportLog::listCount(const std::string& list, const std::string& name) const
{
    const auto found = entryIndex.find({list, name});
    return found == entryIndex.end() ? 0 : summaries[found->second.first].entries[found->second.second].count;
}

std::vector<std::string> ImportLog::lines() const
{
    std::vector<std::string> result;
    for (const Warnings& warnings : kinds) {
        for (const std::string& line : warnings.lines) {
            result.push_back("warning: " + line);
        }
        if (warnings.count > warnings.lines.size()) {
            result.push_back("warning: " + printable(warnings.kind) + ": " + std::to_string(warnings.count) +
                             " in all");
        }
    }
    const std::size_t most = maxPerKind == std::numeric_limits<std::size_t>::max() ? maxPerKind : mostListed;
    addFirst(result, remarks, most, "note: ", "notes",
             [](const std::string& remark) { return "note: " + printable(remark); });
    for (const List& list : summaries) {
        result.push_back(list.title + ":");
        addFirst(result, list.entries, most, "  ", "kinds", [](const Entry& entry) {
            const std::string place = entry.firstPlace.empty() ? "" : "  (first at " + entry.firstPlace + ")";
            return printable("  " + entry.name + "  " + std::to_string(entry.count) + place);
        });
    }
    return result;
}

void ImportLog::print(std::ostream& out) const
{
    for (const std::string& line : lines()) {
        out << line << "\n";
    }
}

} // namespace kvo
