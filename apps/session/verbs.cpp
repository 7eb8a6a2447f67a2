// Reading and writing the words of each operation.
#include "verbs.h"

#include <algorithm>
#include <iterator>

#include <GL/gl.h>

#include "caeenv.h"
#include "picture_file.h"
#include "program_error.h"
#include "vocabulary.h"

namespace kvo {

namespace {

// --- Words that stand for numbers ---

void needWords(const Line& line, std::size_t count, const std::string& what)
{
    if (line.words.size() - 1 != count) {
        line.fail(line.words[0] + " takes " + what + ", not " + std::to_string(line.words.size() - 1));
    }
}

int codeOf(const Line& line, const std::string& word, const std::vector<NamedCode>& codes, const std::string& what)
{
    if (const NamedCode* found = findCode(codes, word)) {
        return found->code;
    }
    line.fail("\"" + word + "\" is no " + what);
}

std::string wordOf(int code, const std::vector<NamedCode>& codes)
{
    for (const NamedCode& named : codes) {
        if (named.code == code) {
            return std::string(" ") + named.name;
        }
    }
    return "";
}

const std::vector<NamedCode>& selectionKinds()
{
    static const std::vector<NamedCode> codes = {
        {"parts", PICK_TYPE_PART}, {"elements", PICK_TYPE_ELEMENT}, {"nodes", PICK_TYPE_NODE}};
    return codes;
}

const std::vector<NamedCode>& clearKinds()
{
    static const std::vector<NamedCode> codes = {{"parts", PICK_TYPE_PART},
                                                 {"elements", PICK_TYPE_ELEMENT},
                                                 {"nodes", PICK_TYPE_NODE},
                                                 {"highlight", PART_HIGHLIGHTED}};
    return codes;
}

std::vector<IdPiece> idsOf(const Line& line, const std::string& word, IdScope scope)
{
    try {
        return parseIdList(word, line.words[0], scope);
    } catch (const UsageError& error) {
        line.fail(error.what());
    }
}

// --- One pair for each kind of line ---

void parseView(const Line& line, Operation& out)
{
    needWords(line, 1, "one name");
    const NamedView* view = findView(line.words[1]);
    if (!view) {
        line.fail("\"" + line.words[1] + "\" is no standard view");
    }
    out.code = view->type;
}

std::string formatView(const Operation& operation)
{
    for (const NamedView& view : standardViews()) {
        if (view.type == operation.code) {
            return std::string(" ") + view.name;
        }
    }
    return "";
}

struct ShapeRow
{
    const char* word;
    PickShape shape;
    std::size_t least; // numbers after the word
    std::size_t most;
};

const ShapeRow shapeRows[] = {
    {"at", PickShape::Place, 2, 3}, {"rect", PickShape::Rectangle, 4, 4}, {"polygon", PickShape::Polygon, 6, 20000}};

const char* const pickUsage =
    "PICK takes part, element or node, [through], then at X Y [SIZE], rect X0 Y0 X1 Y1 or polygon X Y X Y X Y ...";

// first: of the numbers among the line's words.
void parsePickNumbers(const Line& line, std::size_t first, Operation& out)
{
    std::vector<float> numbers;
    for (std::size_t k = first; k < line.words.size(); ++k) {
        numbers.push_back(parseValue(line, line.words[k]));
    }
    if (out.shape == PickShape::Polygon) {
        if (numbers.size() % 2 != 0) {
            line.fail("the last corner of the polygon has no y");
        }
        out.outline = numbers;
        return;
    }
    if (out.shape == PickShape::Place) {
        out.values[2] = defaultPickSize;
    }
    std::copy(numbers.begin(), numbers.end(), out.values);
}

void parsePick(const Line& line, Operation& out)
{
    const std::vector<std::string>& words = line.words;
    out.through = words.size() > 2 && words[2] == "through";
    const std::size_t at = out.through ? 3 : 2;
    const std::string word = at < words.size() ? words[at] : "";
    const auto row = std::find_if(std::begin(shapeRows), std::end(shapeRows),
                                  [&word](const ShapeRow& candidate) { return candidate.word == word; });
    if (row == std::end(shapeRows)) {
        line.fail(pickUsage);
    }
    out.code = codeOf(line, words[1], pickTypes(), "kind of pick (part, element, node)");
    out.shape = row->shape;
    const std::size_t numbers = words.size() - at - 1;
    if (numbers < row->least || numbers > row->most) {
        line.fail(pickUsage);
    }
    parsePickNumbers(line, at + 1, out);
}

std::string formatPick(const Operation& operation)
{
    std::string out = wordOf(operation.code, pickTypes()) + (operation.through ? " through" : "");
    std::vector<float> numbers(operation.values, operation.values + 4);
    if (operation.shape == PickShape::Polygon) {
        numbers = operation.outline;
    } else if (operation.shape == PickShape::Place) {
        numbers.resize(operation.values[2] == defaultPickSize ? 2 : 3);
    }
    for (const ShapeRow& row : shapeRows) {
        if (row.shape == operation.shape) {
            out += std::string(" ") + row.word;
        }
    }
    for (float value : numbers) {
        out += " " + formatValue(value);
    }
    return out;
}

void parseSelect(const Line& line, Operation& out)
{
    needWords(line, 2, "parts, elements or nodes and a list of ids");
    out.code = codeOf(line, line.words[1], selectionKinds(), "kind of selection (parts, elements, nodes)");
    out.ids = idsOf(line, line.words[2], out.code == PICK_TYPE_PART ? IdScope::Model : IdScope::Parts);
}

std::string formatSelect(const Operation& operation)
{
    return wordOf(operation.code, selectionKinds()) + " " + formatIdList(operation.ids);
}

void parseClear(const Line& line, Operation& out)
{
    if (line.words.size() == 1) {
        return;
    }
    needWords(line, 1, "one word or none");
    out.code = codeOf(line, line.words[1], clearKinds(), "kind of selection (parts, elements, nodes, highlight)");
}

std::string formatClear(const Operation& operation)
{
    return wordOf(operation.code, clearKinds());
}

void parseParts(const Line& line, Operation& out)
{
    needWords(line, 1, "one list of part ids");
    out.ids = idsOf(line, line.words[1], IdScope::Model);
}

void parsePartsOrAll(const Line& line, Operation& out)
{
    needWords(line, 1, "one list of part ids, or all");
    if (line.words[1] != "all") {
        out.ids = idsOf(line, line.words[1], IdScope::Model);
    }
}

std::string formatParts(const Operation& operation)
{
    return " " + (operation.ids.empty() ? "all" : formatIdList(operation.ids));
}

void parseShade(const Line& line, Operation& out)
{
    needWords(line, 1, "flat or smooth");
    out.code = codeOf(line, line.words[1], shadeModels(), "shading (flat, smooth)");
}

std::string formatShade(const Operation& operation)
{
    return wordOf(operation.code, shadeModels());
}

void parseMode(const Line& line, Operation& out)
{
    needWords(line, 1, "fill, line or point");
    out.code = codeOf(line, line.words[1], polygonModes(), "mode (fill, line, point)");
}

std::string formatMode(const Operation& operation)
{
    return wordOf(operation.code, polygonModes());
}

void parseFile(const Line& line, Operation& out)
{
    needWords(line, 1, "one file name (in double quotes when it has blanks)");
    if (line.words[1].empty()) {
        line.fail(line.words[0] + ": the file name is empty");
    }
    out.file = line.words[1];
}

void parsePicture(const Line& line, Operation& out)
{
    parseFile(line, out);
    const std::string wrong = wrongPictureEnding(out.file);
    if (!wrong.empty()) {
        line.fail("PICTURE: " + wrong);
    }
}

std::string formatFile(const Operation& operation)
{
    return " " + quoteWord(operation.file);
}

} // namespace

const std::vector<VerbRow>& verbRows()
{
    static const std::vector<VerbRow> rows = {
        {"VIEW", Verb::View, "iso|top|bottom|left|right|front|back", parseView, formatView},
        {"PICK", Verb::Pick, "part|element|node [through] at X Y [SIZE] | rect X0 Y0 X1 Y1 | polygon X Y ...",
         parsePick, formatPick},
        {"SELECT", Verb::Select, "parts|elements|nodes IDS", parseSelect, formatSelect},
        {"CLEAR", Verb::Clear, "[parts|elements|nodes|highlight]", parseClear, formatClear},
        {"HIGHLIGHT", Verb::Highlight, "IDS", parseParts, formatParts},
        {"SHOW", Verb::Show, "IDS|all", parsePartsOrAll, formatParts},
        {"HIDE", Verb::Hide, "IDS|all", parsePartsOrAll, formatParts},
        {"SHADE", Verb::Shade, "flat|smooth", parseShade, formatShade},
        {"MODE", Verb::Mode, "fill|line|point", parseMode, formatMode},
        {"SAVE", Verb::Save, "FILE", parseFile, formatFile},
        {"RESTORE", Verb::Restore, "FILE", parseFile, formatFile},
        {"PICTURE", Verb::Picture, "FILE.png", parsePicture, formatFile},
    };
    return rows;
}

} // namespace kvo
