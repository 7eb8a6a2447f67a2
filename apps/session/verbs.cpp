// Reading and writing the words of each operation.
#include "verbs.h"

#include <algorithm>
#include <iterator>

#include <GL/gl.h>

#include <kvo/view_names.h>

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
    if (!viewOrientation(line.words[1])) {
        line.fail("\"" + line.words[1] + "\" is no view (iso, top, ..., +x, ..., or AZ,EL in degrees)");
    }
    const NamedView* standard = findView(line.words[1]);
    out.code = standard ? standard->type : 0;
    out.view = line.words[1];
}

std::string formatView(const Operation& operation)
{
    return " " + operation.view;
}

// --- Movements of the camera ---

void parseNumbers(const Line& line, std::size_t count, Operation& out)
{
    for (std::size_t k = 0; k < count; ++k) {
        out.values[k] = parseValue(line, line.words[k + 1]);
    }
}

std::string formatNumbers(const Operation& operation, std::size_t count)
{
    std::string out;
    for (std::size_t k = 0; k < count; ++k) {
        out += " " + formatValue(operation.values[k]);
    }
    return out;
}

void parseDrag(const Line& line, Operation& out)
{
    needWords(line, 4, "X0 Y0 X1 Y1");
    parseNumbers(line, 4, out);
}

std::string formatDrag(const Operation& operation)
{
    return formatNumbers(operation, 4);
}

void parseOrbit(const Line& line, Operation& out)
{
    const bool turntable = line.words.size() == 6 && line.words[5] == "turntable";
    if (!turntable) {
        return parseDrag(line, out);
    }
    parseNumbers(line, 4, out);
    out.code = 1;
}

std::string formatOrbit(const Operation& operation)
{
    return formatDrag(operation) + (operation.code ? " turntable" : "");
}

void parseZoom(const Line& line, Operation& out)
{
    out.code = line.words.size() == 4 ? 1 : 0;
    if (!out.code) {
        needWords(line, 1, "FACTOR or FACTOR X Y");
    }
    parseNumbers(line, out.code ? 3 : 1, out);
    if (!(out.values[0] > 0)) {
        line.fail("ZOOM takes a factor above 0");
    }
}

std::string formatZoom(const Operation& operation)
{
    return formatNumbers(operation, operation.code ? 3 : 1);
}

void parseFit(const Line& line, Operation& out)
{
    needWords(line, 1, "visible, all, selection or a list of part ids");
    try {
        out.fit = parseFitTo(line.words[1], line.words[0]);
    } catch (const UsageError& error) {
        line.fail(error.what());
    }
}

std::string formatFit(const Operation& operation)
{
    return " " + formatFitTo(operation.fit);
}

void parsePerspective(const Line& line, Operation& out)
{
    needWords(line, 1, "an opening angle in degrees; 0: parallel");
    parseNumbers(line, 1, out);
    if (out.values[0] != 0 && !(out.values[0] >= 1 && out.values[0] <= 150)) {
        line.fail("PERSPECTIVE takes 0 or 1 to 150 degrees");
    }
}

std::string formatPerspective(const Operation& operation)
{
    return formatNumbers(operation, 1);
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
        {"VIEW", Verb::View, "iso|top|bottom|left|right|front|back|+x|-x|...|AZ,EL", parseView, formatView},
        {"ORBIT", Verb::Orbit, "X0 Y0 X1 Y1 [turntable]", parseOrbit, formatOrbit},
        {"PAN", Verb::Pan, "X0 Y0 X1 Y1", parseDrag, formatDrag},
        {"ZOOM", Verb::Zoom, "FACTOR [X Y]", parseZoom, formatZoom},
        {"BOX_ZOOM", Verb::BoxZoom, "X0 Y0 X1 Y1", parseDrag, formatDrag},
        {"FIT", Verb::Fit, "visible|all|selection|IDS", parseFit, formatFit},
        {"PERSPECTIVE", Verb::Perspective, "DEGREES", parsePerspective, formatPerspective},
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
