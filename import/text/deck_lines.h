// The lines of a deck and of the files that it includes, one after the other.
#ifndef KVO_IMPORT_DECK_LINES_H
#define KVO_IMPORT_DECK_LINES_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "mapped_file.h"
#include "place.h"
#include "progress.h"

namespace kvo {

class DeckLines
{
public:
    DeckLines(const std::string& path, Progress progress);
    // The same for a file that is mapped already.
    DeckLines(std::unique_ptr<MappedFile> file, Progress progress);

    // The next line without its end ("\n", "\r\n", or nothing at the end of the file). False behind the last line of
    // the top file. The text stays valid until every DeckLines of the deck is gone.
    bool next(std::string_view& line);

    // Gives the last line back: next() delivers it again. Only after a next() that gave a line, once, and before any
    // include().
    void putBack();

    // Goes on with the named file and comes back afterwards. It is looked for as given if absolute, else next to the
    // including file, next to the top file, and from the working folder; backslashes part folders, too. Throws
    // ImportError for a file that is not there or must not be read (MappedFile::rules of the top file), and for one
    // that includes itself.
    void include(const std::string& name);

    // One more folder to look for included files in, after all others. A relative one is taken from the top file's
    // folder, then from the working folder.
    void addSearchFolder(const std::string& folder) { searchFolders.push_back(folder); }

    // Where the last line stands: an index into files(), and its number.
    std::uint32_t fileIndex() const { return lastFile; }
    std::uint32_t lineNumber() const { return lastLine; }
    Place place() const { return {paths[lastFile], lastLine}; }
    const std::vector<std::string>& files() const { return paths; }

    // Bytes of the files opened so far that have not been read yet.
    std::uint64_t bytesLeft() const;

private:
    struct Source
    {
        std::size_t file = 0; // index into mapped
        std::uint32_t pathIndex = 0;
        const char* p = nullptr;
        const char* end = nullptr;
        std::uint32_t line = 0;
    };

    void push(std::size_t file);
    std::string find(const std::string& name) const;
    void report();

    std::vector<std::unique_ptr<MappedFile>> mapped; // every file, once
    std::vector<std::string> paths;                  // of mapped, same order
    std::map<std::string, std::size_t> fileIndexes;  // of paths
    std::vector<Source> stack;                       // the open ones, innermost last
    std::vector<std::string> searchFolders;
    std::string_view lastText;
    std::uint32_t lastFile = 0;
    std::uint32_t lastLine = 0;
    std::size_t includes = 0;
    Progress progress;
    std::uint64_t bytesDone = 0;
    std::uint64_t bytesTotal = 0;
    std::uint64_t nextReport = 0;
};

} // namespace kvo

#endif
