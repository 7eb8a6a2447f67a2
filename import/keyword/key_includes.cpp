// Reading of *INCLUDE, *INCLUDE_PATH and *INCLUDE_TRANSFORM.
#include "key_includes.h"

#include "text/fields.h"

namespace kvo {

namespace {

constexpr int transformLines = 4; // behind the file name

} // namespace

bool KeyIncludes::begin(int kind)
{
    current = static_cast<Kind>(kind);
    at = 0;
    nameGoesOn = anyOpened = false;
    include = {};
    context.keyword.takeOption("RELATIVE"); // of folders: both ways are tried
    return context.keyword.options.empty();
}

// A name may go on in the next line, behind " +". True once it is whole.
bool KeyIncludes::takeName(std::string_view text)
{
    text = trimmed(text);
    const bool more = text.size() > 1 && text.back() == '+' && isBlank(text[text.size() - 2]);
    include.name += trimmed(more ? text.substr(0, text.size() - 1) : text);
    nameGoesOn = more;
    include.place = context.lines.place();
    return !more && !include.name.empty();
}

void KeyIncludes::line(std::string_view text)
{
    switch (current) {
    case Files:
        if (takeName(text)) {
            open();
        }
        return;
    case Folders:
        if (takeName(text)) {
            context.lines.addSearchFolder(include.name);
            include = {};
        }
        return;
    case Transformed:
        return transformLine(text);
    }
}

void KeyIncludes::addOffset(KeyFields& fields, KeyOffsets::Of of)
{
    include.offsets.values[of] = fields.integer(10);
}

void KeyIncludes::transformLine(std::string_view text)
{
    if (include.name.empty() || nameGoesOn) {
        takeName(text);
        return;
    }
    KeyFields fields = context.fields(text);
    ++at;
    if (at == 1) {
        for (const KeyOffsets::Of of : {KeyOffsets::Node, KeyOffsets::Element, KeyOffsets::Part, KeyOffsets::Material,
                                        KeyOffsets::Set, KeyOffsets::Function, KeyOffsets::Define}) {
            addOffset(fields, of);
        }
    } else if (at == 2) {
        addOffset(fields, KeyOffsets::Other);
    } else if (at == 3) {
        fields.text(10); // factors of mass and time
        fields.text(10);
        const double factor = fields.real(10);
        include.lengthFactor = factor == 0.0 ? 1.0 : factor;
    } else {
        include.transformation = context.lines.shifted(fields.integer(10), KeyOffsets::Define);
    }
    context.refuseBad(fields);
    if (at == transformLines) {
        open();
    }
}

void KeyIncludes::open()
{
    // The keyword's own width of columns is no business of the file.
    const KeyInclude what = std::move(include);
    include = {};
    at = 0;
    anyOpened = true;
    context.lines.include(what);
}

// A keyword came before the last lines of *INCLUDE_TRANSFORM: they are as good as blank.
bool KeyIncludes::openBeforeKeyword()
{
    if (current != Transformed || include.name.empty()) {
        return false;
    }
    context.lines.putBack();
    open();
    return true;
}

void KeyIncludes::end()
{
    const bool open = !include.name.empty() && (current == Transformed || nameGoesOn);
    if (open || (current == Transformed && !anyOpened)) {
        context.log.warn(warnCutCards, context.keyword.place,
                         "*" + context.keyword.name + " is not whole: no file is read");
    }
}

} // namespace kvo
