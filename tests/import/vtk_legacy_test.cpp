// VTK's legacy files.
#include "hostile.h"
#include "vtk/vtk_reader.h"

namespace {

class VtkLegacyFiles : public HostileTest
{
protected:
    kvo::Mesh readVtk(const std::string& text) { return read(text, "grid.vtk"); }
    std::string errorWith(std::string text, const std::string& old, const std::string& instead)
    {
        const std::size_t at = text.find(old);
        EXPECT_NE(at, std::string::npos) << old;
        return outcome(text.replace(at, old.size(), instead), "grid.vtk");
    }
};

std::string head(const std::string& encoding = "ASCII", const std::string& dataset = "UNSTRUCTURED_GRID")
{
    return "# vtk DataFile Version 3.0\nA grid\n" + encoding + "\nDATASET " + dataset + "\n";
}

const char* const fivePoints = "POINTS 5 float\n0 0 0 1 0 0 1 1 0\n0 1 0 .5 .5 1\n";

std::string textGrid(const std::string& data = "")
{
    return head() + fivePoints + "CELLS 3 12\n4 0 1 2 3\n5 0 1 2 3 4\n0\nCELL_TYPES 3\n9\n14\n2\n" + data;
}

std::string bytesGrid(bool offsets)
{
    Bytes out(true);
    out.plain(head("BINARY")).plain("POINTS 5 double\n");
    out.reals({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, .5, .5, 1}).plain("\nMETADATA\nINFORMATION 0\n\n");
    if (offsets) {
        out.plain("CELLS 3 9\nOFFSETS vtktypeint64\n").longs({0, 4, 9}).plain("\nCONNECTIVITY vtktypeint64\n");
        out.longs({0, 1, 2, 3, 0, 1, 2, 3, 4}).plain("\nCELL_TYPES 2\n").ints({9, 14});
    } else {
        out.plain("CELLS 2 11\n").ints({4, 0, 1, 2, 3, 5, 0, 1, 2, 3, 4}).plain("\nCELL_TYPES 2\n").ints({9, 14});
    }
    out.plain("\nCELL_DATA 2\nSCALARS material int\nLOOKUP_TABLE default\n").ints({3, 4});
    out.plain("\nFIELD FieldData 2\nflags 1 2 bit\n").plain(std::string(1, '\x40'));
    out.plain("\nspeed 2 2 float\n").floats({1, 2, 3, 4}).plain("\nPOINT_DATA 5\nGLOBAL_IDS ids vtkIdType\n");
    return out.ints({10, 20, 30, 40, 50}).plain("\n").text;
}

} // namespace

TEST_F(VtkLegacyFiles, Text)
{
    const kvo::Mesh mesh = readVtk(textGrid());
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4, 5}));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"VTK_QUAD", "VTK_PYRAMID"}));
    EXPECT_EQ(log.listCount(kvo::listElementsNotDrawn, "VTK_POLY_VERTEX"), 1u);
    ASSERT_EQ(mesh.facts.size(), 1u);
    EXPECT_EQ(mesh.facts[0].second, "A grid");
    EXPECT_EQ(mesh.formatName, "VTK legacy");
}

TEST_F(VtkLegacyFiles, BytesOfBothVersions)
{
    for (const bool offsets : {false, true}) {
        const kvo::Mesh mesh = readVtk(bytesGrid(offsets));
        EXPECT_EQ(nodesOf(mesh, 2), (Ids{10, 20, 30, 40, 50}));
        EXPECT_EQ(pointOf(mesh, 50), (Point{.5, .5, 1}));
        EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"material 3", "material 4"}));
        EXPECT_EQ(log.listCount(kvo::listVtkArrays, "cell array flags"), 1u);
        EXPECT_EQ(log.listCount(kvo::listVtkArrays, "cell array speed"), 1u);
        EXPECT_TRUE(log.warnings().empty());
    }
}

