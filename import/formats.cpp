// The table of formats.
#include "deck.h"

#include "abaqus/inp_reader.h"
#include "ansys/cdb_reader.h"
#include "gmsh/msh_reader.h"
#include "ideas/unv_reader.h"
#include "keyword/key_reader.h"
#include "nastran/bdf_reader.h"
#include "obj/obj_reader.h"
#include "ply/ply_reader.h"
#include "stl/stl_reader.h"
#include "vtk/vtk_reader.h"

namespace kvo {

// Formats with a signature come first, then those that are told by their first statements, last the loose ones.
const std::vector<DeckFormat>& deckFormats()
{
    static const std::vector<DeckFormat> formats = {
        {"gmsh", "Gmsh", ".msh", "versions 1, 2, 4.0 and 4.1, text and binary; one part per physical group or entity",
         looksLikeMsh, readMsh},
        {"vtu", "VTK XML", ".vtu .vtp",
         "unstructured grids and polygons; text, base64 and appended data, zlib; one part per block or cell type",
         looksLikeVtu, readVtu},
        {"vtk", "VTK legacy", ".vtk", "unstructured grids and polygons, text and binary", looksLikeVtk, readVtk},
        {"ply", "PLY", ".ply", "polygons, text and binary of either byte order", looksLikePly, readPly},
        {"stl", "STL", ".stl", "triangles, ASCII or binary; one part per solid; equal vertices become one node",
         looksLikeStl, readStl},
        {"ansys", "ANSYS archive", ".cdb",
         "shells, solids, beams, springs, masses; one part per type, real constants, material and section; components",
         looksLikeCdb, readCdb},
        {"unv", "I-DEAS universal", ".unv .uff",
         "shells, solids, beams, rods, springs; one part per physical property; groups, units", looksLikeUnv, readUnv},
        {"keyword", "Keyword", ".k .key .dyn",
         "shells, solids, beams, discrete elements; one part per *PART; sets, includes, transformed includes",
         looksLikeKeyword, readKeyword},
        {"abaqus", "Abaqus/CalculiX", ".inp",
         "shells, solids, beams, trusses, springs, dashpots; sections, sets, instances, includes", looksLikeInp,
         readInp},
        {"nastran", "Nastran bulk data", ".bdf .dat .nas",
         "shells, solids, bars, beams, rods, springs, dampers, bushes; one part per property; local systems, includes",
         looksLikeBdf, readBdf},
        {"obj", "Wavefront OBJ", ".obj", "polygons and lines; one part per object, group and material", looksLikeObj,
         readObj},
    };
    return formats;
}

} // namespace kvo
