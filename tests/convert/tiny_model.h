// One element of every kind, and the three functions that write it with the libraries of the containers.
//
// Nodes and elements go by their positions here; files that keep ids have those of nodeIdOf() and TinyElement::id,
// files that do not number both from 1 in the order of these tables.
#ifndef KVO_TESTS_CONVERT_TINY_MODEL_H
#define KVO_TESTS_CONVERT_TINY_MODEL_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

struct TinyElement
{
    const char* kind;
    std::int64_t id;
    std::vector<int> corners; // positions from 1, solids right-handed
    double volume;            // 0: no solid
};

const std::vector<std::array<double, 3>>& tinyNodes();
const std::vector<TinyElement>& tinyElements(); // the last two, "spring" and "point", are not in all files

inline std::int64_t nodeIdOf(int position) // descending, with gaps
{
    return 1000 - 7 * position;
}

enum class ExodusStorage
{
    Classic,
    Data64, // all ids are 64-bit integers
    Hdf5
};

// All ids are higher by the shift.
void writeTinyExodus(const std::string& path, ExodusStorage storage = ExodusStorage::Classic, std::int64_t shift = 0);

struct MedChoice
{
    bool medOrder = true;       // solids as MED numbers them; false: the other way round
    bool numbers = true;        // nodes and elements have numbers
    bool sharedNumbers = false; // the numbers of each kind begin with 1
};

void writeTinyMed(const std::string& path, const MedChoice& choice = {});

// An unstructured zone "solids" and a structured one, "block", of 2 x 1 x 1 cells whose directions are left-handed.
void writeTinyCgns(const std::string& path, bool adf = false);

#endif
