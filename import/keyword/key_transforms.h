// Cards of transformations, and their effect on what transformed includes brought.
#ifndef KVO_IMPORT_KEYWORD_KEY_TRANSFORMS_H
#define KVO_IMPORT_KEYWORD_KEY_TRANSFORMS_H

#include <map>

#include "key_cards.h"
#include "key_elements.h"
#include "transform.h"

namespace kvo {

class KeyTransforms : public KeyCards
{
public:
    using KeyCards::KeyCards;
    bool begin(int kind) override;
    void line(std::string_view text) override;

    // Nodes and orientations from these positions on belong to an included file, up to where it closes.
    struct Range
    {
        std::size_t nodes = 0;
        std::size_t orientations = 0;
        std::size_t vectors = 0; // of KeyElements::defined
    };
    void closed(const KeyInclude& include, const Range& from, const Range& to);

    // At the end of the deck: a transformation may stand behind the include that uses it.
    void apply(KeyElements& elements);

private:
    void step(const std::string& name, KeyFields& fields);
    bool rotation(const double* a, Transform& result) const;
    bool positions(const double* a, Transform& result) const;
    bool point(double id, Vec3& result) const;

    struct Use
    {
        KeyInclude include;
        Range from;
        Range to;
    };

    std::int64_t id = 0;
    bool titled = false;
    int at = 0; // lines so far
    std::map<std::int64_t, Transform> transforms;
    std::map<std::int64_t, Vec3> points; // of the current transformation
    std::vector<Use> uses;
};

} // namespace kvo

#endif
