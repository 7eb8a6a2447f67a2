// The tiny model as Exodus II: a block per element, with names in all cases.
#include <netcdf.h>

#include <stdexcept>

#include "tiny_model.h"

namespace {

void check(int status)
{
    if (status != NC_NOERR) {
        throw std::runtime_error(nc_strerror(status));
    }
}

class Writer
{
public:
    Writer(const std::string& path, ExodusStorage storage)
    {
        const int modes[] = {NC_CLOBBER, NC_CLOBBER | NC_64BIT_DATA, NC_CLOBBER | NC_NETCDF4};
        check(nc_create(path.c_str(), modes[static_cast<int>(storage)], &id));
        integer = storage == ExodusStorage::Data64 ? NC_INT64 : NC_INT;
    }
    ~Writer() { nc_close(id); }

    int dimension(const std::string& name, std::size_t length)
    {
        int result = 0;
        check(nc_def_dim(id, name.c_str(), length, &result));
        return result;
    }
    int variable(const std::string& name, nc_type type, const std::vector<int>& dimensions)
    {
        int result = 0;
        check(nc_def_var(id, name.c_str(), type, static_cast<int>(dimensions.size()), dimensions.data(), &result));
        return result;
    }
    void text(int variable, const char* attribute, const std::string& value)
    {
        check(nc_put_att_text(id, variable, attribute, value.size(), value.c_str()));
    }
    // Ends the definitions first where it must.
    void put(int variable, const std::vector<long long>& values)
    {
        nc_enddef(id);
        check(nc_put_var_longlong(id, variable, values.data()));
    }
    void put(int variable, const std::vector<double>& values)
    {
        nc_enddef(id);
        check(nc_put_var_double(id, variable, values.data()));
    }
    void put(int variable, const std::string& rows)
    {
        nc_enddef(id);
        check(nc_put_var_text(id, variable, rows.c_str()));
    }
    void define() { nc_redef(id); }

    int id = -1;
    nc_type integer = NC_INT;
    std::int64_t shift = 0; // of ids
};

struct BlockRow
{
    const char* type; // as writers spell it
    long long id;
    const char* name;
};

const BlockRow blocks[] = {{"hex", 7, "cube"},  {"PYRAMID5", 12, ""},   {"Wedge", 3, "keil"},
                           {"TETRA", 4, "tet"}, {"SHELL4", 5, "floor"}, {"tri3", 6, ""},
                           {"BEAM", 8, "mast"}, {"Spring2", 9, ""},     {"SPHERE", 10, "weight"}};

constexpr std::size_t nameLength = 33;

std::string padded(const std::string& name)
{
    std::string row = name;
    row.resize(nameLength, '\0');
    return row;
}

void writeNodes(Writer& out)
{
    const int nodes = out.dimension("num_nodes", tinyNodes().size());
    for (std::size_t d = 0; d < 3; ++d) {
        std::vector<double> values;
        for (const auto& node : tinyNodes()) {
            values.push_back(node[d]);
        }
        out.define();
        out.put(out.variable(std::string("coord") + "xyz" [d], NC_DOUBLE, { nodes }), values);
    }
    std::vector<long long> ids;
    for (std::size_t k = 1; k <= tinyNodes().size(); ++k) {
        ids.push_back(nodeIdOf(static_cast<int>(k)) + out.shift);
    }
    out.define();
    out.put(out.variable("node_num_map", out.integer, {nodes}), ids);
}

void writeBlock(Writer& out, std::size_t index)
{
    const TinyElement& element = tinyElements()[index];
    const std::string number = std::to_string(index + 1);
    out.define();
    const int one = out.dimension("num_el_in_blk" + number, 1);
    const int each = out.dimension("num_nod_per_el" + number, element.corners.size());
    const int connect = out.variable("connect" + number, out.integer, {one, each});
    out.text(connect, "elem_type", blocks[index].type);
    out.put(connect, std::vector<long long>(element.corners.begin(), element.corners.end()));
    std::vector<double> attributes;
    if (element.kind == std::string("beam")) {
        attributes = {2.5, 1, 1, 1, 0, 1, 0};
    }
    if (element.kind == std::string("quad")) {
        attributes = {0.125};
    }
    if (!attributes.empty()) {
        out.define();
        const int columns = out.dimension("num_att_in_blk" + number, attributes.size());
        out.put(out.variable("attrib" + number, NC_DOUBLE, {one, columns}), attributes);
    }
}

void writeBlocks(Writer& out)
{
    const std::size_t count = tinyElements().size();
    out.define();
    const int length = out.dimension("len_name", nameLength);
    const int elements = out.dimension("num_elem", count);
    const int number = out.dimension("num_el_blk", count);
    std::vector<long long> ids, blockIds;
    std::string names;
    for (std::size_t k = 0; k < count; ++k) {
        ids.push_back(tinyElements()[k].id + out.shift);
        blockIds.push_back(blocks[k].id);
        names += padded(blocks[k].name);
    }
    out.put(out.variable("eb_prop1", out.integer, {number}), blockIds);
    out.define();
    out.put(out.variable("eb_names", NC_CHAR, {number, length}), names);
    out.define();
    out.put(out.variable("elem_num_map", out.integer, {elements}), ids);
    for (std::size_t k = 0; k < count; ++k) {
        writeBlock(out, k);
    }
}

// A set of each kind, with these members.
void writeSet(Writer& out, const std::string& counts, const std::string& prefix, const std::string& length,
              const std::string& members, const std::vector<long long>& positions)
{
    out.define();
    const int one = out.dimension(counts, 1);
    const int size = out.dimension(length + "1", positions.size());
    out.put(out.variable(prefix + "_prop1", out.integer, {one}), std::vector<long long>{44});
    out.define();
    out.put(out.variable(members + "1", out.integer, {size}), positions);
}

} // namespace

void writeTinyExodus(const std::string& path, ExodusStorage storage, std::int64_t shift)
{
    Writer out(path, storage);
    out.shift = shift;
    out.text(NC_GLOBAL, "title", "a tiny model");
    out.dimension("num_dim", 3);
    writeNodes(out);
    writeBlocks(out);
    writeSet(out, "num_node_sets", "ns", "num_nod_ns", "node_ns", {9, 5, 6});
    writeSet(out, "num_side_sets", "ss", "num_side_ss", "elem_ss", {1, 1, 2});
}
