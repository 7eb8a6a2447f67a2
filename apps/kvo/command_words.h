// The words of a command line, looked at before they are parsed: what is unknown, empty or given twice is told by its
// name, with what was probably meant.
#ifndef KVO_COMMAND_WORDS_H
#define KVO_COMMAND_WORDS_H

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kvo {

// words: without the program's name. Throws UsageError. What is wrong with values and with arguments that are missing
// is left to the parser and to the commands.
void checkWords(const CLI::App& program, const std::vector<std::string>& words);

// Those of the known words that differ from a mistyped one by little, the nearest ones; at most four.
std::vector<std::string> similarWords(const std::string& word, const std::vector<std::string>& known);

} // namespace kvo

#endif
