// Line splitting and includes.
#include "deck_lines.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "confined.h"

namespace kvo {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t reportStep = 1 << 20;
constexpr std::size_t longestLine = 16 << 20; // bytes; more is no text
const char* const tooLongLine = "a line of more than 16 MiB: this is no deck of text";
constexpr std::size_t maxIncludeDepth = 100;
constexpr std::size_t maxIncludes = 20000; // files that include each other twice grow without end

bool sameFile(const std::string& a, const std::string& b)
{
    std::error_code ignored;
    return a == b || fs::equivalent(a, b, ignored);
}

// Decks that were written under Windows name files with backslashes.
std::string withSlashes(std::string name)
{
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

// Pipes and devices are no files to include: some never end.
bool isReadableFile(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

} // namespace

DeckLines::DeckLines(const std::string& path, Progress progress)
    : DeckLines(std::make_unique<MappedFile>(path), std::move(progress))
{
}

DeckLines::DeckLines(std::unique_ptr<MappedFile> file, Progress progressCall) : progress(std::move(progressCall))
{
    paths.push_back(file->path());
    fileIndexes.emplace(file->path(), 0);
    mapped.push_back(std::move(file));
    push(0);
}

void DeckLines::push(std::size_t file)
{
    const MappedFile& text = *mapped[file];
    stack.push_back({file, static_cast<std::uint32_t>(file), text.begin(), text.end(), 0});
    bytesTotal += text.size();
}

bool DeckLines::next(std::string_view& line)
{
    while (!stack.empty() && stack.back().p == stack.back().end) {
        stack.pop_back();
    }
    if (stack.empty()) {
        report();
        return false;
    }
    Source& source = stack.back();
    const std::size_t left = static_cast<std::size_t>(source.end - source.p);
    const void* found = std::memchr(source.p, '\n', std::min(left, longestLine));
    if (!found && left > longestLine) {
        throw ImportError({paths[source.pathIndex], source.line + 1u}, tooLongLine);
    }
    const char* stop = found ? static_cast<const char*>(found) : source.end;
    std::size_t length = static_cast<std::size_t>(stop - source.p);
    bytesDone += length + (found != nullptr);
    if (length > 0 && source.p[length - 1] == '\r') {
        --length;
    }
    line = lastText = std::string_view(source.p, length);
    source.p = found ? stop + 1 : stop;
    lastLine = ++source.line;
    lastFile = source.pathIndex;
    if (bytesDone >= nextReport) {
        report();
    }
    return true;
}

void DeckLines::report()
{
    nextReport = bytesDone + reportStep;
    if (progress) {
        progress(bytesDone, bytesTotal);
    }
}

void DeckLines::putBack()
{
    // A finished file leaves the stack with the next line only, so the last line's file is still the innermost.
    Source& source = stack.back();
    bytesDone -= static_cast<std::uint64_t>(source.p - lastText.data());
    source.p = lastText.data();
    --source.line;
}

std::string DeckLines::find(const std::string& name) const
{
    const fs::path top = fs::path(paths.front()).parent_path();
    std::vector<fs::path> folders = {fs::path(paths[lastFile]).parent_path(), top, fs::path()};
    for (const std::string& folder : searchFolders) {
        folders.push_back(top / folder);
        folders.emplace_back(folder);
    }
    const std::string& root = mapped.front()->rules().root;
    bool outside = false;
    for (const std::string& wanted : {name, withSlashes(name)}) {
        for (const fs::path& folder : folders) {
            const fs::path candidate = folder / wanted;
            if (!liesWithin(candidate.string(), root)) {
                outside = true; // whether there is such a file is not even told
            } else if (isReadableFile(candidate)) {
                return candidate.string();
            }
        }
    }
    if (outside) {
        throw ImportError(place(),
                          "included file \"" + name + "\" is not in " + root + ", to which reading is confined");
    }
    throw ImportError(place(), "included file \"" + name + "\" not found");
}

void DeckLines::include(const std::string& name)
{
    const std::string path = find(name);
    for (const Source& open : stack) {
        if (sameFile(mapped[open.file]->path(), path)) {
            throw ImportError(place(), "\"" + name + "\" is included by itself");
        }
    }
    if (stack.size() >= maxIncludeDepth || ++includes > maxIncludes) {
        throw ImportError(place(), "too many included files, or nested too deeply");
    }
    const auto known = fileIndexes.emplace(path, paths.size());
    if (known.second) {
        mapped.push_back(std::make_unique<MappedFile>(path, mapped.front()->rules()));
        paths.push_back(path);
    }
    push(known.first->second);
}

std::uint64_t DeckLines::bytesLeft() const
{
    return bytesTotal - bytesDone;
}

} // namespace kvo
