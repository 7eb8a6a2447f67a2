// The element sections, by version.
#include "msh_elements.h"

#include <algorithm>
#include <unordered_map>

#include "msh_reader.h"
#include "node_surplus.h"

namespace kvo {

namespace {

constexpr std::int64_t mostTags = 100000; // the partitions that an element touches are among them
constexpr std::int64_t reportEvery = 65536;
constexpr std::size_t byteWord = 4;

std::size_t least(const MshInput& input, std::size_t textBytes, std::size_t bytes)
{
    return input.isBinary() ? bytes : textBytes;
}

} // namespace

std::uint32_t MshElements::rowOf(const MshType& type)
{
    std::uint32_t& row = typeRows[static_cast<std::size_t>(type.number)];
    if (row == 0) {
        row = rows.type(type.name, type.family, type.shape) + 1;
    }
    return row - 1;
}

void MshElements::readNodes(int count, bool areSizes)
{
    for (int k = 0; k < count; ++k) {
        nodes[static_cast<std::size_t>(k)] = areSizes ? input.size() : input.integer();
    }
}

// Only the corners are kept.
void MshElements::add(const MshType& type, const Head& head)
{
    if (type.dim == 0) {
        addPoint(type, head);
        return;
    }
    if (copiesPossible && repeatsLast(type, head)) {
        return;
    }
    ElementBlock& block = mesh.files.front().blockFor(rowOf(type), 0);
    block.ids.push_back(head.id);
    block.part.push_back(groups.partOf(type.dim, head.group, head.entity));
    block.line.push_back(head.line);
    const int corners = cornerCount(type.shape);
    block.nodes.insert(block.nodes.end(), nodes.begin(), nodes.begin() + corners);
    if (type.family == Family::Beam) {
        block.nodes.push_back(noNode);
    }
}

void MshElements::addPoint(const MshType& type, const Head& head)
{
    mesh.files.front().addUndrawn(type.name, head.id, nodes.data(), 1);
    log.count(listElementsNotDrawn, type.name, 1, {mesh.sourceFiles.front(), head.line});
    if (head.group != 0) {
        groups.addNode(head.group < 0 ? -head.group : head.group, nodes[0]);
    }
}

// --- versions 1 and 2 ---

// An element of two groups stands there twice, with the same number or the next one.
bool MshElements::repeatsLast(const MshType& type, const Head& head)
{
    const auto corners = nodes.begin() + cornerCount(type.shape);
    if (lastType == &type && last.entity == head.entity && last.group != head.group && head.group != 0 &&
        std::equal(nodes.begin(), corners, lastCorners.begin())) {
        groups.addMember(groups.partOf(type.dim, last.group, last.entity), last.id);
        groups.addMember({type.dim, head.group < 0 ? -head.group : head.group}, last.id);
        log.count(listMshCopies, type.name, 1, {mesh.sourceFiles.front(), head.line});
        return true;
    }
    lastType = &type;
    last = head;
    std::copy(nodes.begin(), corners, lastCorners.begin());
    return false;
}

void MshElements::readVersion1()
{
    copiesPossible = true;
    const std::int64_t count = input.countOf(input.textInteger(), 10, "elements");
    for (std::int64_t k = 0; k < count; ++k) {
        Head head;
        head.id = input.textInteger();
        head.line = input.line();
        const std::int64_t number = input.textInteger();
        head.group = input.textInteger();
        head.entity = input.textInteger();
        const std::int64_t entries = input.textInteger();
        const MshType* type = findMshType(number);
        if (!type) {
            skipUnknown(number, 1);
            input.skipLine();
            continue;
        }
        if (entries < type->nodes) {
            input.fail("a " + std::string(type->name) + " does not have " + std::to_string(entries) + " nodes");
        }
        readNodes(type->nodes, false);
        if (entries > type->nodes) {
            input.skipLine();
            warnOfMoreNodes(log, {mesh.sourceFiles.front(), head.line}, type->name, head.id,
                            static_cast<std::size_t>(type->nodes), static_cast<std::size_t>(entries));
        }
        add(*type, head);
    }
}

void MshElements::readVersion2()
{
    copiesPossible = true;
    const std::int64_t count = input.countOf(input.textInteger(), 6, "elements");
    if (input.isBinary()) {
        input.skipLine();
        readBytes2(count);
        return;
    }
    for (std::int64_t k = 0; k < count; ++k) {
        readTextElement2();
        if (k % reportEvery == 0) {
            input.report();
        }
    }
}

// The first tag is the physical group, the second the entity; partitions follow.
void MshElements::readTags2(std::int64_t count, Head& head)
{
    if (count < 0 || count > mostTags) {
        input.fail("an element with " + std::to_string(count) + " tags");
    }
    for (std::int64_t k = 0; k < count; ++k) {
        const std::int64_t tag = input.integer();
        head.group = k == 0 ? tag : head.group;
        head.entity = k == 1 ? tag : head.entity;
    }
}

void MshElements::readTextElement2()
{
    Head head;
    head.id = input.textInteger();
    head.line = input.line();
    const std::int64_t number = input.textInteger();
    const MshType* type = findMshType(number);
    if (!type) {
        skipUnknown(number, 1);
        input.skipLine();
        return;
    }
    readTags2(input.textInteger(), head);
    readNodes(type->nodes, false);
    add(*type, head);
}

// Blocks of elements that have type and count of tags in common.
void MshElements::readBytes2(std::int64_t count)
{
    while (count > 0) {
        const std::int64_t number = input.integer();
        const std::int64_t follow = input.integer();
        const std::int64_t tags = input.integer();
        const MshType* type = findMshType(number);
        if (!type) {
            skipUnknown(number, count);
            return;
        }
        input.countOf(follow, byteWord * static_cast<std::size_t>(1 + type->nodes), "elements");
        if (follow < 1 || follow > count) {
            input.fail("a block of " + std::to_string(follow) + " elements where " + std::to_string(count) +
                       " are left");
        }
        for (std::int64_t k = 0; k < follow; ++k) {
            Head head;
            head.id = input.integer();
            readTags2(tags, head);
            readNodes(type->nodes, false);
            add(*type, head);
        }
        count -= follow;
        input.report();
    }
}

// --- version 4 ---

void MshElements::readVersion40()
{
    std::int64_t blocks = input.countOf(input.size(), least(input, 8, 20), "blocks of elements");
    input.size();
    for (; blocks > 0; --blocks) {
        const std::int64_t tag = input.integer();
        const std::int64_t dim = input.integer();
        const std::int64_t number = input.integer();
        if (!readBlock4({static_cast<int>(dim), tag}, number, input.size(), false)) {
            return;
        }
    }
}

void MshElements::readVersion41()
{
    std::int64_t blocks = input.countOf(input.size(), least(input, 8, 16), "blocks of elements");
    for (int k = 0; k < 3; ++k) {
        input.size(); // elements, lowest and highest id
    }
    for (; blocks > 0; --blocks) {
        const std::int64_t dim = input.integer();
        const std::int64_t tag = input.integer();
        const std::int64_t number = input.integer();
        if (!readBlock4({static_cast<int>(dim), tag}, number, input.size(), true)) {
            return;
        }
    }
}

// False where the rest of the section cannot be read: bytes of a type whose length is not known.
bool MshElements::skipUnknown(std::int64_t number, std::int64_t count)
{
    const std::string name = "type " + std::to_string(number);
    log.count(listElementsNotDrawn, name, static_cast<std::uint64_t>(count), input.place());
    if (input.isBinary()) {
        log.warn(warnMshType, input.place(),
                 "element " + name + " is not known: the elements from there to the end of the section are not read");
        return false;
    }
    log.warn(warnMshType, input.place(), "element " + name + " is not known: left out");
    return true;
}

bool MshElements::readBlock4(MshGroups::Key entity, std::int64_t number, std::int64_t count, bool idsAreSizes)
{
    const MshType* type = findMshType(number);
    const std::size_t values = type ? static_cast<std::size_t>(type->nodes) + 1 : 1;
    input.countOf(count, least(input, 2 * values - 1, byteWord * values), "elements");
    if (!type && !skipUnknown(number, count)) {
        return false;
    }
    const std::vector<std::int64_t>& in = groups.groupsOf(entity);
    Head head;
    head.group = in.empty() ? 0 : in.front();
    head.entity = entity.second;
    for (std::int64_t k = 0; k < count; ++k) {
        head.id = idsAreSizes ? input.size() : input.integer();
        head.line = input.line();
        if (!type) {
            input.skipLine();
            continue;
        }
        readNodes(type->nodes, idsAreSizes);
        add(*type, head);
        if (in.size() > 1) {
            addToGroups(*type, in, head.id);
        }
        if (k % reportEvery == 0) {
            input.report();
        }
    }
    return true;
}

// Of points the node is the member.
void MshElements::addToGroups(const MshType& type, const std::vector<std::int64_t>& in, std::int64_t id)
{
    for (const std::int64_t group : in) {
        if (type.dim == 0) {
            groups.addNode(group, nodes[0]);
        } else {
            groups.addMember({type.dim, group}, id);
        }
    }
}

// --- all of them ---

namespace {

struct Copy
{
    std::int64_t id;
    std::size_t block;
    std::size_t element;
};

// The elements whose ids occur more than once, equal ids side by side and in the order of the file.
std::vector<Copy> copiesOf(const MeshFile& file)
{
    std::vector<std::int64_t> ids;
    for (const ElementBlock& block : file.blocks) {
        ids.insert(ids.end(), block.ids.begin(), block.ids.end());
    }
    if (std::adjacent_find(ids.begin(), ids.end(), std::greater_equal<std::int64_t>()) == ids.end()) {
        return {};
    }
    std::sort(ids.begin(), ids.end());
    std::unordered_map<std::int64_t, bool> repeated;
    for (std::size_t k = 1; k < ids.size(); ++k) {
        if (ids[k] == ids[k - 1]) {
            repeated[ids[k]] = true;
        }
    }
    std::vector<Copy> copies;
    for (std::size_t b = 0; b < file.blocks.size() && !repeated.empty(); ++b) {
        for (std::size_t e = 0; e < file.blocks[b].size(); ++e) {
            if (repeated.count(file.blocks[b].ids[e])) {
                copies.push_back({file.blocks[b].ids[e], b, e});
            }
        }
    }
    std::stable_sort(copies.begin(), copies.end(), [](const Copy& a, const Copy& b) { return a.id < b.id; });
    return copies;
}

bool sameElement(const Mesh& mesh, const MeshFile& file, const Copy& a, const Copy& b)
{
    const ElementBlock& one = file.blocks[a.block];
    const ElementBlock& two = file.blocks[b.block];
    const std::size_t slots = static_cast<std::size_t>(mesh.types[one.type].slots());
    return a.id == b.id && one.type == two.type &&
           std::equal(&one.nodes[a.element * slots], &one.nodes[a.element * slots] + slots,
                      &two.nodes[b.element * slots]);
}

} // namespace

// Versions 1 and 2 written group by group: copies of an element lie far apart, but have its number.
void MshElements::foldCopies()
{
    MeshFile& file = mesh.files.front();
    const std::vector<Copy> copies = copiesOf(file);
    for (std::size_t k = 0, first = 0; k < copies.size(); ++k) {
        if (k == first || !sameElement(mesh, file, copies[first], copies[k])) {
            first = k;
            continue;
        }
        ElementBlock& block = file.blocks[copies[k].block];
        groups.addMember(file.blocks[copies[first].block].part[copies[first].element], copies[k].id);
        groups.addMember(block.part[copies[k].element], copies[k].id);
        log.count(listMshCopies, mesh.types[block.type].name, 1, mesh.placeOf(block, copies[k].element));
        block.part[copies[k].element] = noPart;
    }
}

void MshElements::finish()
{
    if (copiesPossible) {
        foldCopies();
    }
}

} // namespace kvo
