// Words and numbers of text files.
#ifndef KVO_WORDS_H
#define KVO_WORDS_H

#include <cstddef>
#include <string>
#include <vector>

namespace kvo {

// One line of a file, split; what errors name.
struct Line
{
    const std::string& file;
    std::size_t number;
    std::vector<std::string> words;

    [[noreturn]] void fail(const std::string& what) const; // ProgramError "FILE:LINE: what"
};

// Words are separated by blanks; # outside a quoted word begins a comment. A word in double quotes may hold blanks and
// #, and \" \\ \n for those characters. Throws ProgramError for quotes that do not end.
Line splitLine(const std::string& file, std::size_t number, const std::string& text);

// The word in quotes where it needs them.
std::string quoteWord(const std::string& word);

// A finite number, or the line's error.
float parseValue(const Line& line, const std::string& word);

// The shortest decimal that reads back as this float.
std::string formatValue(float value);

} // namespace kvo

#endif
