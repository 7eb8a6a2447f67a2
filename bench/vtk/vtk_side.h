// The work that is compared, done by VTK.
#ifndef VTK_SIDE_H
#define VTK_SIDE_H

#include <memory>
#include <string>

#include "model_generator.h"

class VtkScene
{
public:
    // A window without a frame on the screen, with the mesh of a file that writeFile wrote, or of memory.
    VtkScene(const std::string& file, int width, int height);
    VtkScene(const GeneratedMesh& mesh, int width, int height);
    ~VtkScene();

    void draw();    // one frame; returns when it is done. No other interface's context may be current.
    void release(); // nothing is current afterwards
    // Number of cells that a frustum through the window's rectangle has or touches.
    std::size_t extract(int left, int bottom, int width, int height);

    // Uncompressed, appended raw: what it reads fastest.
    static void writeFile(const GeneratedMesh& mesh, const std::string& file);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

#endif
