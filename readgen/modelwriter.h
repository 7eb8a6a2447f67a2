// Writes a model directory: nodes, parts and elements in, files out.
//
//   ModelWriter writer("/tmp/models", "bracket");
//   writer.addNodes(count, ids, xyz);
//   writer.addPart(part, numElements, elementIds, nodeIds);
//   std::string error;
//   if (!writer.write(&error)) ...
//
// Nothing appears under the final name before everything is written: files are written to a temporary name next to it
// and renamed.
#ifndef MODELWRITER_H
#define MODELWRITER_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "kvoexport.h"

// How the elements of a part name their nodes.
enum class NodeReference
{
    ById,   // external node ids; they may belong to any file of the model
    ByIndex // 0-based positions in the (sorted) nodes of the part's own file
};

// What a part is, beside its elements.
struct KVO_EXPORT ModelPart
{
    unsigned int id = 0;       // external part id, unique in the model
    std::string name;          // may be empty
    unsigned int drawType = 0; // mantypes.h
    unsigned int stride = 0;   // node slots per element as in partstr.h: shell 4, solid 8 (or 10), beam 3, discrete 3
    bool hasColor = false;     // false: the reader takes one from its palette
    float color[4] = {0, 0, 0, 1};
    unsigned int propertyId = 0; // 0: none
    std::string propertyName;
    unsigned int materialId = 0; // 0: none
    std::string materialName;
};

class KVO_EXPORT ModelWriter
{
public:
    // The model will live at dirName/modelName. Copies the names; touches no file.
    ModelWriter(const std::string& dirName, const std::string& modelName);
    ~ModelWriter();
    ModelWriter(const ModelWriter&) = delete;
    ModelWriter& operator=(const ModelWriter&) = delete;

    // Starts a further model file; what is added from here on belongs to it. Never called: the one file has the model's
    // name. Names are paths relative to dirName, at most 255 bytes.
    void beginFile(const std::string& fileName);

    // Nodes of the current file: ids (any order, unique, above 0) and 3 coordinates each. May be called repeatedly.
    void addNodes(std::size_t count, const unsigned int* ids, const float* xyz);

    // One part of the current file: numElements external element ids and numElements x part.stride node references.
    // A beam's or discrete's third slot of 0xFFFFFFFF means "none".
    void addPart(const ModelPart& part, std::size_t numElements, const unsigned int* elementIds,
                 const unsigned int* nodeRefs, NodeReference reference = NodeReference::ById);

    // A text that goes into the model's own folder as deck.json. Never called, or empty: no such file.
    void setDeck(const std::string& text);

    // Checks everything and writes the directory. An older model is replaced when its folders hold nothing but what its
    // part_start lists. False on failure: *error (may be null) then says what and where, and nothing is left behind or
    // changed under the final name.
    bool write(std::string* error);

private:
    struct Impl;
    std::unique_ptr<Impl> impl;
};

#endif
