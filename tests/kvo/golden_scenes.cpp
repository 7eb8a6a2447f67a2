// Drawing the scenes by the program itself.
#include "golden_scenes.h"

#include <filesystem>
#include <stdexcept>

#include "run_kvo.h"
#include "sample_deck.h"

// A view of what stands under the vault.
static const char* const inside = "VIEW left\nGLOBAL_ROTATION 120 90 150 120\nNO_TRANSFORM\n";

const std::vector<GoldenScene>& goldenScenes()
{
    static const std::vector<GoldenScene> scenes = {
        // The drawing library alone.
        {"contract_iso_flat", {"--contract", "--shade", "flat"}, ""},
        {"contract_iso_smooth", {"--contract", "--shade", "smooth"}, ""},
        {"contract_bottom", {"--contract", "--view", "bottom"}, ""},
        {"contract_front_lines", {"--contract", "--view", "front", "--mode", "line"}, ""},
        {"contract_left_without_arch", {"--contract", "--view", "left", "--hide", "1"}, ""},
        {"contract_boxes", {"--contract", "--boxes", "--background", "black"}, ""},
        {"contract_turned",
         {"--contract", "--hide", "1"},
         "VIEW left\nGLOBAL_ROTATION 120 90 150 120\nTRANS_UP\nSCALE_INCR\n"},
        {"contract_rubber_band", {"--contract", "--view", "top"}, "START_RUBBER_BAND 20 10 200 60\n"},
        // The scene.
        {"iso_flat", {"--shade", "flat"}, ""},
        {"iso_smooth", {"--shade", "smooth"}, ""},
        {"bottom", {"--view", "bottom"}, ""},
        {"front_lines", {"--view", "front", "--mode", "line"}, ""},
        {"left_without_arch", {"--view", "left", "--hide", "1"}, ""},
        {"boxes", {"--boxes", "--background", "black"}, ""},
        {"turned", {"--hide", "1"}, "VIEW left\nGLOBAL_ROTATION 120 90 150 120\nTRANS_UP\nSCALE_INCR\n"},
        {"rubber_band", {"--view", "top"}, "START_RUBBER_BAND 20 10 200 60\n"},
        {"edges", {"--style", "edges", "--hide", "1"}, inside},
        {"hidden_line", {"--style", "hidden-line", "--background", "white", "--hide", "1"}, inside},
        {"wire", {"--style", "wire"}, ""},
        {"light_of_model", {"--light", "model", "--hide", "1"}, inside},
        {"light_of_contract", {"--light", "contract", "--hide", "1"}, inside},
        {"sharp_vault", {"--feature-angle", "5", "--view", "top"}, ""},
        {"ghosts", {"--ghosts", "--hide", "1", "--view", "front"}, ""},
        {"transparent", {"--transparent", "1", "--transparent", "3=0.7"}, "VIEW top\nGLOBAL_ROTATION 120 90 140 130\n"},
        {"section", {"--section", "y=..-0.5", "--style", "edges"}, inside},
        {"section_of_elements", {"--section", "0,0,0.9,0,0,-1", "--section-mode", "elements"}, inside},
        {"edge_kinds", {"--edges", "feature,free,multi", "--hide", "1"}, inside},
        {"quality", {"--color-by", "quality:scaled-jacobian", "--no-legend", "--hide", "1"}, inside},
        {"kinds", {"--color-by", "kind"}, ""},
        {"labels", {"--labels", "parts,elements", "--hide", "1"}, inside},
        {"selected",
         {"--select-elements", "41,53,61", "--select-nodes", "211-212,307", "--highlight", "6", "--hide", "1"},
         inside},
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
    if (run.status != 0) {
        throw std::runtime_error(scene.name + ": " + run.err);
    }
}

std::string goldenSessionName(bool contract)
{
    return contract ? "contract_bracket_inspection" : "bracket_inspection";
}

std::string goldenSessionText(bool contract)
{
    return readText(contract ? KVO_GOLDEN_DIR "/../contract-inspection.session"
                             : KVO_EXAMPLES_DIR "/ops/bracket-inspection.session");
}

std::string playGoldenSession(const std::string& session, const std::string& picture, bool contract)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.file("ops"));
    std::filesystem::create_directory_symlink(KVO_EXAMPLES_DIR "/decks", folder.file("decks"));
    writeText(folder.file("ops/played.session"), session);
    std::vector<std::string> arguments = {
        "play", folder.file("ops/played.session"), "-o", picture, "--samples", "1", "--device", "software"};
    if (contract) {
        arguments.push_back("--contract");
    }
    const KvoRun run = runKvo(arguments);
    if (run.status != 0) {
        throw std::runtime_error(goldenSessionName(contract) + ": " + run.err);
    }
    return run.out;
}
