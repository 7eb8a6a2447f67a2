// Characters of a text.
#ifndef KVO_TEXT_UTF8_H
#define KVO_TEXT_UTF8_H

#include <cstddef>
#include <string>

namespace kvo {

// The character of UTF-8 from `at` on, which moves behind it. Names of decks may be in any encoding: a byte that is no
// UTF-8 is a character of Latin-1.
char32_t nextCodePoint(const std::string& text, std::size_t& at);

std::u32string codePoints(const std::string& text);

} // namespace kvo

#endif
