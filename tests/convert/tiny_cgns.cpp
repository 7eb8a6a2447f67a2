// The tiny model as CGNS: one section of mixed solids, one each of quads, triangles, bars and points, and a structured
// zone.
#include <cgnslib.h>

#include <stdexcept>

#include "tiny_model.h"

namespace {

void check(int status)
{
    if (status != CG_OK) {
        throw std::runtime_error(cg_get_error());
    }
}

void writeCoordinates(int file, int zone, const std::vector<std::array<double, 3>>& nodes)
{
    for (std::size_t d = 0; d < 3; ++d) {
        std::vector<double> values;
        for (const auto& node : nodes) {
            values.push_back(node[d]);
        }
        int ignored = 0;
        check(cg_coord_write(file, 1, zone, CGNS_ENUMV(RealDouble), (std::string("Coordinate") + "XYZ"[d]).c_str(),
                             values.data(), &ignored));
    }
}

// Elements 1 to 4.
void writeSolids(int file, int zone)
{
    const CGNS_ENUMT(ElementType_t)
        types[] = {CGNS_ENUMV(HEXA_8), CGNS_ENUMV(PYRA_5), CGNS_ENUMV(PENTA_6), CGNS_ENUMV(TETRA_4)};
    std::vector<cgsize_t> nodes, offsets = {0};
    for (std::size_t k = 0; k < 4; ++k) {
        nodes.push_back(types[k]);
        nodes.insert(nodes.end(), tinyElements()[k].corners.begin(), tinyElements()[k].corners.end());
        offsets.push_back(static_cast<cgsize_t>(nodes.size()));
    }
    int section = 0;
    check(cg_poly_section_write(file, 1, zone, "body", CGNS_ENUMV(MIXED), 1, 4, 0, nodes.data(), offsets.data(),
                                &section));
}

void writeSection(int file, int zone, const char* name, CGNS_ENUMT(ElementType_t) type, std::size_t element, int id)
{
    const std::vector<int>& corners = tinyElements()[element].corners;
    const std::vector<cgsize_t> nodes(corners.begin(), corners.end());
    int section = 0;
    check(cg_section_write(file, 1, zone, name, type, id, id, 0, nodes.data(), &section));
}

// A polygon of five corners: element 9.
void writePolygon(int file, int zone)
{
    const cgsize_t nodes[] = {1, 2, 10, 12, 4}, offsets[] = {0, 5};
    int section = 0;
    check(cg_poly_section_write(file, 1, zone, "outline", CGNS_ENUMV(NGON_n), 9, 9, 0, nodes, offsets, &section));
}

void writeConditions(int file, int zone)
{
    int condition = 0;
    const cgsize_t faces[] = {5, 6}, corners[] = {1, 2, 3};
    check(cg_boco_write(file, 1, zone, "bottom", CGNS_ENUMV(BCWall), CGNS_ENUMV(PointRange), 2, faces, &condition));
    check(cg_boco_gridlocation_write(file, 1, zone, condition, CGNS_ENUMV(FaceCenter)));
    check(cg_goto(file, 1, "Zone_t", zone, "ZoneBC_t", 1, "BC_t", condition, "end"));
    check(cg_famname_write("walls"));
    check(cg_boco_write(file, 1, zone, "corner", CGNS_ENUMV(BCInflow), CGNS_ENUMV(PointList), 3, corners, &condition));
}

void writeUnstructured(int file)
{
    const cgsize_t sizes[] = {static_cast<cgsize_t>(tinyNodes().size()), 4, 0};
    int zone = 0, family = 0;
    check(cg_zone_write(file, 1, "solids", sizes, CGNS_ENUMV(Unstructured), &zone));
    writeCoordinates(file, zone, tinyNodes());
    writeSolids(file, zone);
    writeSection(file, zone, "floor", CGNS_ENUMV(QUAD_4), 4, 5);
    writeSection(file, zone, "flap", CGNS_ENUMV(TRI_3), 5, 6);
    writeSection(file, zone, "mast", CGNS_ENUMV(BAR_2), 6, 7);
    writeSection(file, zone, "weight", CGNS_ENUMV(NODE), 8, 8);
    writePolygon(file, zone);
    check(cg_family_write(file, 1, "walls", &family));
    writeConditions(file, zone);
}

// i runs along x, j along z, k along y.
void writeStructured(int file)
{
    const cgsize_t sizes[] = {3, 2, 2, 2, 1, 1, 0, 0, 0};
    int zone = 0, condition = 0;
    check(cg_zone_write(file, 1, "block", sizes, CGNS_ENUMV(Structured), &zone));
    std::vector<std::array<double, 3>> nodes;
    for (int k = 0; k < 2; ++k) {
        for (int j = 0; j < 2; ++j) {
            for (int i = 0; i < 3; ++i) {
                nodes.push_back({5.0 + i, double(k), double(j)});
            }
        }
    }
    writeCoordinates(file, zone, nodes);
    const cgsize_t inlet[] = {1, 1, 1, 1, 2, 2}; // nodes of the face at i = 1
    check(cg_boco_write(file, 1, zone, "inlet", CGNS_ENUMV(BCInflow), CGNS_ENUMV(PointRange), 2, inlet, &condition));
    const cgsize_t outlet[] = {3, 1, 1, 3, 1, 1}; // one face
    check(cg_boco_write(file, 1, zone, "outlet", CGNS_ENUMV(BCOutflow), CGNS_ENUMV(PointRange), 2, outlet, &condition));
    check(cg_boco_gridlocation_write(file, 1, zone, condition, CGNS_ENUMV(IFaceCenter)));
    check(cg_goto(file, 1, "Zone_t", zone, "end"));
    check(cg_famname_write("fluid"));
}

} // namespace

void writeTinyCgns(const std::string& path, bool adf)
{
    int file = 0, base = 0;
    check(cg_set_file_type(adf ? CG_FILE_ADF : CG_FILE_HDF5));
    check(cg_open(path.c_str(), CG_MODE_WRITE, &file));
    check(cg_base_write(file, "Base", 3, 3, &base));
    writeUnstructured(file);
    writeStructured(file);
    check(cg_close(file));
}
