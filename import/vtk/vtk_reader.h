// VTK's files: XML files of unstructured grids and polygons (.vtu, .vtp), and legacy files of the same (.vtk).
//
// A part is a value of a cell array that says so ("ObjectId", "MaterialIds", "gmsh:physical" and the like), else a cell
// type. Ids are those of the arrays GlobalNodeId and GlobalElementId, or of the arrays that the file marks as global
// ids; else points and cells are numbered from 1. Cells of higher order are drawn by their corners, polygons of more
// than four corners as triangles.
#ifndef KVO_IMPORT_VTK_READER_H
#define KVO_IMPORT_VTK_READER_H

#include <memory>

#include "import_log.h"
#include "mesh.h"
#include "progress.h"
#include "text/mapped_file.h"

namespace kvo {

// Summary list: data arrays that are not read.
extern const char* const listVtkArrays;

// The first element is a <VTKFile>.
bool looksLikeVtu(const MappedFile& file);
// The first line is "# vtk DataFile Version".
bool looksLikeVtk(const MappedFile& file);

// The finished mesh. Throws ImportError.
Mesh readVtu(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);
Mesh readVtk(std::unique_ptr<MappedFile> file, ImportLog& log, Progress progress);

} // namespace kvo

#endif
