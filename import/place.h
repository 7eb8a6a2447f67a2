// Where in a deck something stands, and the one exception that deck readers throw.
#ifndef KVO_IMPORT_PLACE_H
#define KVO_IMPORT_PLACE_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include "text/printable.h"

namespace kvo {

struct Place
{
    std::string file;       // as the user or the including deck wrote it, made usable; empty: no file to name
    std::uint64_t line = 0; // 1-based; 0: the file as a whole

    // "FILE:LINE", "FILE", or nothing.
    std::string text() const { return line == 0 ? file : file + ":" + std::to_string(line); }
};

// A deck that cannot be imported. what() is "FILE:LINE: message", one printable line whatever the deck holds.
class ImportError : public std::runtime_error
{
public:
    ImportError(Place where, const std::string& message)
        : std::runtime_error((where.file.empty() ? "" : printable(where.text()) + ": ") + shown(message)),
          place(std::move(where)), message(shown(message))
    {
    }

    Place place;
    std::string message; // without the place

private:
    // Messages quote decks, whose lines may have megabytes.
    static std::string shown(const std::string& text)
    {
        constexpr std::size_t longest = 4000;
        return printable(text.size() <= longest ? text : text.substr(0, longest) + "...");
    }
};

} // namespace kvo

#endif
