// Characters of texts in UTF-8, and of those that are not.
#include "utf8.h"

#include <gtest/gtest.h>

using kvo::codePoints;

TEST(Utf8, CharactersOfOneToFourBytes)
{
    EXPECT_EQ(codePoints("aZ~"), U"aZ~");
    EXPECT_EQ(codePoints("\xC3\xA4\xE2\x80\xA6\xF0\x9F\x94\xA7!"), U"\u00E4\u2026\U0001F527!");
    EXPECT_EQ(codePoints(""), U"");
}

TEST(Utf8, OtherBytesAreLatin1)
{
    EXPECT_EQ(codePoints("St\xFCtze"), U"St\u00FCtze");
    EXPECT_EQ(codePoints("\xFC"), U"\u00FC") << "at the end";
    EXPECT_EQ(codePoints("\xE2\x80"), U"\u00E2\u0080") << "cut off";
    EXPECT_EQ(codePoints("\xE2\x80-"), U"\u00E2\u0080-");
    EXPECT_EQ(codePoints("\xC0\xAF"), U"\u00C0\u00AF") << "longer than needed";
    EXPECT_EQ(codePoints("\xA4"), U"\u00A4") << "without a first byte";
}
