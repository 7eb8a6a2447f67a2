// A context of one profile with a picture to draw into, and models without an environment.
#ifndef SCENE_PROFILE_FIXTURE_H
#define SCENE_PROFILE_FIXTURE_H

#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless_context.h"
#include "mantypes.h"
#include "offscreen.h"
#include "scene_models.h"
#include <kvo/scene_view.h>

// The parts as a model, which takes them: part ids 1, 2..., in each node and element ids from 1.
inline kvo::Model modelOfParts(std::vector<PartInfoStr> parts)
{
    kvo::ModelBuilder builder;
    std::uint32_t id = 0;
    for (PartInfoStr& record : parts) {
        const auto counted = [](std::size_t count) {
            std::vector<std::uint32_t> out(count);
            std::iota(out.begin(), out.end(), 1);
            return out;
        };
        const PartNodesStr& nodes = record.partNodes;
        const PartElementsStr& elements = record.partElements;
        kvo::Part part;
        part.id = ++id;
        part.kind = record.partDrawType == SHELL   ? kvo::ElementKind::Shell
                    : record.partDrawType == SOLID ? kvo::ElementKind::Solid
                    : record.partDrawType == BEAM  ? kvo::ElementKind::Beam
                                                   : kvo::ElementKind::Discrete;
        std::copy_n(record.partColor, 4, part.color.begin());
        builder.addPart(part, true, counted(nodes.numNodes),
                        {nodes.nodeValues, nodes.nodeValues + std::size_t(3) * nodes.numNodes},
                        counted(elements.numElements / elements.nodesPerElement), elements.nodesPerElement,
                        {elements.elmIndices, elements.elmIndices + elements.numElements});
        releasePart(record);
    }
    return builder.build();
}

struct ProfileScene
{
    static constexpr int width = 320, height = 240;

    explicit ProfileScene(kvo::ContextProfile profile) : context("software", profile), target(width, height)
    {
        glClearColor(0, 0, 0, 1);
        glViewport(0, 0, width, height);
        glEnable(GL_DEPTH_TEST);
    }
    kvo::Picture picture(kvo::SceneView& view)
    {
        target.bind();
        view.draw();
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return target.read();
    }

    kvo::HeadlessContext context;
    kvo::Offscreen target;
};

class EachProfile : public testing::TestWithParam<kvo::ContextProfile>
{
};

inline std::string profileName(const testing::TestParamInfo<kvo::ContextProfile>& profile)
{
    return profile.param == kvo::ContextProfile::Core ? "Core" : "Compatibility";
}

#endif
