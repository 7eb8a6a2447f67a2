#include "bdf_headings.h"

#include <utility>

#include "text/fields.h"

namespace kvo {

namespace {

using Line = std::pair<std::uint32_t, std::uint32_t>; // file, number

// Where the first element of each part stands.
std::map<std::uint32_t, Line> firstLines(const Mesh& mesh)
{
    std::map<std::uint32_t, Line> first;
    for (const MeshFile& file : mesh.files) {
        for (const ElementBlock& block : file.blocks) {
            std::uint32_t last = noPart;
            for (std::size_t e = 0; e < block.size(); ++e) {
                const std::uint32_t part = block.part[e];
                if (part == noPart || part == last) {
                    continue;
                }
                last = part;
                const Line line = {block.sourceFile, block.line[e]};
                const auto known = first.emplace(part, line).first;
                known->second = std::min(known->second, line);
            }
        }
    }
    return first;
}

} // namespace

std::string headingName(std::string_view comment)
{
    constexpr std::string_view words = " element data for family ";
    const std::size_t at = comment.find(words);
    return at == std::string_view::npos ? std::string() : std::string(trimmed(comment.substr(at + words.size())));
}

void nameByHeadings(const Mesh& mesh, const std::vector<BdfHeading>& headings,
                    std::map<std::int64_t, std::string>& names)
{
    if (headings.empty()) {
        return;
    }
    std::map<Line, std::size_t> positions;
    for (std::size_t k = 0; k < headings.size(); ++k) {
        positions[{headings[k].file, headings[k].line}] = k;
    }
    std::vector<std::uint32_t> parts(headings.size(), noPart); // that begin under each heading
    std::vector<char> several(headings.size(), 0);
    for (const auto& row : firstLines(mesh)) {
        auto heading = positions.upper_bound(row.second);
        if (heading == positions.begin() || (--heading)->first.first != row.second.first) {
            continue;
        }
        several[heading->second] = parts[heading->second] != noPart;
        parts[heading->second] = row.first;
    }
    for (std::size_t k = 0; k < headings.size(); ++k) {
        if (parts[k] != noPart && !several[k] && mesh.parts[parts[k]].propertyId != 0) {
            names.emplace(mesh.parts[parts[k]].propertyId, headings[k].name);
        }
    }
}

} // namespace kvo
