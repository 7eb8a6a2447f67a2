// Cards that make nodes and elements out of others: *NGEN, *NFILL, *NCOPY, *ELGEN, *ELCOPY.
#ifndef KVO_IMPORT_ABAQUS_INP_GENERATE_H
#define KVO_IMPORT_ABAQUS_INP_GENERATE_H

#include <string_view>
#include <unordered_map>

#include "import_log.h"
#include "inp_scope.h"
#include "keyword_line.h"

namespace kvo {

class InpGenerator
{
public:
    // The types are those of the mesh that is being read. More nodes and elements than most are a slip of the pen, not
    // a mesh: a card that makes more of them, together with those before it, throws.
    InpGenerator(const std::vector<ElementType>& types, ImportLog& log, std::int64_t most = 10000000)
        : types(types), log(log), most(most)
    {
    }

    // Why this card cannot be followed ("REFLECT"), or null. Such a card is the caller's to list.
    static const char* unsupported(const KeywordLine& card);

    // A generating card begins; its data lines follow; it ends.
    void begin(InpScope& scope, const KeywordLine& card);
    void data(std::string_view line, const Place& place);
    void end();

private:
    struct Lookup
    {
        std::unordered_map<std::int64_t, std::uint64_t> position;
        std::size_t known = 0; // nodes or elements looked at so far
    };

    void nodeLine(std::string_view line, const Place& place);
    void fillLine(std::string_view line, const Place& place);
    void copyLine(std::string_view line, const Place& place);
    void elementLine(std::string_view line, const Place& place);
    void copyNodes();
    void copyElements();

    bool findNode(std::int64_t id, Vec3& xyz);
    bool findElement(std::int64_t id, std::size_t& block, std::size_t& position);
    void addNode(std::int64_t id, const Vec3& xyz);
    void addElementCopy(std::size_t block, std::size_t position, std::int64_t idShift, std::int64_t nodeShift);
    void addBetween(std::int64_t first, std::int64_t last, std::int64_t step, std::int64_t intervals,
                    const Place& place);
    // Counts what is going to be made.
    void make(std::int64_t count, const Place& place);
    std::vector<std::int64_t> members(const InpSets& sets, const std::string& name, const Place& place);

    const std::vector<ElementType>& types;
    ImportLog& log;
    const std::int64_t most;
    std::int64_t made = 0; // by all cards
    InpScope* scope = nullptr;
    KeywordLine card;
    InpSet* target = nullptr; // the set that takes what is made; null: none
    int dataLines = 0;
    Transform copyTransform;
    Lookup nodes;
    Lookup elements;
    const InpScope* lookedAt = nullptr; // the scope of the lookups
};

} // namespace kvo

#endif
