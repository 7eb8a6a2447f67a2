// The values and sections of a .msh file.
#ifndef KVO_IMPORT_MSH_INPUT_H
#define KVO_IMPORT_MSH_INPUT_H

#include "text/token_input.h"

namespace kvo {

class MshInput : public TokenInput
{
public:
    using TokenInput::TokenInput;

    // From here on values are bytes. A size_t of the format has sizeBytes bytes, 4 or 8.
    void setLayout(bool swapped, int bytesOfSize)
    {
        setBinary(swapped);
        sizeBytes = bytesOfSize;
    }

    // An int of the format, a size_t of the format (a count or an id), a double.
    std::int64_t integer() { return isBinary() ? bytes<std::int32_t>() : textInteger(); }
    std::int64_t size()
    {
        return !isBinary() ? textInteger() : sizeBytes == 4 ? bytes<std::int32_t>() : bytes<std::int64_t>();
    }
    double real() { return isBinary() ? bytesReal() : textReal(); }
    void skipValues(std::int64_t integers, std::int64_t reals);

    // Skips blank lines. False at the end of the file; else the name without its "$".
    bool nextSection(std::string& name);
    void expectEnd(const std::string& section);
    void skipSection(const std::string& section); // to behind its end, whatever it holds

private:
    double bytesReal();

    int sizeBytes = 8;
};

} // namespace kvo

#endif
