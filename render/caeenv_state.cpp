// The view state file: which model, flags and colours of its parts, render state, view and transformation.
//
// Binary, native byte order, no padding, 504 + L1 + L2 + 20 n bytes for names of L1 and L2 bytes and n parts. Nothing
// records n; a file fits only an environment of the same model.
#include "caeenv.h"

#include <GL/gl.h>

#include "binary_io.h"
#include "diagnostics.h"
#include "mtrans.h"
#include "mview.h"

namespace {

void writeName(FILE* file, const std::string& name)
{
    const unsigned int length = static_cast<unsigned int>(name.size());
    writeItems(file, &length, 1);
    writeItems(file, name.data(), name.size());
}

} // namespace

int CAEEnv::save(const char* file_name)
{
    if (mView == nullptr || mTrans == nullptr) { // nothing is loaded
        return 1;
    }
    filePtr = std::fopen(file_name, "wb");
    if (filePtr == nullptr) {
        std::cout << "Unable to open file <" << file_name << "> to save\n";
        return 1;
    }
    writeName(filePtr, dirName);
    writeName(filePtr, modelName);
    for (i = 0; i < numParts; ++i) {
        writeItems(filePtr, &partsInfoList[i].partFlag, 1);
        writeItems(filePtr, partsInfoList[i].partColor, 4);
    }
    // deliberate(shade-from-field): the shade model is the field's, blending and polygon mode are the live context's.
    writeItems(filePtr, &shadeModel, 1);
    blendFlag = 0;
    if (glIsEnabled(GL_BLEND)) {
        blendFlag = 1;
    }
    writeItems(filePtr, &blendFlag, 1);
    glGetIntegerv(GL_POLYGON_MODE, polygonMode);
    writeItems(filePtr, polygonMode, 2);
    mView->save(filePtr);
    mTrans->save(filePtr);
    std::fclose(filePtr);
    return 0;
}

void CAEEnv::restore(FILE* fp)
{
    if (mView == nullptr || mTrans == nullptr) { // nothing is loaded
        return;
    }
    for (i = 0; i < numParts; ++i) {
        readItems(fp, &partsInfoList[i].partFlag, 1);
        readItems(fp, partsInfoList[i].partColor, 4);
    }
    readItems(fp, &shadeModel, 1);
    setShadeModel(static_cast<unsigned int>(shadeModel));
    readItems(fp, &blendFlag, 1);
    setBlend(blendFlag);
    readItems(fp, polygonMode, 2);
    glPolygonMode(GL_FRONT_AND_BACK, static_cast<GLenum>(polygonMode[0]));
    mView->restore(fp);
    mTrans->restore(fp);
}

void MView::save(FILE* fp)
{
    writeItems(fp, &mViewType, 1);
}
void MView::restore(FILE* fp)
{
    readItems(fp, &mViewType, 1);
}

void MTransform::save(FILE* fp)
{
    writeItems(fp, &depthTest, 1);
    writeItems(fp, localTrans, 3);
    writeItems(fp, globalRot, 3);
    writeItems(fp, globalTrans, 3);
    writeItems(fp, localScale, 3);
    // deliberate(local-matrix-first): the reverse of the fields' order; the file's order is the binding one.
    writeItems(fp, mvMatrixLocal, 16);
    writeItems(fp, mvMatrix, 16);
    writeItems(fp, projMatrix, 16);
    writeItems(fp, centerOfWindow, 3);
    writeItems(fp, curQuat, 4);
}

void MTransform::restore(FILE* fp)
{
    readItems(fp, &depthTest, 1);
    if (depthTest) {
        std::cout << "DEPTH ENABLE\n";
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LESS);
        glDepthRange(0.0, 1.0);
    } else {
        glDisable(GL_DEPTH_TEST);
    }
    readItems(fp, localTrans, 3);
    readItems(fp, globalRot, 3);
    readItems(fp, globalTrans, 3);
    readItems(fp, localScale, 3);
    readItems(fp, mvMatrixLocal, 16);
    readItems(fp, mvMatrix, 16);
    readItems(fp, projMatrix, 16);
    readItems(fp, centerOfWindow, 3);
    readItems(fp, curQuat, 4);
    onlyOnce &= ~windowCenterPending; // the restored pivot stays
}
