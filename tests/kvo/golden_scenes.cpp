// Drawing the scenes by the program itself.
#include "golden_scenes.h"

#include <filesystem>
#include <stdexcept>

#include "run_kvo.h"
#include "sample_deck.h"

const std::vector<GoldenScene>& goldenScenes()
{
    static const std::vector<GoldenScene> scenes = {
        {"iso_flat", {"--shade", "flat"}, ""},
        {"iso_smooth", {"--shade", "smooth"}, ""},
        {"bottom", {"--view", "bottom"}, ""},
        {"front_lines", {"--view", "front", "--mode", "line"}, ""},
        {"left_without_arch", {"--view", "left", "--hide", "1"}, ""},
        {"boxes", {"--boxes", "--background", "black"}, ""},
        {"turned", {"--hide", "1"}, "VIEW left\nGLOBAL_ROTATION 120 90 150 120\nTRANS_UP\nSCALE_INCR\n"},
        {"rubber_band", {"--view", "top"}, "START_RUBBER_BAND 20 10 200 60\n"},
    };
    return scenes;
}

void drawGoldenScene(const GoldenScene& scene, const std::string& picture)
{
    const TemporaryFolder folder;
    writeText(folder.file("sample.inp"), sampleDeck());
    std::vector<std::string> arguments = {
        "render",  folder.file("sample.inp"), "-o", picture, "--size", "240x180", "--samples", "1", "--device",
        "software"};
    arguments.insert(arguments.end(), scene.arguments.begin(), scene.arguments.end());
    if (!scene.operations.empty()) {
        writeText(folder.file("ops"), scene.operations);
        arguments.insert(arguments.end(), {"--ops", folder.file("ops")});
    }
    const KvoRun run = runKvo(arguments);
    if (run.status != 0)
        throw std::runtime_error(scene.name + ": " + run.err);
}

const char* const goldenSessionName = "bracket_inspection";

std::string goldenSessionText()
{
    return readText(KVO_EXAMPLES_DIR "/ops/bracket-inspection.session");
}

std::string playGoldenSession(const std::string& session, const std::string& picture)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.file("ops"));
    std::filesystem::create_directory_symlink(KVO_EXAMPLES_DIR "/decks", folder.file("decks"));
    writeText(folder.file("ops/played.session"), session);
    const KvoRun run =
        runKvo({"play", folder.file("ops/played.session"), "-o", picture, "--samples", "1", "--device", "software"});
    if (run.status != 0)
        throw std::runtime_error(std::string(goldenSessionName) + ": " + run.err);
    return run.out;
}
