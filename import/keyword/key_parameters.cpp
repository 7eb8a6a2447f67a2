// Parameters and their expressions.
#include "key_parameters.h"

#include <cmath>

#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

constexpr int maxDepth = 200; // of parentheses and signs

bool isNameCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

double largest(double a, double b)
{
    return a > b ? a : b;
}

double smallest(double a, double b)
{
    return a < b ? a : b;
}

struct Function
{
    const char* name;
    double (*one)(double);         // of one argument, else null
    double (*two)(double, double); // of two
};

const Function functions[] = {
    {"ABS", std::fabs, nullptr},    {"SQRT", std::sqrt, nullptr},     {"EXP", std::exp, nullptr},
    {"LOG", std::log, nullptr},     {"LOG10", std::log10, nullptr},   {"SIN", std::sin, nullptr},
    {"COS", std::cos, nullptr},     {"TAN", std::tan, nullptr},       {"ASIN", std::asin, nullptr},
    {"ACOS", std::acos, nullptr},   {"ATAN", std::atan, nullptr},     {"SINH", std::sinh, nullptr},
    {"COSH", std::cosh, nullptr},   {"TANH", std::tanh, nullptr},     {"INT", std::trunc, nullptr},
    {"AINT", std::trunc, nullptr},  {"NINT", std::round, nullptr},    {"ANINT", std::round, nullptr},
    {"ATAN2", nullptr, std::atan2}, {"MOD", nullptr, std::fmod},      {"MIN", nullptr, smallest},
    {"MAX", nullptr, largest},      {"SIGN", nullptr, std::copysign},
};

// Recursive descent over one expression. Every step is false once something is wrong.
class Expression
{
public:
    Expression(std::string_view text, const KeyParameters& parameters)
        : p(text.data()), end(text.data() + text.size()), parameters(parameters)
    {
    }

    bool read(double& value) { return sum(value) && atEnd(); }

private:
    bool atEnd()
    {
        skipBlanks();
        return p == end;
    }

    void skipBlanks()
    {
        while (p < end && isBlank(*p)) {
            ++p;
        }
    }

    // Moves over the sign if it is next; the first * of ** is no multiplication.
    bool take(std::string_view sign)
    {
        skipBlanks();
        const std::string_view rest(p, static_cast<std::size_t>(end - p));
        if (rest.substr(0, sign.size()) != sign || (sign == "*" && rest.substr(0, 2) == "**")) {
            return false;
        }
        p += sign.size();
        return true;
    }

    bool sum(double& value)
    {
        if (!product(value)) {
            return false;
        }
        for (;;) {
            const bool plus = take("+");
            if (!plus && !take("-")) {
                return true;
            }
            double term = 0.0;
            if (!product(term)) {
                return false;
            }
            value += plus ? term : -term;
        }
    }

    bool product(double& value)
    {
        if (!signedPower(value)) {
            return false;
        }
        for (;;) {
            const bool times = take("*");
            if (!times && !take("/")) {
                return true;
            }
            double factor = 0.0;
            if (!signedPower(factor)) {
                return false;
            }
            value = times ? value * factor : value / factor;
        }
    }

    bool signedPower(double& value)
    {
        if (++depth > maxDepth) {
            return false;
        }
        const bool minus = take("-");
        if (minus || take("+")) {
            const bool good = signedPower(value);
            value = minus ? -value : value;
            --depth;
            return good;
        }
        bool good = atom(value);
        if (good && take("**")) {
            double exponent = 0.0;
            good = signedPower(exponent);
            value = std::pow(value, exponent);
        }
        --depth;
        return good;
    }

    bool atom(double& value)
    {
        if (take("(")) {
            return sum(value) && take(")");
        }
        const bool reference = take("&");
        skipBlanks();
        if (!reference && scanNumber(value)) {
            return true;
        }
        const char* start = p;
        while (p < end && isNameCharacter(*p)) {
            ++p;
        }
        const std::string_view name(start, static_cast<std::size_t>(p - start));
        return !name.empty() && (take("(") ? call(name, value) : parameters.find(name, value));
    }

    // "1-3" is a subtraction here, not 1e-3.
    bool scanNumber(double& value)
    {
        const char* stop = p;
        while (stop < end && ((*stop >= '0' && *stop <= '9') || *stop == '.')) {
            ++stop;
        }
        const bool exponent = stop > p && stop < end && (*stop == 'e' || *stop == 'E' || *stop == 'd' || *stop == 'D');
        return scanReal(p, exponent ? end : stop, value);
    }

    bool call(std::string_view name, double& value)
    {
        double first = 0.0;
        double second = 0.0;
        if (!sum(first)) {
            return false;
        }
        const bool two = take(",");
        if ((two && !sum(second)) || !take(")")) {
            return false;
        }
        for (const Function& function : functions) {
            if (equalsIgnoringCase(name, function.name) && (two ? function.two != nullptr : function.one != nullptr)) {
                value = two ? function.two(first, second) : function.one(first);
                return true;
            }
        }
        return false;
    }

    const char* p;
    const char* end;
    const KeyParameters& parameters;
    int depth = 0;
};

} // namespace

bool KeyParameters::define(std::string_view name, double value, bool replace)
{
    const auto known = values.emplace(upperCase(trimmed(name)), value);
    if (!known.second && replace) {
        known.first->second = value;
    }
    return known.second || replace;
}

void KeyParameters::defineLocal(std::string_view name, double value)
{
    locals.back()[upperCase(trimmed(name))] = value;
}

bool KeyParameters::find(std::string_view name, double& value) const
{
    const std::string key = upperCase(trimmed(name));
    for (auto scope = locals.rbegin(); scope != locals.rend(); ++scope) {
        const auto known = scope->find(key);
        if (known != scope->end()) {
            value = known->second;
            return true;
        }
    }
    const auto known = values.find(key);
    if (known == values.end()) {
        return false;
    }
    value = known->second;
    return true;
}

bool KeyParameters::resolve(std::string_view field, double& value) const
{
    const bool minus = !field.empty() && field.front() == '-';
    if (minus) {
        field.remove_prefix(1);
    }
    if (field.empty() || field.front() != '&' || !find(field.substr(1), value)) {
        return false;
    }
    value = minus ? -value : value;
    return true;
}

bool KeyParameters::evaluate(std::string_view expression, double& value) const
{
    return Expression(expression, *this).read(value) && std::isfinite(value);
}

} // namespace kvo
