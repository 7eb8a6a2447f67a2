// Numbers and text of JSON.
#include "json.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "text/printable.h"
#include "words.h"

namespace kvo {

Json number(float value)
{
    if (!std::isfinite(value)) {
        return nullptr;
    }
    return std::strtod(formatValue(value).c_str(), nullptr);
}

std::string formatJson(const Json& json)
{
    return printableJson(json.dump(2, ' ', false, Json::error_handler_t::replace)) + "\n";
}

} // namespace kvo
