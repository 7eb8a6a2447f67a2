// Loading: part_start, the readers, and the set-up that needs the OpenGL context.
#include "caeenv.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstring>

#include "boundbox.h"
#include "diagnostics.h"
#include "gentime.h"
#include "mtrans.h"
#include "mview.h"
#include "readelements.h"
#include "readids.h"
#include "readnodes.h"

namespace {

constexpr unsigned int nameBufferSize = 256;
constexpr unsigned int maxNamesPastEnd = 100001; // a damaged count must not make a billion empty names

// One model file's node readers.
typedef std::vector<ReadIDS*> IdReaders;
typedef std::vector<ReadNodes*> NodeReaders;

// Whole floats only: those that a short file lacks keep their values.
void readExtents(FILE* file, float* extents)
{
    float values[6];
    const std::size_t count = std::fread(values, sizeof(float), 6, file);
    std::copy(values, values + count, extents);
}

unsigned int readCount(FILE* file)
{
    unsigned int value = 0;
    return std::fread(&value, sizeof value, 1, file) == 1 ? value : 0;
}

// Names are cut to the buffer. A name that the file cuts short keeps the bytes of the one before.
void readFileNames(FILE* file, unsigned int count, std::vector<std::string>& names)
{
    char name[nameBufferSize] = "";
    for (unsigned int k = 0; k < count; ++k) {
        if (k >= maxNamesPastEnd && std::feof(file)) {
            break;
        }
        const unsigned int length = readCount(file);
        const unsigned int kept = std::min(length, nameBufferSize - 1);
        const std::size_t got = std::fread(name, 1, kept, file);
        if (got == kept && length > kept) {
            std::fseek(file, static_cast<long>(length - kept), SEEK_CUR);
        }
        name[kept] = '\0';
        names.push_back(name);
    }
}

// The id and node readers of one model file; coordinates are read only where there are ids.
void readFileNodes(const char* dirName, const char* fileName, ReadIDS*& ids, ReadNodes*& nodes)
{
    ids = new ReadIDS(dirName, fileName);
    const int idCount = ids->get("node_ids");
    diagnostics::print(label::nodesFromIds, idCount);
    nodes = new ReadNodes(dirName, fileName);
    if (idCount != 0) {
        diagnostics::print(label::nodesFromNodes, nodes->getValues());
    }
}

void deleteReaders(IdReaders& ids, NodeReaders& nodes)
{
    for (ReadIDS* reader : ids) {
        delete reader;
    }
    for (ReadNodes* reader : nodes) {
        delete reader;
    }
}

} // namespace

int CAEEnv::getAll(std::vector<unsigned int>* pid_list)
{
    const unsigned long long start = GenTime::getCurrentMillis();
    const char* dir = dirName.c_str();
    std::snprintf(charBuff, sizeof charBuff, "%s/%s/part_start", dir, modelName.c_str());
    std::cout << charBuff << std::endl;
    filePtr = std::fopen(charBuff, "rb");
    primitiveType = GL_QUADS;
    if (filePtr == nullptr) {
        diagnostics::print(label::openFailed, charBuff);
        return 1;
    }

    readExtents(filePtr, modelExtents);
    // deliberate(x-pair-corrected): only x; y and z are taken as read, also when flat.
    if (modelExtents[0] == modelExtents[1]) {
        modelExtents[1] = -modelExtents[0];
    }
    std::copy(modelExtents, modelExtents + 6, orgModelExtents);
    const unsigned int numFiles = readCount(filePtr);
    diagnostics::print(label::numFiles, numFiles);
    if (numFiles > 1) {
        readFileNames(filePtr, numFiles, fileList);
    } else {
        fileList.push_back(modelName);
    }
    diagnostics::print(label::fileListSize, fileList.size());
    std::fclose(filePtr);

    // deliberate(load-once): numParts, pidMap and fileList are not reset; an environment loads one model once.
    partsInfoList = nullptr;
    IdReaders ids(fileList.size(), nullptr);
    NodeReaders nodes(fileList.size(), nullptr);
    for (std::size_t k = 0; k < fileList.size(); ++k) {
        readFileNodes(dir, fileList[k].c_str(), ids[k], nodes[k]);
    }

    ReadElements elements(&pidMap, &ids, &nodes);
    for (std::size_t k = 0; k < fileList.size(); ++k) {
        elements.setValues(dir, fileList[k].c_str(), static_cast<int>(k), ids[k], nodes[k]);
        if (pid_list) {
            elements.getPartsByID(pid_list, &numParts, &partsInfoList);
        } else {
            elements.getAll(&numParts, &partsInfoList);
        }
    }
    deleteReaders(ids, nodes);
    diagnostics::print(label::totalParts, numParts);
    std::cout << label::timeForAll << GenTime::getCurrentMillis() - start << " msec" << std::endl;
    return 0;
}

void CAEEnv::loadAndInitGL(unsigned int font_base, bool thread_status, std::vector<unsigned int>* pid_list)
{
    const unsigned long long start = GenTime::getCurrentMillis();
    glClearColor(0, 0, 0, 1);
    // deliberate(load-failure-ignored): a model without part_start goes on as an empty one.
    if (!thread_status) {
        getAll(pid_list);
    }
    mView = new MView(modelExtents);
    mTrans = new MTransform(modelExtents);
    boxList = new BoundBox*[numParts];
    for (i = 0; i < numParts; ++i) {
        boxList[i] = new BoundBox(partsInfoList[i].partExtents);
    }
    BoundBox::setFontBase(font_base);
    glShadeModel(static_cast<GLenum>(shadeModel));
    computeNormals();
    switchOnLights();
    diagnostics::print(label::numParts, numParts);
    diagnostics::printList(label::modelExtents, modelExtents, 6);
    diagnostics::print(label::timeForInit, GenTime::getCurrentMillis() - start);
}
