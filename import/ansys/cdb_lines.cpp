// Splitting of commands and formats.
#include "cdb_lines.h"

#include <algorithm>

#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

const std::string& CdbCommand::text(std::size_t k) const
{
    static const std::string nothing;
    return k < fields.size() ? fields[k] : nothing;
}

std::int64_t CdbCommand::integer(std::size_t k) const
{
    std::int64_t value = 0;
    return parseInteger(text(k), value) ? value : 0;
}

double CdbCommand::real(std::size_t k) const
{
    double value = 0.0;
    return parseReal(text(k), value) ? value : 0.0;
}

CdbCommand CdbCommand::without(std::size_t first) const
{
    const auto begin = fields.begin() + static_cast<std::ptrdiff_t>(std::min(first, fields.size()));
    return {name, {begin, fields.end()}, place};
}

bool isCdbText(std::string_view line)
{
    for (const char* name : {"/TITLE", "/COM", "C***"}) {
        if (startsWithIgnoringCase(line, name)) {
            return true;
        }
    }
    return false;
}

CdbCommand parseCdbCommand(std::string_view line, Place place)
{
    CdbCommand command;
    command.place = std::move(place);
    line = line.substr(0, line.find('!'));
    std::size_t comma = std::min(line.find(','), line.size());
    command.name = upperCase(trimmed(line.substr(0, comma)));
    if (command.name.compare(0, 4, "C***") == 0) {
        command.name.resize(4);
    }
    while (comma < line.size()) {
        line.remove_prefix(comma + 1);
        comma = std::min(line.find(','), line.size());
        command.fields.emplace_back(trimmed(line.substr(0, comma)));
    }
    return command;
}

bool isCommand(std::string_view word, std::string_view command)
{
    constexpr std::size_t enough = 4;
    return word == command || (word.size() >= enough && word == command.substr(0, word.size()));
}

namespace {

// What stands behind reals or texts of another width is passed over.
void addRun(CdbFormat& format, bool integer, std::size_t count, std::size_t width)
{
    if (!integer) {
        format.otherWidth = format.others == 0 ? width : format.otherWidth;
        format.others += format.otherWidth == width ? count : 0;
        return;
    }
    if (format.runs.empty() || format.runs.back().width != width) {
        format.runs.push_back({0, width});
    }
    format.runs.back().count += count;
    format.integers += count;
    format.firstWidth = format.runs.front().width;
    format.integersWidth += count * width;
}

} // namespace

bool parseCdbFormat(std::string_view line, CdbFormat& format)
{
    line = trimmed(line);
    if (line.size() < 4 || line.front() != '(' || line.back() != ')') {
        return false;
    }
    format = {};
    const char* p = line.data() + 1;
    const char* end = line.data() + line.size() - 1;
    while (p < end) {
        std::int64_t count = 1;
        std::int64_t width = 0;
        scanInteger(p, end, count);
        const char letter = p < end ? *p++ : '\0';
        if (!scanInteger(p, end, width) || count < 1 || count > 1000 || width < 1 || width > 1000) {
            return false;
        }
        addRun(format, letter == 'i' || letter == 'I', static_cast<std::size_t>(count),
               static_cast<std::size_t>(width));
        p = std::find(p, end, ','); // over decimals and the width of the exponent
        p += p < end;
    }
    return format.integers + format.others > 0;
}

} // namespace kvo
