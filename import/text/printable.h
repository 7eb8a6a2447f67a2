// Text of unknown origin, made fit for a terminal: names and titles of decks and models may hold anything, and a
// terminal obeys control characters.
#ifndef KVO_IMPORT_PRINTABLE_H
#define KVO_IMPORT_PRINTABLE_H

#include <string>
#include <string_view>

namespace kvo {

// For one line or one cell of a table. Well-formed, printable UTF-8 stays as it is; every byte of anything else becomes
// \xNN: control characters (line ends and tabs, too), what changes the direction of writing, what is no UTF-8.
std::string printable(std::string_view text);

// The same for messages of several lines: line ends stay.
std::string printableLines(std::string_view text);

// The same for a finished JSON text, which stays one: \uNNNN in its strings.
std::string printableJson(std::string_view json);

} // namespace kvo

#endif
