// Draws the reference pictures anew. See tests/kvo/update-golden.
#include <cstdio>
#include <exception>

#include "golden_scenes.h"

int main()
{
    try {
        for (const GoldenScene& scene : goldenScenes()) {
            drawGoldenScene(scene, std::string(KVO_GOLDEN_DIR) + "/" + scene.name + ".png");
            std::printf("%s\n", scene.name.c_str());
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
