// Where in a deck something stands, and the one exception that deck readers throw.
#ifndef KVO_IMPORT_PLACE_H
#define KVO_IMPORT_PLACE_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace kvo {

struct Place
{
    std::string file;       // as the user or the including deck wrote it, made usable; empty: no file to name
    std::uint64_t line = 0; // 1-based; 0: the file as a whole

    // "FILE:LINE", "FILE", or nothing.
    std::string text() const { return line == 0 ? file : file + ":" + std::to_string(line); }
};

// Messages quote what stands in a deck, which may be anything: control characters, which a terminal would obey, become
// question marks.
inline std::string printable(std::string text)
{
    for (char& c : text) {
        const bool plain = static_cast<unsigned char>(c) >= 32 && c != 127;
        c = plain || c == '\n' || c == '\t' ? c : '?';
    }
    return text;
}

// A deck that cannot be imported. what() is "FILE:LINE: message".
class ImportError : public std::runtime_error
{
public:
    ImportError(Place where, const std::string& message)
        : std::runtime_error(printable(where.file.empty() ? message : where.text() + ": " + message)),
          place(std::move(where)), message(printable(message))
    {
    }

    Place place;
    std::string message; // without the place
};

} // namespace kvo

#endif
