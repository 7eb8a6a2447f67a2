// From the scopes of an input deck to one mesh.
#ifndef KVO_IMPORT_ABAQUS_INP_ASSEMBLE_H
#define KVO_IMPORT_ABAQUS_INP_ASSEMBLE_H

#include <deque>

#include "import_log.h"
#include "inp_scope.h"

namespace kvo {

// Everything that reading a deck leaves.
struct InpModel
{
    std::vector<std::string> sourceFiles;
    std::vector<ElementType> types;
    InpScope deck;                         // outside of parts and assembly
    std::map<std::string, InpScope> parts; // by nameKey()
    std::deque<InpScope> instances;        // in deck order
    InpScope assembly;
};

// Places the instances, makes parts of sections and sets, and finishes the mesh. Takes the model's content.
Mesh assembleInp(InpModel& model, ImportLog& log);

} // namespace kvo

#endif
