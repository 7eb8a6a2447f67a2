// Selecting more than what was clicked: sets of elements and nodes, what can be made of them (by ids, parts, quality,
// box, layers, connection, feature angle, free edge), and the way between a set and the environment's own selection,
// which every picture shows.
//
// Example: from what is selected to everything up to the next sharp edge, shown in the next frame:
//
//     kvo::Selector selector(env);
//     kvo::selectOnly(env, selector.growByAngle(kvo::selectedElements(env), 30));
//
// Positions are 0-based (part index and position in the part), ids are the model's own.
#ifndef KVO_SCENE_SELECT_MORE_H
#define KVO_SCENE_SELECT_MORE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <kvo/id_range.h>
#include <kvo/quality.h>
#include <kvo/shown_model.h>
#include <kvoexport.h>

namespace kvo {

// --- Sets ---

// Marks for everything that the parts of a model hold, one byte (0 or 1) each, all parts in one array. A set belongs to
// the model that it was made for; sets of models with other counts do not fit together.
struct KVO_EXPORT MarkSet
{
    std::vector<std::size_t> first; // of each part its first mark; one entry more than parts: the total
    std::vector<std::uint8_t> marks;

    unsigned int numParts() const; // 0 for a default-made set
    std::size_t size(unsigned int part) const;
    std::uint8_t* of(unsigned int part);
    const std::uint8_t* of(unsigned int part) const;

    // Positions outside the model are not contained and do nothing.
    bool contains(unsigned int part, std::size_t position) const;
    void insert(unsigned int part, std::size_t position);
    void erase(unsigned int part, std::size_t position);

    bool empty() const;
    std::size_t count() const;
    std::size_t count(unsigned int part) const;

    bool fits(const MarkSet& other) const;
    // False, with nothing changed, when the sets do not fit.
    bool unite(const MarkSet& other);
    bool intersect(const MarkSet& other);
    bool subtract(const MarkSet& other);
};

struct KVO_EXPORT ElementSet : MarkSet
{
    ElementSet() = default;
    explicit ElementSet(const ShownModel& model); // empty, for the elements of this model
};

struct KVO_EXPORT NodeSet : MarkSet
{
    NodeSet() = default;
    explicit NodeSet(const ShownModel& model); // empty, for the parts' own copies of the nodes
};

// --- What is selected ---

// What is selected now, hidden parts included.
KVO_EXPORT ElementSet selectedElements(const ShownModel& model);
// Of the parts; not an environment's model-wide list of selectNodeList.
KVO_EXPORT NodeSet selectedNodes(const ShownModel& model);

// The marks of one part, for PartLook; null where none is set.
KVO_EXPORT Marks marksOf(const MarkSet& set, unsigned int part);
// Make the set what is selected or hidden in a view, or add it. False, with nothing changed, for a set that does not
// fit the model.
KVO_EXPORT bool selectOnly(ModelView& view, const ElementSet& set);
KVO_EXPORT bool selectOnly(ModelView& view, const NodeSet& set);
KVO_EXPORT bool selectAlso(ModelView& view, const ElementSet& set);
KVO_EXPORT bool selectAlso(ModelView& view, const NodeSet& set);
KVO_EXPORT bool hideOnly(ModelView& view, const ElementSet& set);

// The same in an environment, through selectElement and selectNode for each entry: the environment's list
// operations would show and hide parts and set projection and lights again (they need a context); these change marks
// and the parts' selection flags only, print nothing and need no OpenGL. What is selected in hidden parts shows when
// they do. False, with nothing changed, for a set that does not fit the model.
KVO_EXPORT bool selectOnly(CAEEnv& env, const ElementSet& set);
KVO_EXPORT bool selectAlso(CAEEnv& env, const ElementSet& set);
KVO_EXPORT bool selectOnly(CAEEnv& env, const NodeSet& set);
KVO_EXPORT bool selectAlso(CAEEnv& env, const NodeSet& set);

// --- Making and growing sets ---

// Corners x y z; points on the rim are inside. Empty where a low exceeds its high.
struct ModelBox
{
    double low[3], high[3];
};

// Which parts take part. The others are neither reached nor passed through, and what a given set holds of them stays in
// the result as it is. What is hidden is read at each call.
enum class Scope
{
    ShownParts, // that are not hidden
    AllParts
};

// What connects elements. Each part has its own copies of its nodes; copies with the same node id are one joint.
enum class Joint
{
    NodeIds, // also across parts
    OwnPart  // only within a part
};

enum class InBox
{
    Inside,  // all corners
    Touching // any point of the element; quadrilaterals as two triangles along the diagonal of their first corner
};

struct NodePosition
{
    unsigned int part, node;
};

// A path along the free edges of shells.
struct EdgePath
{
    std::vector<NodePosition> nodes; // in order; of a closed path, the first is not repeated
    bool closed = false;
    ElementSet elements; // whose edges these are
};

struct ModelJoints;

// Selects on one model, which must outlive it. What connects elements is worked out when first needed and kept
// until the parts in scope change: 100 to 250 bytes per element. Sets that do not fit the model count as empty. One
// selector is used by one thread at a time; it works on all cores itself.
class KVO_EXPORT Selector
{
public:
    explicit Selector(ShownModel shownModel);
    ~Selector();
    Selector(const Selector&) = delete;
    Selector& operator=(const Selector&) = delete;

