// The scenes that have a reference picture.
#ifndef KVO_TESTS_GOLDEN_SCENES_H
#define KVO_TESTS_GOLDEN_SCENES_H

#include <string>
#include <vector>

struct GoldenScene
{
    std::string name;                   // golden/NAME.png
    std::vector<std::string> arguments; // of kvo render, beside model, output, size and device
    std::string operations;             // text of the session file; "": none
};

const std::vector<GoldenScene>& goldenScenes();

// Draws the sample deck as the scene says. Throws std::runtime_error with the program's message when it fails.
void drawGoldenScene(const GoldenScene& scene, const std::string& picture);

// The session that has a reference picture and text, examples/ops/bracket-inspection.session: through the scene, and
// through the drawing library alone.
std::string goldenSessionName(bool contract);

// Plays the text of a session as if it lay in the examples' folder; returns what it printed. Throws as above.
std::string playGoldenSession(const std::string& session, const std::string& picture, bool contract);
// Of the example; the drawing library's views, and so the places in its pictures, are others than the scene's.
std::string goldenSessionText(bool contract);

#endif
