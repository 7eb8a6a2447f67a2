// What the tests of containers share.
#ifndef KVO_TESTS_CONVERT_FIXTURE_H
#define KVO_TESTS_CONVERT_FIXTURE_H

#include "../import/import_fixture.h"
#include "container_elements.h"
#include "container_reader.h"
#include "solid_sense.h"
#include "tiny_model.h"

class ContainerTest : public ImportTest
{
protected:
    kvo::Mesh readIt(const std::string& file)
    {
        log = kvo::ImportLog();
        return kvo::readContainer(file, nullptr, log);
    }
};

// Volumes of an element's family of solids by element id.
inline std::map<std::int64_t, double> solidVolumes(const kvo::Mesh& mesh, std::size_t file = 0)
{
    std::map<std::int64_t, double> volumes;
    for (const kvo::ElementBlock& block : mesh.files.at(file).blocks) {
        const kvo::ElementType& type = mesh.types[block.type];
        const std::size_t slots = static_cast<std::size_t>(type.slots());
        for (std::size_t e = 0; type.family == kvo::Family::Solid && e < block.size(); ++e) {
            volumes[block.ids[e]] = kvo::solidVolume(mesh.files[file], type.shape, &block.nodes[e * slots]);
        }
    }
    return volumes;
}

// The ids that a tiny element's corners have in files that keep ids.
inline Ids cornerIds(const TinyElement& element)
{
    Ids ids;
    for (const int corner : element.corners) {
        ids.push_back(nodeIdOf(corner));
    }
    return ids;
}

inline const TinyElement& tiny(const std::string& kind)
{
    for (const TinyElement& element : tinyElements()) {
        if (element.kind == kind) {
            return element;
        }
    }
    throw std::runtime_error("no " + kind);
}

// The ids of a set; nothing if there is no such set.
inline Ids setMembers(const kvo::Mesh& mesh, kvo::MeshSet::Of of, const std::string& name)
{
    Ids ids;
    for (const kvo::MeshSet& set : mesh.sets) {
        if (set.of == of && set.name == name) {
            set.ids.forEach([&](std::int64_t id) { ids.push_back(id); });
        }
    }
    return ids;
}

inline std::size_t fileNamed(const kvo::Mesh& mesh, const std::string& name)
{
    for (std::size_t k = 0; k < mesh.files.size(); ++k) {
        if (mesh.files[k].name == name) {
            return k;
        }
    }
    ADD_FAILURE() << "no file " << name;
    return 0;
}

// Elements by the names of their types.
inline std::map<std::string, std::uint64_t> drawnAndUndrawnCounts(const kvo::Mesh& mesh)
{
    std::map<std::string, std::uint64_t> counts;
    for (const kvo::MeshFile& file : mesh.files) {
        for (const kvo::ElementBlock& block : file.blocks) {
            for (const std::uint32_t part : block.part) {
                counts[mesh.types[block.type].name] += part != kvo::noPart ? 1 : 0;
            }
        }
        for (const kvo::UndrawnElements& undrawn : file.undrawn) {
            counts[undrawn.type] += undrawn.ids.size();
        }
    }
    return counts;
}

#endif
