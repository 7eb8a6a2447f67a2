// Reading and writing session files by the tables of operations.
#include "session_file.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "input_file.h"
#include "program_error.h"
#include "transformations.h"
#include "verbs.h"
#include "words.h"

namespace fs = std::filesystem;

namespace kvo {

namespace {

const std::size_t longestSession = std::size_t{64} << 20; // bytes

template <class Matches> const VerbRow* findVerb(Matches matches)
{
    const auto found = std::find_if(verbRows().begin(), verbRows().end(), matches);
    return found == verbRows().end() ? nullptr : &*found;
}

void parseTransformation(const Line& line, Operation& out)
{
    const std::string& name = line.words[0];
    const TransformationName* row = findTransformation(name);
    if (!row) {
        line.fail("\"" + name + "\" is no operation");
    }
    if (line.words.size() - 1 != static_cast<std::size_t>(row->count)) {
        line.fail(name + " takes " + std::to_string(row->count) + (row->count == 1 ? " value, not " : " values, not ") +
                  std::to_string(line.words.size() - 1));
    }
    out.code = row->type;
    for (int k = 0; k < row->count; ++k) {
        out.values[k] = parseValue(line, line.words[static_cast<std::size_t>(k) + 1]);
    }
}

Operation parseOperation(const Line& line)
{
    Operation out;
    out.line = line.number;
    if (const VerbRow* row = findVerb([&](const VerbRow& r) { return line.words[0] == r.name; })) {
        out.verb = row->verb;
        row->parse(line, out);
    } else {
        parseTransformation(line, out);
    }
    return out;
}

// MODEL and SIZE: what the session is for. False for a line that is an operation.
bool parseHead(const Line& line, Session& session)
{
    const std::string& name = line.words[0];
    if (name != "MODEL" && name != "SIZE") {
        return false;
    }
    if (!session.operations.empty()) {
        line.fail(name + " must stand before the first operation");
    }
    if (name == "MODEL" ? !session.model.empty() : session.width != 0) {
        line.fail(name + " stands here for the second time");
    }
    if (line.words.size() != 2 || line.words[1].empty()) {
        line.fail(name + " takes one word");
    }
    if (name == "MODEL") {
        session.model = line.words[1];
    } else if (!parsePictureSize(line.words[1], session.width, session.height)) {
        line.fail("\"" + line.words[1] + "\" is no size such as 1280x800");
    }
    return true;
}

} // namespace

bool operator==(const Operation& a, const Operation& b)
{
    return a.verb == b.verb && a.code == b.code && std::equal(a.values, a.values + 4, b.values) && a.shape == b.shape &&
           a.through == b.through && a.outline == b.outline && a.ids == b.ids && a.file == b.file && a.view == b.view &&
           a.fit.what == b.fit.what && a.fit.parts == b.fit.parts;
}

std::string Session::modelPath() const
{
    return model.empty() ? "" : (fs::path(file).parent_path() / model).string();
}

bool parsePictureSize(const std::string& text, int& width, int& height)
{
    char rest = 0;
    return std::sscanf(text.c_str(), "%5dx%5d%c", &width, &height, &rest) == 2 && width > 0 && height > 0;
}

Session parseSession(std::istream& text, const std::string& file)
{
    Session out;
    out.file = file;
    std::string row;
    for (std::size_t number = 1; std::getline(text, row); ++number) {
        const Line line = splitLine(out.file, number, row);
        if (!line.words.empty() && !parseHead(line, out)) {
            out.operations.push_back(parseOperation(line));
        }
    }
    return out;
}

Session readSession(const std::string& path)
{
    const std::string text = readInputFile(path, "a session file", longestSession);
    if (text.size() > longestSession) {
        throw ProgramError(path, "is longer than any session file (" + std::to_string(longestSession >> 20) + " MiB)");
    }
    std::istringstream lines(text);
    return parseSession(lines, path);
}

std::string formatOperation(const Operation& operation)
{
    if (const VerbRow* row = findVerb([&](const VerbRow& r) { return operation.verb == r.verb; })) {
        return row->name + row->format(operation);
    }
    const TransformationName* named = findTransformation(operation.code);
    if (!named) {
        return "";
    }
    std::string out = named->name;
    for (int k = 0; k < named->count; ++k) {
        out += " " + formatValue(operation.values[k]);
    }
    return out;
}

std::string formatSession(const Session& session)
{
    std::string out;
    if (!session.model.empty()) {
        out += "MODEL " + quoteWord(session.model) + "\n";
    }
    if (session.width != 0) {
        out += "SIZE " + std::to_string(session.width) + "x" + std::to_string(session.height) + "\n";
    }
    for (const Operation& operation : session.operations) {
        out += formatOperation(operation) + "\n";
    }
    return out;
}

std::string describeOperations()
{
    std::string out;
    for (const VerbRow& row : verbRows()) {
        out += std::string("  ") + row.name + " " + row.arguments + "\n";
    }
    return out + describeTransformations();
}

} // namespace kvo
