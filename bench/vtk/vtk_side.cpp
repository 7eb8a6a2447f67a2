#include "vtk_side.h"

#include <vtkActor.h>
#include <vtkAreaPicker.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDataSetMapper.h>
#include <vtkExtractSelectedFrustum.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPlanes.h>
#include <vtkPoints.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLUnstructuredGridReader.h>
#include <vtkXMLUnstructuredGridWriter.h>

#include <GL/gl.h>

#include "mantypes.h"

namespace {

vtkSmartPointer<vtkUnstructuredGrid> gridOf(const GeneratedMesh& mesh)
{
    vtkNew<vtkFloatArray> xyz;
    xyz->SetNumberOfComponents(3);
    xyz->SetNumberOfTuples(static_cast<vtkIdType>(mesh.nodeIds.size()));
    std::copy(mesh.xyz.begin(), mesh.xyz.end(), xyz->GetPointer(0));
    vtkNew<vtkPoints> points;
    points->SetData(xyz);
    const int corners = mesh.drawType == SOLID ? 8 : 4;
    vtkNew<vtkCellArray> cells;
    cells->AllocateExact(static_cast<vtkIdType>(mesh.elementIds.size()),
                         static_cast<vtkIdType>(corners * mesh.elementIds.size()));
    for (std::size_t e = 0; e < mesh.elementIds.size(); ++e) {
        vtkIdType ids[8];
        for (int k = 0; k < corners; ++k) {
            ids[k] = mesh.corners[e * mesh.stride + static_cast<std::size_t>(k)] - mesh.nodeIds[0];
        }
        cells->InsertNextCell(corners, ids);
    }
    auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
    grid->SetPoints(points);
    grid->SetCells(mesh.drawType == SOLID ? VTK_HEXAHEDRON : VTK_QUAD, cells);
    return grid;
}

} // namespace

struct VtkScene::Impl
{
    vtkSmartPointer<vtkUnstructuredGrid> grid;
    vtkNew<vtkDataSetMapper> mapper;
    vtkNew<vtkActor> actor;
    vtkNew<vtkRenderer> renderer;
    vtkNew<vtkRenderWindow> window;
    vtkNew<vtkExtractSelectedFrustum> frustum;

    void show(int width, int height)
    {
        mapper->SetInputData(grid);
        actor->SetMapper(mapper);
        renderer->AddActor(actor);
        window->SetMultiSamples(0);
        window->SetOffScreenRendering(1);
        window->SetSize(width, height);
        window->AddRenderer(renderer);
        renderer->GetActiveCamera()->ParallelProjectionOn();
        renderer->ResetCamera();
        if (grid->GetCellType(0) == VTK_HEXAHEDRON) {
            renderer->GetActiveCamera()->Azimuth(30);
            renderer->GetActiveCamera()->Elevation(20);
            renderer->ResetCamera();
        }
        renderer->GetActiveCamera()->Zoom(1.8); // fills the window as the other picture does
    }
};

VtkScene::VtkScene(const std::string& file, int width, int height) : impl(new Impl)
{
    vtkNew<vtkXMLUnstructuredGridReader> reader;
    reader->SetFileName(file.c_str());
    reader->Update();
    impl->grid = reader->GetOutput();
    impl->show(width, height);
}

VtkScene::VtkScene(const GeneratedMesh& mesh, int width, int height) : impl(new Impl)
{
    impl->grid = gridOf(mesh);
    impl->show(width, height);
}

VtkScene::~VtkScene() = default;

void VtkScene::draw()
{
    impl->renderer->GetActiveCamera()->Modified();
    impl->window->Render();
    glFinish();
}

void VtkScene::release()
{
    impl->window->ReleaseCurrent();
}

std::size_t VtkScene::extract(int left, int bottom, int width, int height)
{
    vtkNew<vtkAreaPicker> picker;
    picker->AreaPick(left, bottom, left + width, bottom + height, impl->renderer);
    impl->frustum->SetInputData(impl->grid);
    impl->frustum->SetFrustum(picker->GetFrustum());
    impl->frustum->Modified();
    impl->frustum->Update();
    return static_cast<std::size_t>(vtkDataSet::SafeDownCast(impl->frustum->GetOutput())->GetNumberOfCells());
}

void VtkScene::writeFile(const GeneratedMesh& mesh, const std::string& file)
{
    vtkNew<vtkXMLUnstructuredGridWriter> writer;
    writer->SetFileName(file.c_str());
    writer->SetInputData(gridOf(mesh));
    writer->SetDataModeToAppended();
    writer->EncodeAppendedDataOff();
    writer->SetCompressorTypeToNone();
    writer->Write();
}
