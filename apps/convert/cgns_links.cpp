// A file of links to the bases of another.
#include "cgns_links.h"

#include <cgns_io.h>
#include <cgnslib.h>

#include <cstring>
#include <exception>
#include <filesystem>
#include <vector>

namespace fs = std::filesystem;

namespace kvo {

namespace {

constexpr float libraryVersion = CGNS_VERSION / 1000.0F;
constexpr float firstUnknownVersion = 5; // may have changed anything
constexpr int nameLength = CGIO_MAX_NAME_LENGTH + 1;

struct Content
{
    int type = CGIO_FILE_NONE;
    float version = 0;
    std::vector<std::string> bases;
};

void readChild(int file, double root, const char* child, Content& content)
{
    double node = 0;
    char label[CGIO_MAX_LABEL_LENGTH + 1] = {};
    if (cgio_get_node_id(file, root, child, &node) != CG_OK) {
        return;
    }
    cgio_get_label(file, node, label);
    if (std::strcmp(label, "CGNSBase_t") == 0) {
        content.bases.push_back(child);
    } else if (std::strcmp(label, "CGNSLibraryVersion_t") == 0) {
        int dimensions = 0;
        cgsize_t sizes[CGIO_MAX_DIMENSIONS] = {};
        const bool one =
            cgio_get_dimensions(file, node, &dimensions, sizes) == CG_OK && dimensions == 1 && sizes[0] == 1;
        if (one && cgio_read_all_data_type(file, node, "R4", &content.version) != CG_OK) {
            content.version = 0;
        }
    }
    cgio_release_id(file, node);
}

Content contentOf(const std::string& path)
{
    Content content;
    int file = 0, count = 0, got = 0;
    double root = 0;
    if (cgio_check_file(path.c_str(), &content.type) != CG_OK ||
        cgio_open_file(path.c_str(), CGIO_MODE_READ, content.type, &file) != CG_OK) {
        return content;
    }
    if (cgio_get_root_id(file, &root) == CG_OK && cgio_number_children(file, root, &count) == CG_OK && count > 0) {
        std::vector<char> names(static_cast<std::size_t>(count) * nameLength);
        cgio_children_names(file, root, 1, count, nameLength, &got, names.data());
        for (int k = 0; k < got; ++k) {
            readChild(file, root, &names[static_cast<std::size_t>(k) * nameLength], content);
        }
    }
    cgio_close_file(file);
    return content;
}

bool writeLinks(const std::string& path, const Content& content, const std::string& target)
{
    int file = 0, inner = 0;
    double root = 0, node = 0;
    if (cg_set_file_type(content.type) != CG_OK || cg_open(path.c_str(), CG_MODE_WRITE, &file) != CG_OK) {
        return false;
    }
    bool linked = cg_get_cgio(file, &inner) == CG_OK && cgio_get_root_id(inner, &root) == CG_OK;
    for (const std::string& base : content.bases) {
        const std::string inside = "/" + base;
        linked = linked && cgio_create_link(inner, root, base.c_str(), target.c_str(), inside.c_str(), &node) == CG_OK;
    }
    return cg_close(file) == CG_OK && linked;
}

} // namespace

CgnsLinks::CgnsLinks(const std::string& target)
{
    const Content content = contentOf(target);
    if (content.version <= libraryVersion || content.version >= firstUnknownVersion) {
        return;
    }
    try {
        folder = std::make_unique<ScratchFolder>("kvo-cgns-");
    } catch (const std::exception&) {
        return; // the library says what it does not like about the file itself
    }
    if (writeLinks(folder->path() + "/links", content, fs::absolute(target))) {
        name = folder->path() + "/links";
    }
}

CgnsLinks::~CgnsLinks() = default;

} // namespace kvo
