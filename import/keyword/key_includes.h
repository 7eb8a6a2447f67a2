// Cards that include files.
#ifndef KVO_IMPORT_KEYWORD_KEY_INCLUDES_H
#define KVO_IMPORT_KEYWORD_KEY_INCLUDES_H

#include "key_cards.h"

namespace kvo {

class KeyIncludes : public KeyCards
{
public:
    enum Kind
    {
        Files, // a name a line
        Transformed,
        Folders // to look for included files in
    };

    using KeyCards::KeyCards;
    bool begin(int kind) override;
    void line(std::string_view text) override;
    void end() override;

    // The next keyword has come, the last line read: an *INCLUDE_TRANSFORM that is still open goes to its file, and
    // gives the line back. True if it did.
    bool openBeforeKeyword();
    // An included file was read: what the including file's card goes on as.
    void resume(Kind kind)
    {
        begin(kind);
        anyOpened = true;
    }
    Kind now() const { return current; }

private:
    bool takeName(std::string_view text);
    void transformLine(std::string_view text);
    void addOffset(KeyFields& fields, KeyOffsets::Of of);
    void open();

    Kind current = Files;
    int at = 0;              // lines of *INCLUDE_TRANSFORM behind its file name
    bool nameGoesOn = false; // its last line ended with " +"
    bool anyOpened = false;  // by the current keyword
    KeyInclude include;
};

} // namespace kvo

#endif
