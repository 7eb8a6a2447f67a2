// Parsing colours.
#include "colors.h"

#include <charconv>
#include <map>

#include "program_error.h"

namespace kvo {

Color parseColor(const std::string& text, const std::string& option)
{
    static const std::map<std::string, Color> names = {
        {"black", {0, 0, 0, 255}}, {"white", {255, 255, 255, 255}}, {"grey", {128, 128, 128, 255}}};
    const auto named = names.find(text);
    if (named != names.end()) {
        return named->second;
    }
    unsigned int value = 0;
    const char* end = text.data() + text.size();
    const bool hashed = text.size() == 7 && text[0] == '#';
    if (!hashed || std::from_chars(text.data() + 1, end, value, 16).ptr != end) {
        throw UsageError(option + ": \"" + text + "\" is no color such as #22272e, black, white or grey");
    }
    return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
            static_cast<std::uint8_t>(value), 255};
}

} // namespace kvo