    Scope scope = Scope::ShownParts;
    Joint joint = Joint::NodeIds;

    // To be called when elements, node ids or the list of parts have changed. Coordinates are read at each call.
    void modelChanged();

    // --- Afresh, within the scope
    ElementSet allElements() const;
    // Ranges may overlap and come in any order; ids that a model cannot hold are in none.
    ElementSet elementsById(const std::vector<IdRange>& ids) const; // in every part that has them
    NodeSet nodesById(const std::vector<IdRange>& ids) const;
    ElementSet elementsOfParts(const std::vector<IdRange>& partIds) const;
    ElementSet elementsOfKind(ElementKind kind) const;
    // low <= quality <= high; elements without quality never.
    ElementSet elementsByQuality(Quality quality, float low, float high) const;
    // Nothing for a box with a NaN. Elements that cannot be drawn are in no box.
    ElementSet elementsInBox(const ModelBox& box, InBox rule) const;
    NodeSet nodesInBox(const ModelBox& box) const;

    // --- From a set
    ElementSet invert(const ElementSet& set) const;
    NodeSet invert(const NodeSet& set) const;
    // The corner nodes, in the parts of their elements. A beam's orientation node is none.
    NodeSet nodesOf(const ElementSet& set) const;
    // Elements with all of their corners in the set (drawable ones), or with any.
    ElementSet elementsWithNodes(const NodeSet& set, bool all) const;
    // Elements that share a joint with the set join it, layer by layer.
    ElementSet growByLayers(const ElementSet& set, unsigned int layers = 1);
    // Elements that share a joint with an element outside the set leave it: the reverse of growing, where the model's
    // own rim is no outside.
    ElementSet shrinkByLayers(const ElementSet& set, unsigned int layers = 1);
    // Everything that hangs together with the set over joints.
    ElementSet attached(const ElementSet& set);

    // From faces to their neighbours over edges, as long as the two faces' planes differ by no more than the angle in
    // degrees (0: flat, 180: folded back; 0.001 degrees more for rounding), whichever way the faces are wound. Faces
    // are those of shells, and of solids the ones that no second solid has; the start is every such face of the set's
    // elements. At an edge of three and more faces every pair counts by itself. Faces without area are not passed.
    // An element of a solid is reached with any of its faces.
    ElementSet growByAngle(const ElementSet& set, double degrees);
    // The nodes of the faces so reached.
    NodeSet nodesByAngle(const ElementSet& set, double degrees);
    // The same from one face of an element (numbered as the record's flat normals): for solids, whose corners would
    // start in several directions. Empty for a face that does not exist or lies inside.
    ElementSet elementsByAngle(unsigned int part, std::size_t element, unsigned int face, double degrees);
    NodeSet nodesByAngle(unsigned int part, std::size_t element, unsigned int face, double degrees);

    // Along the edges that exactly one shell has, from a node (and towards its free neighbour `next`, where the loops
    // through it are more than one or the direction matters) until it comes back or ends. Where free edges cross, the
    // path keeps to the shells that it has been following. Empty for a node without free edges.
    EdgePath freeEdgePath(NodePosition start);
    EdgePath freeEdgePath(NodePosition start, NodePosition next);

private:
    const ModelJoints& joints();

    ShownModel model;
    std::unique_ptr<ModelJoints> known;
};

} // namespace kvo

#endif
