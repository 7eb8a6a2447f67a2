// The layout of view state files.
//
// Native byte order, no padding: two names, each with its length in front; per part its flags and colour (20 bytes);
// shade model, blending, polygon modes of front and back, view (20 bytes); depth test; four vectors of three floats;
// three matrices of doubles; the pivot as three doubles; a quaternion of floats.
#include "state_bytes.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>

#include <GL/gl.h>

#include "input_file.h"
#include "mview.h"
#include "partstr.h"
#include "program_error.h"

namespace fs = std::filesystem;

namespace kvo {

namespace {

const std::size_t lengthSize = 4;
const std::size_t partSize = 20;
const std::size_t drawingSize = 20;
const std::size_t transformationSize = 476;
const std::size_t longestName = 4096;

const unsigned int knownFlags = PART_SHOWN | PART_HIDDEN | PART_SELECTED | PART_HIGHLIGHTED | PART_BOX_SHOWN |
                                PART_ELEMENTS_SELECTED | PART_NODES_SELECTED | PART_ELEMENT_NORMALS_DONE |
                                PART_NODE_NORMALS_DONE;

std::string counted(std::size_t count, const std::string& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

bool samePlace(const fs::path& a, const fs::path& b)
{
    std::error_code ignored;
    return fs::weakly_canonical(a, ignored) == fs::weakly_canonical(b, ignored);
}

bool isPolygonMode(int mode)
{
    return mode == GL_POINT || mode == GL_LINE || mode == GL_FILL;
}

} // namespace

std::size_t stateSize(std::size_t directoryLength, std::size_t modelLength, std::size_t numParts)
{
    return 2 * lengthSize + directoryLength + modelLength + partSize * numParts + drawingSize + transformationSize;
}

StateBytes::StateBytes(const std::string& path, std::size_t numParts) : file(path), parts(numParts)
{
    const std::size_t most = stateSize(longestName, longestName, parts);
    bytes = readInputFile(path, "a view state", most);
    if (bytes.size() > most) {
        throw ProgramError(path, "is no view state of this model: it has more than " + counted(most, "byte"));
    }
}

void StateBytes::check(const ModelLabels& labels) const
{
    checkNames(labels);
    checkSize();
    checkParts();
    checkDrawing();
    checkTransformation();
}

unsigned int StateBytes::partFlag(std::size_t part) const
{
    return at<std::uint32_t>(bodyOffset() + part * partSize);
}

void StateBytes::setPartFlag(std::size_t part, unsigned int flag)
{
    const std::uint32_t word = flag;
    std::memcpy(&bytes[bodyOffset() + part * partSize], &word, sizeof word);
}

void StateBytes::fail(std::size_t offset, const std::string& what) const
{
    throw ProgramError(file, "byte " + std::to_string(offset) + ": " + what);
}

template <class Number> Number StateBytes::at(std::size_t offset) const
{
    Number out{};
    if (offset + sizeof out > bytes.size()) {
        fail(bytes.size(), "the file ends here");
    }
    std::memcpy(&out, bytes.data() + offset, sizeof out);
    return out;
}

std::string StateBytes::nameAt(std::size_t offset) const
{
    const std::size_t length = at<std::uint32_t>(offset);
    if (length > longestName) {
        fail(offset, "a name of " + counted(length, "byte") + ": this is no view state");
    }
    if (offset + lengthSize + length > bytes.size()) {
        fail(bytes.size(), "the file ends inside a name");
    }
    return bytes.substr(offset + lengthSize, length);
}

std::size_t StateBytes::bodyOffset() const
{
    const std::size_t second = lengthSize + at<std::uint32_t>(0);
    return second + lengthSize + at<std::uint32_t>(second);
}

void StateBytes::checkNames(const ModelLabels& labels) const
{
    const std::string directory = nameAt(0);
    const std::string model = nameAt(lengthSize + directory.size());
    if (model != labels.model || !samePlace(directory, labels.directory)) {
        fail(0, "this is a state of the model " + directory + "/" + model + ", not of " + labels.directory + "/" +
                    labels.model);
    }
}

void StateBytes::checkSize() const
{
    const std::size_t wanted = bodyOffset() + parts * partSize + drawingSize + transformationSize;
    if (bytes.size() == wanted) {
        return;
    }
    const std::string expected = counted(wanted, "byte") + " for a model of " + counted(parts, "part");
    if (bytes.size() < wanted) {
        fail(bytes.size(), "the file ends here; a state has " + expected);
    }
    fail(wanted, "the file goes on with " + counted(bytes.size() - wanted, "byte") + "; a state has " + expected);
}

void StateBytes::checkParts() const
{
    for (std::size_t part = 0; part < parts; ++part) {
        std::size_t offset = bodyOffset() + part * partSize;
        const unsigned int flag = partFlag(part);
        const unsigned int visibility = flag & (PART_SHOWN | PART_HIDDEN);
        if ((flag & ~knownFlags) != 0 || (visibility != PART_SHOWN && visibility != PART_HIDDEN)) {
            fail(offset, "the flags of part number " + std::to_string(part + 1) + " are none that a part can have");
        }
        offset += sizeof flag;
        checkNumbers<float>(offset, 4, "a part's colour");
    }
}

template <class Number> void StateBytes::checkNumbers(std::size_t& offset, std::size_t count, const char* what) const
{
    for (std::size_t k = 0; k < count; ++k, offset += sizeof(Number)) {
        if (!std::isfinite(at<Number>(offset))) {
            fail(offset, std::string(what) + " is no number");
        }
    }
}

void StateBytes::checkDrawing() const
{
    const std::size_t offset = bodyOffset() + parts * partSize;
    const auto value = [&](std::size_t k) { return at<std::int32_t>(offset + 4 * k); };
    if (value(0) != GL_FLAT && value(0) != GL_SMOOTH) {
        fail(offset, "the shading is neither flat nor smooth");
    }
    if (value(1) != 0 && value(1) != 1) {
        fail(offset + 4, "blending is neither on nor off");
    }
    for (std::size_t side : {2, 3}) {
        if (!isPolygonMode(value(side))) {
            fail(offset + 4 * side, "the drawing mode is neither points, lines nor faces");
        }
    }
    if (value(4) < NO_VIEW || value(4) > BACK_VIEW) {
        fail(offset + 16, "there is no standard view " + std::to_string(value(4)));
    }
}

void StateBytes::checkTransformation() const
{
    std::size_t offset = bodyOffset() + parts * partSize + drawingSize;
    if (at<std::int32_t>(offset) != 0 && at<std::int32_t>(offset) != 1) {
        fail(offset, "the depth test is neither on nor off");
    }
    offset += 4;
    checkNumbers<float>(offset, 9, "a translation or rotation");
    for (int axis = 0; axis < 3; ++axis) {
        if (!(at<float>(offset + 4u * static_cast<std::size_t>(axis)) > 0)) {
            fail(offset + 4u * static_cast<std::size_t>(axis), "a scale is not more than 0");
        }
    }
    checkNumbers<float>(offset, 3, "a scale");
    checkNumbers<double>(offset, 3 * 16 + 3, "a matrix or the pivot");
    const std::size_t quaternion = offset;
    checkNumbers<float>(offset, 4, "the rotation");
    double length = 0;
    for (std::size_t k = 0; k < 4; ++k) {
        length += std::pow(at<float>(quaternion + 4 * k), 2);
    }
    if (length < 0.9 || length > 1.1) {
        fail(quaternion, "the rotation is no unit quaternion");
    }
}

} // namespace kvo
