// Grid points in local coordinate systems.
#ifndef KVO_IMPORT_NASTRAN_BDF_COORDS_H
#define KVO_IMPORT_NASTRAN_BDF_COORDS_H

#include <cstdint>
#include <map>
#include <vector>

#include "bdf_card.h"
#include "import_log.h"
#include "mesh.h"
#include "transform.h"

namespace kvo {

// Cards may come in any order: everything is kept as it stands until place().
class BdfCoords
{
public:
    BdfCoords(MeshFile& mesh, ImportLog& log) : mesh(mesh), log(log) {}

    void addGrid(const BdfCard& card);
    void setDefaults(const BdfCard& card); // GRDSET
    // CORD1R, CORD1C, CORD1S: by three grid points; two systems a card.
    void addByGrids(const BdfCard& card, char kind);
    // CORD2R, CORD2C, CORD2S: by three points of another system.
    void addByPoints(const BdfCard& card, char kind);

    // Moves all nodes of the mesh, whose order must still be that of the cards, to the basic system.
    // deck names the deck in messages.
    void place(const std::string& deck);

    // After place(): a vector of the displacement system of a grid point, in the basic one. A point that does not
    // exist leaves it as it is.
    Vec3 toBasic(std::int64_t grid, const Vec3& vector);

private:
    static constexpr std::int32_t basic = 0;
    static constexpr std::int32_t notGiven = -1;

    // In which systems a grid point is placed and moves.
    struct Systems
    {
        std::int32_t position;
        std::int32_t displacement;
    };

    struct System
    {
        char kind = 'R'; // rectangular, cylindrical, spherical
        bool byGrids = false;
        std::int64_t grids[3] = {};     // origin, on the z axis, in the x-z plane
        std::int32_t reference = basic; // of points
        Vec3 points[3] = {};            // likewise
        Place place;
        enum class State
        {
            Unknown,
            Busy, // on the way: who needs it now needs itself
            Known
        } state = State::Unknown;
        Transform toBasic; // of its rectangular coordinates
    };

    std::int32_t systemId(const BdfCard& card, std::size_t field, std::int32_t ifBlank) const;
    System& newSystem(std::int32_t id, const BdfCard& card, char kind);
    const System* find(std::int32_t id);
    void resolve(System& system, std::int32_t id);
    Vec3 gridPosition(std::int64_t grid, const System& asker, std::int32_t id);
    bool toBasicPoint(std::int32_t system, Vec3& point);
    void placeNode(std::size_t node);
    void warnUnknown(std::int32_t system, std::size_t node);
    std::size_t nodeOf(std::int64_t grid);

    MeshFile& mesh;
    ImportLog& log;
    std::string deck;
    std::vector<Systems> systems; // per node
    std::vector<char> placed;     // per node; those in the basic system may stay 0
    std::map<std::int32_t, System> byId;
    std::vector<std::pair<std::int64_t, std::size_t>> sortedNodes; // built when first needed
    int depth = 0;                                                 // of systems that wait for each other
    std::map<std::int32_t, Place> firstUse; // of a system by a grid point: the points' own lines are not kept
    std::int32_t lastUsed = basic;
    std::int32_t defaultPosition = basic;
    std::int32_t defaultDisplacement = basic;
};

} // namespace kvo

#endif
