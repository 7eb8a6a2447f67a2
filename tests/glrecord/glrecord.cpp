// The recorded lines and the questions that tests ask of them.
#include "glrecord.h"

#include <algorithm>

#include "glmodel.h"
#include "recorder.h"

namespace glrecord {
namespace {
Lines recorded;
bool recording = false;
bool forwarding = true;
int internalDepth = 0; // above 0 while libGLU works for a call of ours
const void* lastVertexPointer = nullptr;
const void* lastNormalPointer = nullptr;
std::vector<const unsigned char*> seenBitmaps;

bool startsWith(const std::string& line, const std::string& prefix)
{
    return line.compare(0, prefix.size(), prefix) == 0;
}
} // namespace

void start(Mode mode)
{
    recording = true;
    forwarding = mode == Mode::RecordAndForward;
    lastVertexPointer = lastNormalPointer = nullptr;
    model::reset();
    clear();
}

void stop()
{
    recording = false;
    forwarding = true;
}

void clear()
{
    recorded.clear();
    seenBitmaps.clear();
}

Lines lines()
{
    return recorded;
}

std::string text()
{
    std::string all;
    for (const std::string& line : recorded) {
        all += line + "\n";
    }
    return all;
}

int count(const std::string& function)
{
    return static_cast<int>(matching(function + "(").size());
}

Lines matching(const std::string& prefix)
{
    return matchingAny({prefix});
}

Lines matchingAny(const Lines& prefixes)
{
    Lines found;
    for (const std::string& line : recorded) {
        if (std::any_of(prefixes.begin(), prefixes.end(),
                        [&](const auto& prefix) { return startsWith(line, prefix); })) {
            found.push_back(line);
        }
    }
    return found;
}

int find(const std::string& prefix, int from)
{
    for (int k = from; k < static_cast<int>(recorded.size()); ++k) {
        if (startsWith(recorded[k], prefix)) {
            return k;
        }
    }
    return -1;
}

Lines between(const std::string& first, const std::string& last)
{
    const int begin = find(first);
    const int end = begin < 0 ? -1 : find(last, begin);
    return end < 0 ? Lines() : Lines(recorded.begin() + begin, recorded.begin() + end + 1);
}

Lines plain(const Lines& lines)
{
    static const char* const families[] = {"glVertex",    "glNormal", "glColor", "glRasterPos",
                                           "glTranslate", "glRotate", "glScale"};
    Lines result = lines;
    for (std::string& line : result) {
        const std::size_t open = line.find('(');
        for (const std::string family : families) {
            // "glColorMaterial(" is no vertex attribute: only digits and type letters may follow the family's name.
            if (startsWith(line, family) && open != std::string::npos &&
                line.find_first_not_of("0123456789fdv", family.size()) == open) {
                line = family + line.substr(open);
            }
        }
    }
    return result;
}

const void* vertexPointer()
{
    return lastVertexPointer;
}

const void* normalPointer()
{
    return lastNormalPointer;
}

std::vector<const unsigned char*> bitmaps()
{
    return seenBitmaps;
}

void record(const std::string& line)
{
    if (recording && internalDepth == 0) {
        recorded.push_back(line);
    }
}

bool isForwarding()
{
    return forwarding || internalDepth > 0;
}

void noteVertexPointer(const void* pointer)
{
    lastVertexPointer = pointer;
}

void noteNormalPointer(const void* pointer)
{
    lastNormalPointer = pointer;
}

void noteBitmap(const unsigned char* bitmap)
{
    seenBitmaps.push_back(bitmap);
}

InternalCalls::InternalCalls()
{
    ++internalDepth;
}

InternalCalls::~InternalCalls()
{
    --internalDepth;
}
} // namespace glrecord
