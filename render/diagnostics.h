// The library's commentary on standard output: every label, spelt once, and how values follow it.
//
// Hosts and their scripts read these lines, so the labels are kept to the letter, odd spellings included. A line is a
// label, its values and a flushed line end, unless the label itself ends in "\n". Private to render/.
#ifndef DIAGNOSTICS_H
#define DIAGNOSTICS_H

#include <cstdio>
#include <iostream>

namespace label {
// Loading
constexpr const char* openFailed = "Unable to open part_start binary file";
constexpr const char* numFiles = "NUM FILES in CAE=";
constexpr const char* fileListSize = "NUM FILES FORM LIST="; // deliberate(label-form-list): "FORM" is how hosts know it
constexpr const char* nodesFromIds = "NUM NODES FROM READ IDS=";
constexpr const char* nodesFromNodes = "NUM NODES FROM READ NODES=";
constexpr const char* totalParts = "TOTAL PARTS=";
constexpr const char* timeForAll = "TIME FOR ALL=";
constexpr const char* numParts = "NUM PARTS=";
constexpr const char* modelExtents = "MODEL EXTS=";
constexpr const char* timeForInit = "TIMEFOR loadAndInitGL="; // deliberate(label-timefor): no blank, scripts match it
constexpr const char* partNotFound = "PID NOT FOUND=";
// Extents, normals, frame, lights
constexpr const char* resizeExtents = "RESIZE MODEL EXTS=";
constexpr const char* timeForNormals = "TIME FOR ELM NORMALS=";
constexpr const char* timeForDisplay = "TIME FOR DISPLAY PARTS=";
constexpr const char* nodeSelection = "INSIDE NODE SLECTION="; // deliberate(label-slection): spelt so since ever
constexpr const char* glError = "GL Error: ";
constexpr const char* lightPosition0 = "Lightpos0=";
constexpr const char* lightPosition1 = "Lightpos1=";
constexpr const char* newLightPosition0 = "NEW Lightpos0=";
constexpr const char* newLightPosition1 = "NEW Lightpos1=";
// Transformation and views
constexpr const char* axisLength = "AXIS LEN=";
constexpr const char* viewport = "VIEWPORT=";
constexpr const char* rotationX = "ROTX=";
constexpr const char* centerOfWindow = "cow=";
constexpr const char* centerOfScaling = "cos=";
constexpr const char* oldCenterOfScaling = "COS= ";
constexpr const char* rectStart = "start=";
constexpr const char* rectEnd = "end=";
constexpr const char* startWorld = "start world=";
constexpr const char* endWorld = "end world=";
constexpr const char* viewCenterOfWindow = "VIEW cow=";
constexpr const char* viewCenterOfModel = "VIEW COM=";
constexpr const char* afterViewMin = "AFTER VIEW cow=";
constexpr const char* afterViewMax = "AFTER VIEW com=";
constexpr const char* scale = "SCALE=";
// Picking and selection
constexpr const char* mouseXY = "MOUSEXY=";
constexpr const char* partIndex = "PART IDX=";
constexpr const char* nodeIndex = "NODE IDX=";
constexpr const char* firstPart = "FIRST PART=";
constexpr const char* lastPart = "LAST PART=";
constexpr const char* numSelected = "NUM PARTS SELECTED=";
constexpr const char* nodeNotFound = "NODE NOT FOUND=";
constexpr const char* extents = "EXTENTS=";
} // namespace label

namespace diagnostics {

// label value
template <typename T> void print(const char* label, const T& value)
{
    std::cout << label << value << std::endl;
}

// label v0,v1,...
template <typename T> void printList(const char* label, const T* values, int count)
{
    std::cout << label;
    for (int k = 0; k < count; ++k) {
        std::cout << (k ? "," : "") << values[k];
    }
    std::cout << std::endl;
}

// Three lines: <prefix>xmin=a xmax=b, then y, then z.
inline void printRanges(const char* prefix, const float* extents)
{
    const char axes[3] = {'x', 'y', 'z'};
    for (int k = 0; k < 3; ++k) {
        std::cout << prefix << axes[k] << "min=" << extents[2 * k] << ' ' << axes[k] << "max=" << extents[2 * k + 1]
                  << std::endl;
    }
}

// One of the two lines on standard error that every frame writes.
// deliberate(gtran-twice): rotation goes out under the translation's label, too.
inline void printTransform(const float* values)
{
    std::fprintf(stderr, "GTRAN=%lf %lf %lf\n", static_cast<double>(values[0]), static_cast<double>(values[1]),
                 static_cast<double>(values[2]));
}

} // namespace diagnostics

#endif
