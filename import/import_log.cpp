// Warnings, remarks and lists of an import.
#include "import_log.h"

#include <algorithm>
#include <ostream>

namespace kvo {

const char* const listKeywordsNotRead = "keywords not read";
const char* const listElementsNotDrawn = "element types not drawn";

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
        warnings.lines.push_back(printable(place.file.empty() ? text : place.text() + ": " + text));
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

void ImportLog::count(const std::string& list, const std::string& name, std::uint64_t count, const Place& place)
{
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
            result.push_back("warning: " + warnings.kind + ": " + std::to_string(warnings.count) + " in all");
        }
    }
    for (const std::string& remark : remarks) {
        result.push_back("note: " + remark);
    }
    for (const List& list : summaries) {
        result.push_back(list.title + ":");
        for (const Entry& entry : list.entries) {
            const std::string place = entry.firstPlace.empty() ? "" : "  (first at " + entry.firstPlace + ")";
            result.push_back("  " + entry.name + "  " + std::to_string(entry.count) + place);
        }
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
