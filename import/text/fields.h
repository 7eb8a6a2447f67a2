// Pieces of a text line: trimming, case folding, comma-separated fields.
#ifndef KVO_IMPORT_FIELDS_H
#define KVO_IMPORT_FIELDS_H

#include <cstdint>
#include <string>
#include <string_view>

namespace kvo {

inline bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

std::string_view trimmed(std::string_view text);

// May this be the name of a statement: a letter, then letters, digits and "_-."? What else a line begins with is
// damage.
bool isName(std::string_view word);

// ASCII upper case, whatever the locale.
std::string upperCase(std::string_view text);
bool equalsIgnoringCase(std::string_view a, std::string_view b);
bool startsWithIgnoringCase(std::string_view text, std::string_view prefix);

// What reading one field came to.
enum class Field
{
    Value,
    Blank, // nothing between two commas; the value is left alone
    Bad,   // something else than a number; the cursor stays before it
    End    // the line has no further field
};

// Walks the comma-separated fields of one line. A comma behind the last field does not open a further one.
class CommaFields
{
public:
    explicit CommaFields(std::string_view line) : p(line.data()), end(line.data() + line.size()) {}

    Field nextInteger(std::int64_t& value);
    Field nextReal(double& value);
    // The next field as text, trimmed, without the quotation marks around it; commas between quotation marks belong to
    // it.
    Field nextText(std::string& text);

    // The field that the last call found Bad, for a message.
    std::string badField() const;
    // The line's last field so far was followed by a comma.
    bool endedWithComma() const { return commaSeen; }

private:
    void skipBlanks();
    // After a value: moves over blanks and one comma. False if something else follows.
    bool finishField();

    const char* p;
    const char* end;
    bool commaSeen = false;
};

} // namespace kvo

#endif