TEST_F(VtkLegacyFiles, OffsetsAsText)
{
    const kvo::Mesh mesh = readVtk(head() + fivePoints +
                                   "CELLS 3 9\nOFFSETS vtktypeint64\n0 4\n9\nCONNECTIVITY vtktypeint64\n"
                                   "0 1 2 3 0 1 2 3 4\nCELL_TYPES 2\n9 14\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4, 5}));
}

TEST_F(VtkLegacyFiles, PolyData)
{
    const kvo::Mesh mesh = readVtk(head("ASCII", "POLYDATA") + fivePoints +
                                   "VERTICES 1 2\n1 4\nLINES 1 4\n3 0 1 2\nPOLYGONS 2 9\n4 0 1 2 3\n3 0 1 4\n"
                                   "TRIANGLE_STRIPS 1 5\n4 0 1 3 2\n");
    EXPECT_EQ(elementIds(mesh), (Ids{2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 4), (Ids{1, 2, 5}));
    EXPECT_EQ(nodesOf(mesh, 6), (Ids{2, 3, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 7), (Ids{4, 2, 3}));
}

TEST_F(VtkLegacyFiles, DataOfPolyDataAreInTheOrderOfTheFormat)
{
    const kvo::Mesh mesh = readVtk(head("ASCII", "POLYDATA") + fivePoints +
                                   "POLYGONS 2 9\n4 0 1 2 3\n3 0 1 4\nLINES 1 3\n2 0 1\n"
                                   "CELL_DATA 3\nSCALARS PartId int\nLOOKUP_TABLE default\n4 6 7\n");
    EXPECT_EQ(nodesOf(mesh, 1), (Ids{1, 2, kvo::noNode}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(partOf(mesh, 1).id, 4);
    EXPECT_EQ(partOf(mesh, 3).id, 7);
}

TEST_F(VtkLegacyFiles, KeywordsAreOfAnyCase)
{
    EXPECT_EQ(nodesOf(readVtk("# vtk DataFile Version 3.0\n\nascii\nfield f 1\ntime 1 1 double\n0.5\n"
                              "dataset unstructured_grid\npoints 3 Float\n0 0 0 1 0 0 1 1 0\n"
                              "cells 1 4\n3 0 1 2\ncell_types 1\n5\n"),
                      1),
              (Ids{1, 2, 3}));
}

TEST_F(VtkLegacyFiles, ScalarsWithoutATable)
{
    const kvo::Mesh text = readVtk(textGrid("CELL_DATA 3\nSCALARS q float\n1 2 3\nSCALARS p float 2\n1 2 3 4 5 6\n"
                                            "SCALARS PartId int 1\n4 5 6\n"));
    EXPECT_EQ(partOf(text, 2).id, 5);
    Bytes out(true);
    out.plain(head("BINARY")).plain("POINTS 3 float\n").floats({0, 0, 0, 1, 0, 0, 1, 1, 0});
    out.plain("\nCELLS 1 4\n").ints({3, 0, 1, 2}).plain("\nCELL_TYPES 1\n").ints({5});
    out.plain("\nCELL_DATA 1\nSCALARS q double\n").reals({1});
    out.plain("\nSCALARS GlobalElementId int 1\n").ints({0x0a0d2009}).plain("\n"); // bytes that are blanks as text
    EXPECT_EQ(elementIds(readVtk(out.text)), Ids{0x0a0d2009});
}

TEST_F(VtkLegacyFiles, DataOfAllKinds)
{
    const kvo::Mesh mesh = readVtk(
        textGrid("POINT_DATA 5\nSCALARS t float 2\nLOOKUP_TABLE own\n1 2 3 4 5 6 7 8 9 nan\nLOOKUP_TABLE own 2\n0 0 0 "
                 "1 1 1 1 1\n"
                 "VECTORS v double\n1 2 3 4 5 6 7 8 9 10 11 12 13 14 15\nCOLOR_SCALARS c 1\n0 .1 .2 .3 .4\n"
                 "TEXTURE_COORDINATES tc 2 float\n0 0 0 0 0 0 0 0 0 0\nFIELD more 3\nGlobalNodeId 1 5 int\n9 8 7 6 5\n"
                 "METADATA\nINFORMATION 0\n\nwords 1 2 string\none%20\ntwo\nempty 0 0 float\n"
                 "CELL_DATA 3\nFIELD f 1\nGlobalElementId 1 3 long\n71 72 73\n"
                 "SCALARS block%5Fid int\nLOOKUP_TABLE default\n5 6 7\nNORMALS n float\n0 0 1 0 0 1 0 0 1\n"));
    EXPECT_EQ(elementIds(mesh), (Ids{71, 72}));
    EXPECT_EQ(nodesOf(mesh, 72), (Ids{9, 8, 7, 6, 5}));
    EXPECT_EQ(partNames(mesh), (std::vector<std::string>{"block_id 5", "block_id 6"}));
    for (const char* name : {"point array t", "point array v", "point array c", "point array tc", "point array words",
                             "point array empty", "cell array n"}) {
        EXPECT_EQ(log.listCount(kvo::listVtkArrays, name), 1u) << name;
    }
}

TEST_F(VtkLegacyFiles, DataSectionsMayHaveNoArrays)
{
    for (const char* data : {"POINT_DATA 5\n", "CELL_DATA 3", "CELL_DATA 3\nPOINT_DATA 5\n",
                             "POINT_DATA 5\nFIELD FieldData 0\nCELL_DATA 3\n"}) {
        EXPECT_EQ(elementIds(readVtk(textGrid(data))), (Ids{1, 2})) << data;
    }
    EXPECT_EQ(outcome(textGrid("CELL_DATA -1\n"), "grid.vtk"), "grid.vtk:16: -1 cell data announced");
    EXPECT_EQ(outcome(textGrid("CELL_DATA 999\nSCALARS part int\nLOOKUP_TABLE default\n1 2 3\n"), "grid.vtk"),
              "grid.vtk:18: 999 values announced; the rest of the file cannot hold them");
}

TEST_F(VtkLegacyFiles, IdsThatRepeatAreNoNumbering)
{
    const kvo::Mesh mesh = readVtk(textGrid("CELL_DATA 3\nGLOBAL_IDS ids int\n4 4 5\nPOINT_DATA 5\n"
                                            "GLOBAL_IDS ids int\n1 2 3 4 4\n"));
    EXPECT_EQ(elementIds(mesh), (Ids{1, 2}));
    EXPECT_EQ(nodesOf(mesh, 2), (Ids{1, 2, 3, 4, 5}));
    EXPECT_EQ(log.warningCount("id arrays that cannot be used"), 2u);
}

TEST_F(VtkLegacyFiles, FilesThatEndEarly)
{
    const auto whole = [](const std::string& beginning) { // up to the cells' types; there may be data or not
        return contains(beginning, std::string("\0\0\0\x09\0\0\0\x0e", 8));
    };
    expectErrorsWhenCutOff(textGrid(), "grid.vtk", false, [](const std::string& beginning) {
        return beginning.substr(beginning.size() - 2) == "\n2";
    });
    expectErrorsWhenCutOff(bytesGrid(false), "grid.vtk", true, whole);
    expectErrorsWhenCutOff(bytesGrid(true), "grid.vtk", true, whole);
}

TEST_F(VtkLegacyFiles, FilesThatLie)
{
    EXPECT_EQ(outcome(head() + fivePoints, "grid.vtk"), "grid.vtk:8: the file has no cells, or is cut off");
    const std::string deck = textGrid("CELL_DATA 3\nSCALARS part int\nLOOKUP_TABLE default\n1 2 3\n");
    EXPECT_EQ(errorWith(deck, "POINTS 5", "POINTS 999999"),
              "grid.vtk:5: 999999 points announced; the rest of the file cannot hold them");
    EXPECT_EQ(errorWith(deck, "POINTS 5", "POINTS 4"), "grid.vtk:7: not a keyword of VTK's legacy files: \".5\"");
    EXPECT_EQ(errorWith(deck, "CELLS 3 12", "CELLS 3 13"),
              "grid.vtk:11: 13 values announced for the cells, which have 12");
    EXPECT_EQ(errorWith(deck, "4 0 1 2 3", "4000000 0 1 2 3"),
              "grid.vtk:9: a cell of 4000000 points; the cells' values are 12");
    EXPECT_EQ(errorWith(deck, "CELL_TYPES 3\n9\n14\n2\n", "CELL_TYPES 2\n9\n14\n"),
              "grid.vtk:19: 2 cell types for 3 cells");
    EXPECT_EQ(errorWith(deck, "ASCII", "TEXT"), "grid.vtk:3: \"TEXT\" is neither ASCII nor BINARY");
    EXPECT_EQ(
        errorWith(deck, "UNSTRUCTURED_GRID", "STRUCTURED_GRID"),
        "grid.vtk:4: a dataset of kind \"STRUCTURED_GRID\" is not read; known are UNSTRUCTURED_GRID and POLYDATA");
    EXPECT_EQ(errorWith(deck, "CELL_DATA 3\nSCALARS part int\nLOOKUP_TABLE default\n1 2 3",
                        "CELL_DATA 2\nSCALARS part int\nLOOKUP_TABLE default\n1 2"),
              "grid.vtk:20: a data array of the cells does not have 3 values, one per cell");
    EXPECT_EQ(errorWith(deck, "float", "floot"), "grid.vtk:5: values of type \"floot\" are not known");
    EXPECT_EQ(errorWith(deck, "5 0 1 2 3 4", "5 0 1 2 3 77"), "ok");
    ASSERT_EQ(log.warningCount("elements that refer to missing nodes"), 1u);
    EXPECT_TRUE(contains(log.warnings()[0].lines[0], "grid.vtk:10: cell 2 refers to point 77 of 5: left out"));
}
