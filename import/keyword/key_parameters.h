// The parameters of a deck: "&name" in a field stands for a number that a card *PARAMETER gave to the name.
#ifndef KVO_IMPORT_KEYWORD_KEY_PARAMETERS_H
#define KVO_IMPORT_KEYWORD_KEY_PARAMETERS_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kvo {

class KeyParameters
{
public:
    // Names do not care about case. A name that is known keeps its value unless replace is set; then the result is
    // false.
    bool define(std::string_view name, double value, bool replace);

    // The same for the current file and those that it includes; always replaces.
    void defineLocal(std::string_view name, double value);
    // An included file begins, or ends and takes its local names with it.
    void enterFile() { locals.emplace_back(); }
    void leaveFile() { locals.pop_back(); }

    // "&name" or "-&name". False if field is no reference or the name is not known.
    bool resolve(std::string_view field, double& value) const;

    // An arithmetic expression of numbers, names (with or without &), + - * / **, parentheses and the usual functions.
    // False if it is none, or names an unknown parameter, or has no finite value.
    bool evaluate(std::string_view expression, double& value) const;

    bool find(std::string_view name, double& value) const;

private:
    using Values = std::map<std::string, double>; // by upper-case name

    Values values;
    std::vector<Values> locals = std::vector<Values>(1); // of the open files, innermost last
};

} // namespace kvo

#endif
