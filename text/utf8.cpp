// Decoding, one character at a time.
#include "utf8.h"

namespace kvo {

namespace {

// Bytes that follow a first one; 0 also for what is none.
std::size_t followingBytes(unsigned char lead)
{
    if (lead >= 0xC2 && lead < 0xE0) {
        return 1;
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return 2;
    }
    return lead >= 0xF0 && lead < 0xF5 ? 3 : 0;
}

} // namespace

char32_t nextCodePoint(const std::string& text, std::size_t& at)
{
    const auto lead = static_cast<unsigned char>(text[at++]);
    const std::size_t following = followingBytes(lead);
    if (following == 0 || following > text.size() - at) {
        return lead;
    }
    char32_t code = lead & (0x3Fu >> following);
    for (std::size_t k = 0; k < following; ++k) {
        const auto byte = static_cast<unsigned char>(text[at + k]);
        if ((byte & 0xC0) != 0x80) {
            return lead;
        }
        code = code << 6 | (byte & 0x3Fu);
    }
    at += following;
    return code;
}

std::u32string codePoints(const std::string& text)
{
    std::u32string out;
    for (std::size_t at = 0; at < text.size();) {
        out.push_back(nextCodePoint(text, at));
    }
    return out;
}

} // namespace kvo
