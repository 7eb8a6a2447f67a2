// Makes the reference pictures and texts anew. See tests/kvo/update-golden.
#include <cstdio>
#include <exception>

#include "golden_scenes.h"
#include "run_kvo.h"

int main()
{
    try {
        for (const GoldenScene& scene : goldenScenes()) {
            drawGoldenScene(scene, std::string(KVO_GOLDEN_DIR) + "/" + scene.name + ".png");
            std::printf("%s\n", scene.name.c_str());
        }
        for (const bool contract : {false, true}) {
            const std::string session = std::string(KVO_GOLDEN_DIR) + "/" + goldenSessionName(contract);
            writeText(session + ".txt", playGoldenSession(goldenSessionText(contract), session + ".png", contract));
            std::printf("%s\n", goldenSessionName(contract).c_str());
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
