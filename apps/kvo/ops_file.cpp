// Reading operation files by a table of names and value counts.
#include "ops_file.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include <sys/stat.h>

#include "mtrans.h"
#include "names.h"
#include "program_error.h"

namespace kvo {

namespace {

// What the library's y of an operation is, seen from y downwards.
enum class Flip
{
    None,     // y downwards, as given
    Position, // height - y at values 1 and 3
    Step      // -y at value 1
};

struct Row
{
    const char* name;
    int type;
    int count; // values
    Flip flip;
    const char* values; // for manuals
};

const Row rows[] = {
    {"NO_TRANSFORM", NO_TRANSFORM, 0, Flip::None, ""},
    {"RESET_TRANSFORM", RESET_TRANSFORM, 0, Flip::None, ""},
    {"ROTATE_X_CCW", ROTATE_X_CCW, 0, Flip::None, ""},
    {"ROTATE_X_CW", ROTATE_X_CW, 0, Flip::None, ""},
    {"ROTATE_Y_CCW", ROTATE_Y_CCW, 0, Flip::None, ""},
    {"ROTATE_Y_CW", ROTATE_Y_CW, 0, Flip::None, ""},
    {"ROTATE_Z_CCW", ROTATE_Z_CCW, 0, Flip::None, ""},
    {"ROTATE_Z_CW", ROTATE_Z_CW, 0, Flip::None, ""},
    {"TRANS_LEFT", TRANS_LEFT, 0, Flip::None, ""},
    {"TRANS_RIGHT", TRANS_RIGHT, 0, Flip::None, ""},
    {"TRANS_UP", TRANS_UP, 0, Flip::None, ""},
    {"TRANS_DOWN", TRANS_DOWN, 0, Flip::None, ""},
    {"SCALE_INCR", SCALE_INCR, 0, Flip::None, ""},
    {"SCALE_DECR", SCALE_DECR, 0, Flip::None, ""},
    {"GLOBAL_TRANSLATION", GLOBAL_TRANSLATION, 4, Flip::Step, "DX DY WIDTH HEIGHT"},
    {"GLOBAL_SCALE", GLOBAL_SCALE, 1, Flip::None, "STEP"},
    {"GLOBAL_ROTATION", GLOBAL_ROTATION, 4, Flip::None, "X0 Y0 X1 Y1"},
    {"START_RUBBER_BAND", START_RUBBER_BAND, 4, Flip::Position, "X0 Y0 X1 Y1"},
    {"START_POLYLINE", START_POLYLINE, 2, Flip::Position, "X Y"},
    {"END_RUBBER_BAND", END_RUBBER_BAND, 0, Flip::None, ""},
    {"RECT_SCALE", RECT_SCALE, 0, Flip::None, ""},
    {"RECT_PICK", RECT_PICK, 0, Flip::None, ""},
    {"SELECT_PICK", SELECT_PICK, 0, Flip::None, ""},
    {"POLYLINE_PICK", POLYLINE_PICK, 0, Flip::None, ""},
    {"TRANS_MAX", TRANS_MAX, 0, Flip::None, ""},
};

template <class Matches> const Row* findRow(Matches matches)
{
    const auto found = std::find_if(std::begin(rows), std::end(rows), matches);
    return found == std::end(rows) ? nullptr : found;
}

struct Line
{
    const std::string& file;
    std::size_t number;
    std::vector<std::string> words;

    [[noreturn]] void fail(const std::string& what) const { throw ProgramError(file, number, what); }
};

float parseValue(const Line& line, const std::string& word)
{
    char* end = nullptr;
    const float value = std::strtof(word.c_str(), &end);
    if (end == word.c_str() || *end != '\0' || !std::isfinite(value))
        line.fail("\"" + word + "\" is no number");
    return value;
}

Operation parseView(const Line& line)
{
    if (line.words.size() != 2)
        line.fail("VIEW takes one name, not " + std::to_string(line.words.size() - 1));
    const NamedView* view = findView(line.words[1]);
    if (!view)
        line.fail("\"" + line.words[1] + "\" is no standard view");
    Operation out;
    out.view = view->type;
    return out;
}

Operation parseTransformation(const Line& line)
{
    const std::string& name = line.words[0];
    const Row* row = findRow([&](const Row& r) { return name == r.name; });
    if (!row)
        line.fail("\"" + name + "\" is no view operation");
    if (line.words.size() - 1 != static_cast<std::size_t>(row->count))
        line.fail(name + " takes " + std::to_string(row->count) + (row->count == 1 ? " value, not " : " values, not ") +
                  std::to_string(line.words.size() - 1));
    Operation out;
    out.trans = row->type;
    for (int k = 0; k < row->count; ++k)
        out.values[k] = parseValue(line, line.words[k + 1]);
    return out;
}

std::vector<std::string> splitWords(const std::string& text)
{
    std::istringstream in(text.substr(0, text.find('#')));
    std::vector<std::string> words;
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

} // namespace

std::vector<Operation> readOperations(const std::string& path)
{
    struct stat status;
    std::ifstream in(path);
    if (!in || stat(path.c_str(), &status) != 0)
        throw ProgramError(path, std::string("cannot be opened (") + std::strerror(errno) + ")");
    if (S_ISDIR(status.st_mode))
        throw ProgramError(path, "is a directory, not a file of operations");

    std::vector<Operation> out;
    std::string text;
    for (std::size_t number = 1; std::getline(in, text); ++number) {
        const Line line{path, number, splitWords(text)};
        if (line.words.empty())
            continue;
        out.push_back(line.words[0] == "VIEW" ? parseView(line) : parseTransformation(line));
        out.back().line = number;
    }
    if (in.bad())
        throw ProgramError(path, "cannot be read");
    return out;
}

void windowValues(const Operation& operation, int height, float out[4])
{
    std::copy(operation.values, operation.values + 4, out);
    const Row* row = findRow([&](const Row& r) { return operation.trans == r.type; });
    if (!row)
        return;
    if (row->flip == Flip::Step)
        out[1] = -out[1];
    if (row->flip == Flip::Position) {
        out[1] = static_cast<float>(height) - out[1];
        out[3] = static_cast<float>(height) - out[3];
    }
}

std::string describeOperations()
{
    std::string out = "  VIEW iso|top|bottom|left|right|front|back\n";
    for (const Row& row : rows)
        out += std::string("  ") + row.name + (row.count ? " " : "") + row.values + "\n";
    return out;
}

} // namespace kvo
