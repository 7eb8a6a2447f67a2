// An environment with generated parts in a context without a display, as loading leaves it.
#ifndef BENCH_MODEL_H
#define BENCH_MODEL_H

#include <memory>
#include <vector>

#include "caeenv.h"
#include "headless_context.h"
#include "model_generator.h"
#include "offscreen.h"
#include "output_redirect.h"

// The mesh as the reader delivers it: arrays made with new[], corners as positions.
PartInfoStr partOf(const GeneratedMesh& mesh);

// Nothing is printed while it lives.
class BenchModel
{
public:
    // Takes the parts' arrays. device: as HeadlessContext.
    BenchModel(std::vector<PartInfoStr> parts, int width, int height, int shadeModel, const char* device = "software");
    ~BenchModel();

    CAEEnv& environment() { return *env; }
    kvo::Offscreen& picture() { return target; }
    // Again, after something else drew.
    void makeCurrent();
    const std::string& deviceName() const { return context.description(); }

    int width;
    int height;

private:
    kvo::OutputRedirect quiet;
    kvo::HeadlessContext context;
    kvo::Offscreen target;
    std::vector<PartInfoStr> records;
    std::vector<BoundBox*> boxes;
    std::unique_ptr<CAEEnv> env;
};

#endif
