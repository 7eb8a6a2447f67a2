// The seven standard views of a model in one picture, with titles.
#ifndef KVO_CONTACT_SHEET_H
#define KVO_CONTACT_SHEET_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "picture.h"

namespace kvo {

class TextPainter;

// Four columns and two rows: the views in the order of standardViews(), then what the model is.
class ContactSheet
{
public:
    // Throws ProgramError when the picture is too small for eight cells with titles.
    ContactSheet(int width, int height, Color background);
    ~ContactSheet();

    // Why there is no font, and so no text; else empty.
    const std::string& fontProblem() const { return problem; }

    // What one view's picture measures.
    int viewWidth() const;
    int viewHeight() const;

    // view(k) draws the picture of standardViews()[k]; description: lines for the eighth cell, the first one as title.
    Picture compose(const std::function<Picture(std::size_t)>& view, const std::vector<std::string>& description) const;

private:
    int width;
    int height;
    Color background;
    std::unique_ptr<TextPainter> title; // both null without the font
    std::unique_ptr<TextPainter> text;
    std::string problem;
};

} // namespace kvo

#endif
