// The program kvo-convert, which reads the binary containers that kvo does not read itself.
#ifndef KVO_CONVERTER_H
#define KVO_CONVERTER_H

#include <string>

#include "container.h"
#include "deck_import.h"
#include "text/mapped_file.h"

namespace kvo {

// The format of a container that kvo-convert is for: the one of that key, or without a key what the file's content
// says. Null for every other file. Throws ImportError for a container with nothing in it that can be read.
const ContainerFormat* containerOf(const std::string& deck, const std::string& formatKey, const ReadRules& rules);

// Has kvo-convert write the model directory; what it reports goes to the log. Looks for it beside this program, then on
// PATH. Throws ImportError with its message, or one that says what to install.
void convertContainer(const std::string& deck, const ContainerFormat& format, const std::string& modelDirectory,
                      ImportLog& log, const DeckOptions& options);

} // namespace kvo

#endif
