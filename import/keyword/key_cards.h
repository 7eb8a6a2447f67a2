// What the groups of cards share: the keyword at hand, the deck's lines, the mesh that grows.
#ifndef KVO_IMPORT_KEYWORD_KEY_CARDS_H
#define KVO_IMPORT_KEYWORD_KEY_CARDS_H

#include <string>
#include <string_view>
#include <vector>

#include "import_log.h"
#include "key_fields.h"
#include "key_lines.h"
#include "key_parameters.h"
#include "mesh.h"

namespace kvo {

// A keyword line: "*ELEMENT_SHELL_THICKNESS (comment)", "*NODE +".
struct KeyKeyword
{
    std::string name;                 // "ELEMENT_SHELL_THICKNESS", upper case
    std::string rest;                 // what follows the name, upper case
    std::string base;                 // the row that reads it: "ELEMENT_SHELL"
    std::vector<std::string> options; // the words behind the base that nobody took yet
    KeyWidths widths;
    Place place;

    bool takeOption(std::string_view word);
};

// line begins with the star. fileWidths: of the file, which a suffix + - % of the keyword overrides.
KeyKeyword parseKeyKeyword(std::string_view line, KeyWidths fileWidths, Place place);

// Kinds of warnings.
extern const char* const warnBadField;    // a field that should be a number
extern const char* const warnCutCards;    // a definition that ends too early
extern const char* const warnTooFewNodes; // an element without the nodes it needs
extern const char* const warnMissingSet;

struct KeyContext
{
    KeyLines& lines;
    KeyParameters& parameters;
    ImportLog& log;
    Mesh& mesh;
    MeshRows& rows;
    KeyKeyword keyword; // the current one

    MeshFile& file() { return mesh.files.front(); }
    KeyFields fields(std::string_view line) const { return {line, keyword.widths, parameters}; }

    // For nodes and elements: a field that is no number is the end.
    void refuseBad(const KeyFields& fields) const;
    // For all else: false after a warning.
    bool accept(const KeyFields& fields) const;
};

// A group of keywords that one class reads.
class KeyCards
{
public:
    explicit KeyCards(KeyContext& context) : context(context) {}
    virtual ~KeyCards() = default;
    KeyCards(const KeyCards&) = delete;
    KeyCards& operator=(const KeyCards&) = delete;

    // context.keyword is new; kind is the number that its row of the table has. False if its options are not known:
    // then the keyword is not read.
    virtual bool begin(int kind) = 0;
    virtual void line(std::string_view text) = 0;
    // No more lines. Not called for what begin() refused.
    virtual void end() {}

protected:
    KeyContext& context;
};

} // namespace kvo

#endif
