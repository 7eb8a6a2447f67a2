// The code of docs/host-guide.md about picking and saved views, run against a real context. The page quotes the
// functions below word for word.
#include <cstdio>
#include <fstream>
#include <utility>

#include <unistd.h>

#include "headlesspick.h"

namespace {

// Selects the part, element or node under the mouse. mouseX, mouseY: pixels from the window's top left corner.
int pickAt(CAEEnv& env, unsigned int pickType, int mouseX, int mouseY, int windowHeight)
{
    // Centre, width and height, y upwards. With 5 pixels a node is hit up to two pixels away.
    float region[4] = {mouseX + 0.5f, windowHeight - mouseY - 0.5f, 5, 5};
    CAEEnv::setPtr(&env);
    PickRect pick;
    return pick.process(static_cast<int>(pickType), SELECT_PICK, region);
}

// Selects everything inside a dragged rectangle, what is covered included.
int pickInside(CAEEnv& env, unsigned int pickType, int x1, int y1, int x2, int y2, int windowHeight)
{
    float region[4] = {(x1 + x2) / 2.0f, windowHeight - (y1 + y2) / 2.0f, std::abs(x2 - x1) + 1.0f,
                       std::abs(y2 - y1) + 1.0f}; // never 0: that would pick in the whole window
    CAEEnv::setPtr(&env);
    PickRect pick;
    return pick.process(static_cast<int>(pickType), RECT_PICK, region);
}

// What is selected now, as pairs of part id and element id.
std::vector<std::pair<unsigned int, unsigned int>> selectedElements(CAEEnv& env)
{
    std::vector<std::pair<unsigned int, unsigned int>> found;
    for (const auto& [partId, position] : *env.getPartsMapPtr()) {
        const PartInfoStr& part = env.getPartsList()[position];
        const PartElementsStr& elements = part.partElements;
        if (!(part.partFlag & PART_ELEMENTS_SELECTED) || !elements.selectedList || !elements.eidMap) {
            continue;
        }
        for (const auto& [elementId, element] : *elements.eidMap) {
            if (elements.selectedList[element] == SELECTED_CHAR) {
                found.push_back({partId, elementId});
            }
        }
    }
    return found;
}

// One of the two names at the start of a view state; empty where there is none.
std::string readName(std::FILE* file)
{
    unsigned int length = 0;
    if (std::fread(&length, sizeof length, 1, file) != 1 || length > 4096) {
        return "";
    }
    std::string name(length, '\0');
    return std::fread(&name[0], 1, length, file) == length ? name : "";
}

// Restores a view of the model that env holds. False, and nothing is changed, if the file is not one of that model.
bool restoreView(CAEEnv& env, const char* path)
{
    std::FILE* file = std::fopen(path, "rb");
    if (!file) {
        return false;
    }
    bool fits = readName(file) == env.dirName && readName(file) == env.modelName;
    const long state = std::ftell(file);
    std::fseek(file, 0, SEEK_END);
    fits = fits && std::ftell(file) - state == 496 + 20L * env.getNumParts();
    std::fseek(file, state, SEEK_SET);
    if (fits) {
        env.restore(file);
    }
    std::fclose(file);
    return fits;
}

class HostGuide : public HeadlessPick
{
protected:
    void SetUp() override
    {
        HeadlessPick::SetUp();
        show({hidden(square(0, 0, 0)), quadStripPart(3), square(2, 5, 0)});
        char name[] = "/tmp/kvo-view-XXXXXX";
        close(mkstemp(name));
        path = name;
    }
    void TearDown() override
    {
        unlink(path.c_str());
        HeadlessPick::TearDown();
    }

    // Pixels from the top left, as a window system gives them.
    static int pixelX(const WindowPoint& point) { return static_cast<int>(point.x); }
    static int pixelY(const WindowPoint& point) { return windowHeight - 1 - static_cast<int>(point.y); }

    std::string path;
};

using Pairs = std::vector<std::pair<unsigned int, unsigned int>>;

} // namespace

TEST_F(HostGuide, ClickSelectsUnderTheMouse)
{
    const WindowPoint spot = middle(1, 2);
    EXPECT_EQ(pickAt(*env, PICK_TYPE_ELEMENT, pixelX(spot), pixelY(spot), windowHeight), 1);
    EXPECT_EQ(selectedElements(*env), (Pairs{{12, 103}}));
    const WindowPoint corner = node(2, 3);
    EXPECT_EQ(pickAt(*env, PICK_TYPE_NODE, pixelX(corner) + 2, pixelY(corner) - 2, windowHeight), 1);
    EXPECT_EQ(nodeMarks(2), "0001");
    EXPECT_EQ(pickAt(*env, PICK_TYPE_NODE, pixelX(corner) + 8, pixelY(corner), windowHeight), 0);
}

TEST_F(HostGuide, RectangleSelectsInsideWhicheverWayItWasDragged)
{
    const WindowPoint a = project(1.5f, 0.5f, 0), b = project(2.5f, 0.6f, 0);
    EXPECT_EQ(pickInside(*env, PICK_TYPE_ELEMENT, pixelX(b), pixelY(b), pixelX(a), pixelY(a), windowHeight), 2);
    EXPECT_EQ(selectedElements(*env), (Pairs{{12, 102}, {12, 103}}));
}

TEST_F(HostGuide, RectangleWithoutSizeIsAPixel)
{
    const WindowPoint spot = middle(1, 0);
    EXPECT_EQ(pickInside(*env, PICK_TYPE_PART, pixelX(spot), pixelY(spot), pixelX(spot), pixelY(spot), windowHeight),
              1);
    EXPECT_EQ(selectedParts(), Indices{2});
}

TEST_F(HostGuide, SavedViewDrawsTheSamePictureInAFreshEnvironment)
{
    float drag[] = {150, 120, 240, 190};
    env->mTrans->updateValues(GLOBAL_ROTATION, drag);
    env->selectPart(3);
    env->setPolygonMode(GL_LINE);
    draw();
    const kvo::Picture before = target->read();
    ASSERT_EQ(env->save(path.c_str()), 0);

    env->setPolygonMode(GL_FILL);
    load({square(0, 0, 0), quadStripPart(3), square(2, 5, 0)}); // all shown, none selected
    draw();
    EXPECT_GT(kvo::compare(before, target->read()).differing, 0u);
    ASSERT_TRUE(restoreView(*env, path.c_str()));
    draw();
    EXPECT_EQ(kvo::compare(before, target->read()).differing, 0u);
}

TEST_F(HostGuide, ViewOfAnotherModelIsRefused)
{
    env->selectPart(3);
    ASSERT_EQ(env->save(path.c_str()), 0);
    env->clearSelectedParts();
    env->modelName = "other";
    EXPECT_FALSE(restoreView(*env, path.c_str()));
    env->modelName = "model";
    std::ofstream(path, std::ios::app) << '.';
    EXPECT_FALSE(restoreView(*env, path.c_str())) << "too long for three parts";
    std::ofstream(path, std::ios::trunc) << "\xff\xff\xff\xff";
    EXPECT_FALSE(restoreView(*env, path.c_str()));
    EXPECT_FALSE(restoreView(*env, "/no/such/file"));
    EXPECT_TRUE(nothingSelected());
}
