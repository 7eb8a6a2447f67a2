// What a model consists of, counted for people.
#ifndef KVO_MODEL_SUMMARY_H
#define KVO_MODEL_SUMMARY_H

#include <map>
#include <string>
#include <vector>

#include "modelinfo.h"

namespace kvo {

class ModelSource;

struct ModelTotals
{
    unsigned long long nodes = 0;
    unsigned long long elements = 0;
    std::map<std::string, unsigned long long> elementsByKind; // only kinds that occur
};

ModelTotals countModel(const ModelInfo& info);

// The title, then lines such as "12 parts", "48000 elements", for the last cell of a contact sheet.
std::vector<std::string> describeModel(const ModelSource& source);

// "3 parts", "1 part".
std::string counted(unsigned long long count, const std::string& singular);

} // namespace kvo

#endif
