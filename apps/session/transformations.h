// The view operations of sessions: names and values of the library's transformations.
#ifndef KVO_TRANSFORMATIONS_H
#define KVO_TRANSFORMATIONS_H

#include <string>

namespace kvo {

struct TransformationName
{
    const char* name;   // as in _TransType
    int type;           // _TransType
    int count;          // values
    const char* values; // their names, for manuals
};

// Null for what is none.
const TransformationName* findTransformation(const std::string& name);
const TransformationName* findTransformation(int type);

// The values as the library takes them, from pixels that count from the top left with y downwards in a picture of that
// height: rubber band and polyline count y upwards, a pan's dy too, a rotation downwards.
void windowValues(int type, const float values[4], int height, float out[4]);

// One line each, "  NAME VALUES", for manuals.
std::string describeTransformations();

} // namespace kvo

#endif
