// Reading lists of numbers.
#include "numbers.h"

#include <sstream>

#include "program_error.h"

namespace kvo {

std::vector<float> parseNumbers(const std::string& text, const std::string& option, std::size_t least, std::size_t most,
                                const std::string& usage)
{
    std::vector<float> out;
    std::istringstream in(text);
    char comma = ',';
    for (float value; comma == ',' && in >> value; comma = '\0', in >> comma) {
        out.push_back(value);
    }
    if (!in.eof() || comma == ',' || out.size() < least || out.size() > most) {
        throw UsageError(option + ": \"" + text + "\" is not " + usage);
    }
    return out;
}

} // namespace kvo
