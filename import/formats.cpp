// The table of formats. A row is there when its folder is (CMakeLists.txt defines its KVO_FORMAT_ name).
#include "deck.h"

#ifdef KVO_FORMAT_ABAQUS
#include "abaqus/inp_reader.h"
#endif
#ifdef KVO_FORMAT_ANSYS
#include "ansys/cdb_reader.h"
#endif
#ifdef KVO_FORMAT_GMSH
#include "gmsh/msh_reader.h"
#endif
#ifdef KVO_FORMAT_IDEAS
#include "ideas/unv_reader.h"
#endif
#ifdef KVO_FORMAT_KEYWORD
#include "keyword/key_reader.h"
#endif
#ifdef KVO_FORMAT_NASTRAN
#include "nastran/bdf_reader.h"
#endif
#ifdef KVO_FORMAT_OBJ
#include "obj/obj_reader.h"
#endif
#ifdef KVO_FORMAT_PLY
#include "ply/ply_reader.h"
#endif
#ifdef KVO_FORMAT_STL
#include "stl/stl_reader.h"
#endif
#ifdef KVO_FORMAT_VTK
#include "vtk/vtk_reader.h"
#endif

namespace kvo {

// Formats with a signature come first, then those that are told by their first statements, last the loose ones.
const std::vector<DeckFormat>& deckFormats()
{
    static const std::vector<DeckFormat> formats = {
#ifdef KVO_FORMAT_GMSH
        {"gmsh", "Gmsh", ".msh", "versions 1, 2, 4.0 and 4.1, text and binary; one part per physical group or entity",
         looksLikeMsh, readMsh},
#endif
#ifdef KVO_FORMAT_VTK
        {"vtu", "VTK XML", ".vtu .vtp",
         "unstructured grids and polygons; text, base64 and appended data, zlib; one part per block or cell type",
         looksLikeVtu, readVtu},
        {"vtk", "VTK legacy", ".vtk", "unstructured grids and polygons, text and binary", looksLikeVtk, readVtk},
#endif
#ifdef KVO_FORMAT_PLY
        {"ply", "PLY", ".ply", "polygons, text and binary of either byte order", looksLikePly, readPly},
#endif
#ifdef KVO_FORMAT_STL
        {"stl", "STL", ".stl", "triangles, ASCII or binary; one part per solid; equal vertices become one node",
         looksLikeStl, readStl},
#endif
#ifdef KVO_FORMAT_ANSYS
        {"ansys", "ANSYS archive", ".cdb",
         "shells, solids, beams, springs, masses; one part per type, real constants, material and section; components",
         looksLikeCdb, readCdb},
#endif
#ifdef KVO_FORMAT_IDEAS
        {"unv", "I-DEAS universal", ".unv .uff",
         "shells, solids, beams, rods, springs; one part per physical property; groups, units", looksLikeUnv, readUnv},
#endif
#ifdef KVO_FORMAT_KEYWORD
        {"keyword", "Keyword", ".k .key .dyn",
         "shells, solids, beams, discrete elements; one part per *PART; sets, includes, transformed includes",
         looksLikeKeyword, readKeyword},
#endif
#ifdef KVO_FORMAT_ABAQUS
        {"abaqus", "Abaqus/CalculiX", ".inp",
         "shells, solids, beams, trusses, springs, dashpots; sections, sets, instances, includes", looksLikeInp,
         readInp},
#endif
#ifdef KVO_FORMAT_NASTRAN
        {"nastran", "Nastran bulk data", ".bdf .dat .nas",
         "shells, solids, bars, beams, rods, springs, dampers, bushes; one part per property; local systems, includes",
         looksLikeBdf, readBdf},
#endif
#ifdef KVO_FORMAT_OBJ
        {"obj", "Wavefront OBJ", ".obj", "polygons and lines; one part per object, group and material", looksLikeObj,
         readObj},
#endif
    };
    return formats;
}

} // namespace kvo
