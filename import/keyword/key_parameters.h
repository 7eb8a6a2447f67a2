// The parameters of a deck: "&name" in a field stands for a number that a card *PARAMETER gave to the name.
#ifndef KVO_IMPORT_KEYWORD_KEY_PARAMETERS_H
#define KVO_IMPORT_KEYWORD_KEY_PARAMETERS_H

#include <map>
#include <string>
#include <string_view>

namespace kvo {

class KeyParameters
{
public:
    // Names do not care about case. A name that is known keeps its value unless replace is set; then the result is
    // false.
    bool define(std::string_view name, double value, bool replace);

    // "&name" or "-&name". False if field is no reference or the name is not known.
    bool resolve(std::string_view field, double& value) const;

    // An arithmetic expression of numbers, names (with or without &), + - * / **, parentheses and the usual functions.
    // False if it is none, or names an unknown parameter, or has no finite value.
    bool evaluate(std::string_view expression, double& value) const;

    bool find(std::string_view name, double& value) const;

private:
    std::map<std::string, double> values; // by upper-case name
};

} // namespace kvo

#endif
