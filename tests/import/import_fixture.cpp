// Decks as text in, meshes and models out.
#include "import_fixture.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "modelinfo.h"
#include "readelements.h"

ImportTest::ImportTest()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "kvo_import_XXXXXX").string();
    folder = mkdtemp(pattern.data());
}

ImportTest::~ImportTest()
{
    std::filesystem::remove_all(folder);
}

std::string ImportTest::write(const std::string& name, const std::string& text) const
{
    std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

kvo::Mesh ImportTest::readFile(const std::string& file)
{
    log = kvo::ImportLog();
    return kvo::readDeck(file, log);
}

kvo::Mesh ImportTest::read(const std::string& text, const std::string& name)
{
    return readFile(write(name, text));
}

std::string ImportTest::readError(const std::string& text, const std::string& name)
{
    try {
        read(text, name);
    } catch (const kvo::ImportError& error) {
        const std::string message = error.what();
        // The folder's name is of no interest.
        const std::string prefix = folder.string() + "/";
        return message.rfind(prefix, 0) == 0 ? message.substr(prefix.size()) : message;
    }
    ADD_FAILURE() << "no error";
    return {};
}

namespace {

LoadedElement loadedElement(const PartInfoStr& part, unsigned int partId, unsigned int element)
{
    LoadedElement result;
    result.drawType = part.partDrawType;
    result.part = partId;
    const unsigned int stride = part.partElements.nodesPerElement;
    for (unsigned int s = 0; s < stride; ++s) {
        const unsigned int index = part.partElements.elmIndices[element * stride + s];
        if (static_cast<int>(index) < 0) {
            result.nodeIds.push_back(0xFFFFFFFF);
            continue;
        }
        result.nodeIds.push_back(part.partNodes.idList[index]);
        const float* xyz = part.partNodes.nodeValues + 3 * std::size_t(index);
        result.points.push_back({xyz[0], xyz[1], xyz[2]});
    }
    return result;
}

void releasePart(PartInfoStr& part)
{
    delete[] part.partNodes.idList;
    delete[] part.partNodes.nodeValues;
    delete[] part.partElements.elmIndices;
    delete[] part.partElements.NPE;
    delete part.partElements.eidMap;
}

} // namespace

void releaseParts(unsigned int count, PartInfoStr* parts)
{
    for (unsigned int p = 0; p < count; ++p) {
        releasePart(parts[p]);
    }
    delete[] parts;
}

std::map<unsigned int, LoadedElement> ImportTest::roundTrip(const kvo::Mesh& mesh, const std::string& name)
{
    kvo::writeModelDirectory(mesh, path(name), log);
    return load(name);
}

std::map<unsigned int, LoadedElement> ImportTest::load(const std::string& name)
{
    ModelInfo info;
    std::string error;
    EXPECT_TRUE(readModelInfo(folder.string(), name, &info, &error)) << error;
    std::map<unsigned int, LoadedElement> elements;
    for (std::size_t k = 0; k < info.files.size(); ++k) {
        UIUIMap partIndex;
        unsigned int numParts = 0;
        PartInfoStr* parts = nullptr;
        ReadElements reader(folder.c_str(), info.files[k].c_str(), static_cast<int>(k), &partIndex);
        reader.getAll(&numParts, &parts);
        for (const auto& part : partIndex) {
            for (const auto& element : *parts[part.second].partElements.eidMap) {
                const LoadedElement loaded = loadedElement(parts[part.second], part.first, element.second);
                EXPECT_TRUE(elements.emplace(element.first, loaded).second) << "element " << element.first << " twice";
            }
        }
        releaseParts(numParts, parts);
    }
    return elements;
}

namespace {

// Calls visit(block, position) for every element that is not dropped.
template <class Visit> void forEachElement(const kvo::MeshFile& file, Visit visit)
{
    for (const kvo::ElementBlock& block : file.blocks) {
        for (std::size_t e = 0; e < block.size(); ++e) {
            if (block.part[e] != kvo::noPart) {
                visit(block, e);
            }
        }
    }
}

} // namespace

Ids elementIds(const kvo::Mesh& mesh, std::size_t file)
{
    Ids ids;
    forEachElement(mesh.files.at(file),
                   [&](const kvo::ElementBlock& block, std::size_t e) { ids.push_back(block.ids[e]); });
    std::sort(ids.begin(), ids.end());
    return ids;
}

Ids nodesOf(const kvo::Mesh& mesh, std::int64_t element, std::size_t file)
{
    Ids ids;
    forEachElement(mesh.files.at(file), [&](const kvo::ElementBlock& block, std::size_t e) {
        const std::size_t slots = static_cast<std::size_t>(mesh.types[block.type].slots());
        for (std::size_t s = 0; block.ids[e] == element && s < slots; ++s) {
            const std::int64_t position = block.nodes[e * slots + s];
            ids.push_back(position == kvo::noNode ? position
                                                  : mesh.files[file].nodeIds.at(static_cast<std::size_t>(position)));
        }
    });
    return ids;
}

Point pointOf(const kvo::Mesh& mesh, std::int64_t node, std::size_t file)
{
    const kvo::MeshFile& f = mesh.files.at(file);
    const auto found = std::lower_bound(f.nodeIds.begin(), f.nodeIds.end(), node);
    if (found == f.nodeIds.end() || *found != node) {
        return {};
    }
    const double* xyz = &f.xyz[3 * static_cast<std::size_t>(found - f.nodeIds.begin())];
    return {xyz[0], xyz[1], xyz[2]};
}

const kvo::MeshPart& partOf(const kvo::Mesh& mesh, std::int64_t element, std::size_t file)
{
    static const kvo::MeshPart nothing;
    const kvo::MeshPart* part = &nothing;
    forEachElement(mesh.files.at(file), [&](const kvo::ElementBlock& block, std::size_t e) {
        part = block.ids[e] == element ? &mesh.parts.at(block.part[e]) : part;
    });
    return *part;
}

std::vector<std::string> partNames(const kvo::Mesh& mesh)
{
    std::vector<std::string> names;
    for (const kvo::MeshPart& part : mesh.parts) {
        names.push_back(part.name);
    }
    return names;
}

std::string someNodes(int count)
{
    std::string text = "*NODE\n";
    for (int id = 1; id <= count; ++id) {
        text += std::to_string(id) + ", " + std::to_string(id) + ", " + std::to_string(id * id) + ", 0\n";
    }
    return text;
}

std::map<std::string, std::uint64_t> typeCounts(const kvo::Mesh& mesh)
{
    std::map<std::string, std::uint64_t> counts;
    for (const kvo::MeshFile& file : mesh.files) {
        for (const kvo::ElementBlock& block : file.blocks) {
            for (const std::uint32_t part : block.part) {
                if (part != kvo::noPart) {
                    ++counts[mesh.types[block.type].name];
                }
            }
        }
    }
    return counts;
}

std::filesystem::path dataFolder()
{
    const char* named = std::getenv("KVO_TEST_DATA");
    return named ? std::filesystem::path(named)
                 : std::filesystem::path(KVO_SOURCE_DIR).parent_path() / "shared" / "data";
}

std::string withoutRealFile(const std::filesystem::path& file)
{
    return file.string() + " is not there; the variable KVO_TEST_DATA names the folder of real decks";
}
