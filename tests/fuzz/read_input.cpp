// The file that a reader is given, and what may come of it.
#include "read_input.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "mesh.h"
#include "model_builder.h"
#include "text/mapped_file.h"

namespace {

[[noreturn]] void fail(const char* what)
{
    std::fprintf(stderr, "broken promise: %s\n", what);
    std::abort();
}

void check(bool holds, const char* promise)
{
    if (!holds) {
        fail(promise);
    }
}

// A file in memory, so that nothing is left behind when a reader ends the process.
class MemoryFile
{
public:
    MemoryFile(const char* bytes, std::size_t size) : fd(memfd_create("deck", MFD_CLOEXEC))
    {
        check(fd >= 0, "there is room for the input");
        while (size > 0) {
            const ssize_t written = write(fd, bytes, size);
            check(written > 0, "the input can be written");
            bytes += written;
            size -= static_cast<std::size_t>(written);
        }
    }
    ~MemoryFile() { close(fd); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(fd); }

private:
    const int fd;
};

void checkNodes(const kvo::MeshFile& file)
{
    check(file.xyz.size() == 3 * file.nodeIds.size(), "three coordinates a node");
    for (std::size_t k = 1; k < file.nodeIds.size(); ++k) {
        check(file.nodeIds[k - 1] < file.nodeIds[k], "node ids ascend");
    }
}

void checkElement(const kvo::ElementType& type, const std::int64_t* nodes, std::size_t nodeCount)
{
    const int corners = kvo::cornerCount(type.shape);
    for (int s = 0; s < type.slots(); ++s) {
        const bool inside = nodes[s] >= 0 && static_cast<std::uint64_t>(nodes[s]) < nodeCount;
        check(inside || (s >= corners && nodes[s] == kvo::noNode), "elements have nodes that exist");
    }
}

void checkBlock(const kvo::Mesh& mesh, const kvo::ElementBlock& block, std::size_t nodeCount)
{
    check(block.type < mesh.types.size(), "a block has a type");
    check(block.sourceFile < mesh.sourceFiles.size(), "a block has a source file");
    const kvo::ElementType& type = mesh.types[block.type];
    const std::size_t slots = static_cast<std::size_t>(type.slots());
    check(block.part.size() == block.size() && block.line.size() == block.size() &&
              block.nodes.size() == slots * block.size(),
          "the arrays of a block agree");
    for (std::size_t e = 0; e < block.size(); ++e) {
        if (block.part[e] == kvo::noPart) {
            continue;
        }
        check(block.part[e] < mesh.parts.size(), "an element has a part");
        checkElement(type, &block.nodes[slots * e], nodeCount);
    }
}

void checkMesh(const kvo::Mesh& mesh)
{
    for (const kvo::MeshFile& file : mesh.files) {
        checkNodes(file);
        for (const kvo::ElementBlock& block : file.blocks) {
            checkBlock(mesh, block, file.nodeIds.size());
        }
        for (const kvo::UndrawnElements& kind : file.undrawn) {
            check(kind.starts.size() == kind.ids.size(), "an undrawn element has a start");
            check(kind.starts.empty() || kind.starts.back() <= kind.nodes.size(), "starts lie in the nodes");
        }
    }
    for (const kvo::MeshSet& set : mesh.sets) {
        check(set.file == kvo::MeshSet::wholeMesh || set.file < mesh.files.size(), "a set is of a file");
        check(set.family >= kvo::MeshSet::anyFamily && set.family < kvo::familyCount, "a set is of a family");
    }
}

} // namespace

void readInput(const kvo::DeckFormat& format, const char* bytes, std::size_t size, const std::string& modelDir)
{
    const MemoryFile file(bytes, size);
    kvo::ImportLog log;
    kvo::Mesh mesh;
    try {
        kvo::detectDeckFormat(kvo::MappedFile(file.path()));
        mesh = kvo::readDeck(file.path(), log, {}, &format);
    } catch (const kvo::ImportError& error) {
        check(!error.place.file.empty() && !error.message.empty(), "an error names its file");
        check(error.message != kvo::deckNeedsMoreMemory, "small decks need little memory");
        return;
    }
    checkMesh(mesh);
    log.lines();
    if (!modelDir.empty()) {
        try {
            kvo::writeModelDirectory(mesh, modelDir, log);
        } catch (const kvo::ImportError& error) {
            check(!error.message.empty(), "an error says what is wrong");
        }
    }
}
