// What elements of an archive file refer to by number: types, sets of real constants, sections, materials. And the
// parts that their combinations make.
#ifndef KVO_IMPORT_ANSYS_CDB_ATTRIBUTES_H
#define KVO_IMPORT_ANSYS_CDB_ATTRIBUTES_H

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "cdb_elements.h"
#include "mesh.h"

namespace kvo {

struct CdbType
{
    std::string name; // "SOLID185"
    CdbLayout layout = CdbLayout::Undrawn;
    std::size_t mostNodes = 0; // of a drawn element
    bool defined = false;      // not only referred to
    // Index into the mesh's types by Shape, noPart until it is used.
    std::array<std::uint32_t, 7> rows = {noPart, noPart, noPart, noPart, noPart, noPart, noPart};
};

struct CdbSection
{
    std::string type;    // "SHELL", "BEAM"
    std::string subtype; // of beams: "RECT"
    std::string name;
    std::vector<double> data;
    double thickness = 0.0;
};

// The numbers of one element.
struct CdbElement
{
    std::int64_t id = 0;
    std::int64_t type = 0;
    std::int64_t real = 0;
    std::int64_t material = 0;
    std::int64_t section = 0;
};

class CdbAttributes
{
public:
    explicit CdbAttributes(Mesh& mesh) : mesh(mesh) {}

    void defineType(std::int64_t number, const std::string& name);
    // KEYOPT(1) of a type, which decides the shape of some.
    void setFirstOption(std::int64_t number, std::int64_t value);
    bool hasType(std::int64_t number) const;
    CdbType& type(std::int64_t number);

    // first: position of the first value, from 0.
    void addReals(std::int64_t set, std::size_t first, const std::vector<double>& values);
    CdbSection& section(std::int64_t number) { return sections[number]; }

    // Index into the mesh's parts, by (type, real constants, material, section).
    std::uint32_t part(const CdbElement& element);
    // At the end of the file: ids, names and sections of the parts.
    void describeParts();

private:
    using Key = std::tuple<std::int64_t, std::int64_t, std::int64_t, std::int64_t>;

    void describe(const Key& key, MeshPart& part);

    Mesh& mesh;
    std::map<std::int64_t, CdbType> types;
    std::map<std::int64_t, std::vector<double>> reals;
    std::map<std::int64_t, CdbSection> sections;
    std::map<Key, std::uint32_t> parts;
    Key lastKey;
    std::uint32_t lastPart = noPart;
};

} // namespace kvo

#endif
