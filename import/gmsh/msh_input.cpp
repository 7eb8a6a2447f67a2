// Sections of .msh files.
#include "msh_input.h"

#include <algorithm>
#include <cmath>

#include "text/fields.h"

namespace kvo {

namespace {

constexpr std::size_t longestName = 64;

bool isNameCharacter(char c)
{
    return c > ' ' && c < 127;
}

} // namespace

double MshInput::bytesReal()
{
    const double value = bytes<double>();
    if (!std::isfinite(value)) {
        fail("a value that is no number");
    }
    return value;
}

void MshInput::skipValues(std::int64_t integers, std::int64_t reals)
{
    for (; integers > 0; --integers) {
        integer();
    }
    for (; reals > 0; --reals) {
        real();
    }
}

bool MshInput::nextSection(std::string& name)
{
    skipBlanks();
    if (here() == stop()) {
        return false;
    }
    if (*here() != '$') {
        failToken("a section, which begins with \"$\"");
    }
    const char* last = std::find(here(), stop(), '\n');
    const std::string_view text = trimmed({here() + 1, static_cast<std::size_t>(last - here() - 1)});
    if (text.empty() || text.size() > longestName || !std::all_of(text.begin(), text.end(), isNameCharacter)) {
        fail("no name of a section behind \"$\"");
    }
    name = text;
    skipLine();
    return true;
}

void MshInput::expectEnd(const std::string& section)
{
    skipBlanks();
    const std::string wanted = "$End" + section;
    if (bytesLeft() < wanted.size()) {
        fail("the file is cut off: no " + wanted);
    }
    if (!equalsIgnoringCase({here(), wanted.size()}, wanted)) {
        failToken(wanted);
    }
    skipLine();
}

void MshInput::skipSection(const std::string& section)
{
    const std::string wanted = "$End" + section;
    const std::string capitals = upperCase(wanted); // of version 1
    const char* found = std::search(here(), stop(), wanted.begin(), wanted.end());
    found = found == stop() ? std::search(here(), stop(), capitals.begin(), capitals.end()) : found;
    if (found == stop()) {
        fail("the file is cut off: section $" + section + " has no " + wanted);
    }
    goTo(found);
    skipLine();
}

} // namespace kvo
