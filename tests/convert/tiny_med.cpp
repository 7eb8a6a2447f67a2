// The tiny model as MED: families of solids, shells and bars.
#include <med.h>

#include <stdexcept>

#include "tiny_model.h"

namespace {

const char* const meshName = "tiny";

void check(int status)
{
    if (status < 0) {
        throw std::runtime_error("the MED library failed");
    }
}

// From the order of the tiny model to that of MED, whose solids have the bottom clockwise as seen from the top.
struct MedRow
{
    med_geometry_type geometry;
    std::vector<std::size_t> order;
    int family;
};

const MedRow rows[] = {
    {MED_HEXA8, {0, 3, 2, 1, 4, 7, 6, 5}, -1},
    {MED_PYRA5, {0, 3, 2, 1, 4}, -1},
    {MED_PENTA6, {0, 2, 1, 3, 5, 4}, -1},
    {MED_TETRA4, {0, 2, 1, 3}, -4},
    {MED_QUAD4, {0, 1, 2, 3}, -2},
    {MED_TRIA3, {0, 1, 2}, -2},
    {MED_SEG2, {0, 1}, 0},
};

void writeFamily(med_idt file, const char* name, int number, const std::vector<std::string>& groups)
{
    std::string text;
    for (const std::string& group : groups) {
        text += group;
        text.resize((text.size() + MED_LNAME_SIZE - 1) / MED_LNAME_SIZE * MED_LNAME_SIZE, '\0');
    }
    check(MEDfamilyCr(file, meshName, name, number, static_cast<med_int>(groups.size()), text.c_str()));
}

void writeNodes(med_idt file, const MedChoice& choice)
{
    std::vector<med_float> xyz;
    std::vector<med_int> numbers, families;
    for (const auto& node : tinyNodes()) {
        xyz.insert(xyz.end(), node.begin(), node.end());
        numbers.push_back(static_cast<med_int>(nodeIdOf(static_cast<int>(numbers.size()) + 1)));
        families.push_back(node[2] > 1.5 ? 3 : 0);
    }
    const med_int count = static_cast<med_int>(numbers.size());
    check(MEDmeshNodeCoordinateWr(file, meshName, MED_NO_DT, MED_NO_IT, 0, MED_FULL_INTERLACE, count, xyz.data()));
    check(
        MEDmeshEntityFamilyNumberWr(file, meshName, MED_NO_DT, MED_NO_IT, MED_NODE, MED_NONE, count, families.data()));
    if (choice.numbers) {
        check(MEDmeshEntityNumberWr(file, meshName, MED_NO_DT, MED_NO_IT, MED_NODE, MED_NONE, count, numbers.data()));
    }
}

void writeElement(med_idt file, const MedRow& row, const TinyElement& element, const MedChoice& choice)
{
    std::vector<med_int> nodes;
    for (std::size_t k = 0; k < element.corners.size(); ++k) {
        nodes.push_back(element.corners[choice.medOrder ? row.order[k] : k]);
    }
    const med_int number = choice.sharedNumbers ? (element.volume > 0 ? static_cast<med_int>(element.id) : 1)
                                                : static_cast<med_int>(element.id);
    const med_int family = row.family;
    check(MEDmeshElementConnectivityWr(file, meshName, MED_NO_DT, MED_NO_IT, 0, MED_CELL, row.geometry, MED_NODAL,
                                       MED_FULL_INTERLACE, 1, nodes.data()));
    check(MEDmeshEntityFamilyNumberWr(file, meshName, MED_NO_DT, MED_NO_IT, MED_CELL, row.geometry, 1, &family));
    if (choice.numbers) {
        check(MEDmeshEntityNumberWr(file, meshName, MED_NO_DT, MED_NO_IT, MED_CELL, row.geometry, 1, &number));
    }
}

} // namespace

void writeTinyMed(const std::string& path, const MedChoice& choice)
{
    const med_idt file = MEDfileOpen(path.c_str(), MED_ACC_CREAT);
    check(file < 0 ? -1 : 0);
    const std::string axes = "x               y               z               ";
    const std::string units = "mm              mm              mm              ";
    check(MEDmeshCr(file, meshName, 3, 3, MED_UNSTRUCTURED_MESH, "a tiny model", "s", MED_SORT_DTIT, MED_CARTESIAN,
                    axes.c_str(), units.c_str()));
    writeFamily(file, "FAMILLE_ZERO", 0, {});
    writeFamily(file, "FAM_-1", -1, {"solids"});
    writeFamily(file, "FAM_-2", -2, {"shells", "thin"});
    writeFamily(file, "FAM_-4", -4, {"solids", "tetrahedra"});
    writeFamily(file, "FAM_3", 3, {"top"});
    writeNodes(file, choice);
    for (std::size_t k = 0; k < sizeof rows / sizeof *rows; ++k) {
        // Two shells of one number are no two elements.
        if (!choice.sharedNumbers || rows[k].geometry != MED_TRIA3) {
            writeElement(file, rows[k], tinyElements()[k], choice);
        }
    }
    check(MEDfileClose(file));
}
