// The fixture of tests about whole frames: a model in an environment with normals, and what a drawing pass calls.
#ifndef FRAMEFIXTURE_H
#define FRAMEFIXTURE_H

#include <memory>

#include "modelbuilder.h"
#include "recordedtest.h"

const unsigned int S = PART_SHOWN, H = PART_HIDDEN;
inline const std::string blueLine = "glColor4fv(0,0,1,1)", greenLine = "glColor4fv(0,1,0,1)";
inline const std::string ownLine = "glColor4fv(0.5,0.25,0.125,1)";

class Frame : public RecordedTest
{
protected:
    void install(std::initializer_list<PartInfoStr> parts, int shadeModel = GL_FLAT)
    {
        model.reset(new TestModel(shadeModel));
        for (const PartInfoStr& part : parts) {
            model->add(part);
        }
        model->install();
        env = &**model;
        env->computeNormals();
        glShadeModel(shadeModel);
        glViewport(0, 0, 800, 600);
        forget();
    }

    PartInfoStr& part(unsigned int index) { return model->part(index); }

    Lines display(int fileIndex = -1)
    {
        forget();
        env->displayParts(fileIndex);
        return glrecord::lines();
    }

    // The lines of displayParts between the client states.
    Lines drawn(int fileIndex = -1)
    {
        const Lines lines = display(fileIndex);
        EXPECT_GE(lines.size(), 4u);
        return Lines(lines.begin() + 2, lines.end() - 2);
    }

    std::unique_ptr<TestModel> model;
    CAEEnv* env = nullptr;
};

#endif
