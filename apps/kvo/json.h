// JSON for programs: keys in the order of writing, numbers as short as they can be.
#ifndef KVO_JSON_H
#define KVO_JSON_H

#include <string>

#include <nlohmann/json.hpp>

namespace kvo {

using Json = nlohmann::ordered_json;

// With as many digits as tell floats apart, not with those of the conversion to double; null for what is no number.
Json number(float value);

// Indented, with an end of line. Names of decks may be in any encoding; what is no UTF-8 is replaced, and what a
// terminal would obey escaped.
std::string formatJson(const Json& json);

} // namespace kvo

#endif
