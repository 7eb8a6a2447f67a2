// A scene of a Model and its ModelView: the same pictures, picks and selections as of an environment with the same
// records, and views that differ.
#include <kvo/view_names.h>

#include "mantypes.h"
#include "scene_fixture.h"
#include <kvo/coloring.h>
#include <kvo/select_more.h>
#include <kvo/through_picker.h>
#include <kvo/visible_picker.h>

namespace {

using kvo::Camera;
using kvo::ElementKind;
using kvo::Model;
using kvo::ModelView;
using kvo::PickRegion;
using kvo::PickType;
using kvo::Picture;
using kvo::SceneHit;
using kvo::SceneView;

constexpr kvo::Viewport window = {320, 240};

ElementKind kindOf(unsigned int drawType)
{
    return drawType == SHELL   ? ElementKind::Shell
           : drawType == SOLID ? ElementKind::Solid
           : drawType == BEAM  ? ElementKind::Beam
                               : ElementKind::Discrete;
}

// What an environment holds, as a model.
Model modelOf(CAEEnv& env)
{
    kvo::ModelBuilder builder;
    for (const auto& [id, index] : env.pidMap) {
        const PartInfoStr& record = env.partsInfoList[index];
        const PartNodesStr& nodes = record.partNodes;
        const PartElementsStr& elements = record.partElements;
        std::vector<std::uint32_t> elementIds(elements.numElements / elements.nodesPerElement);
        for (const auto& [elementId, element] : *elements.eidMap) {
            elementIds[element] = elementId;
        }
        kvo::Part part;
        part.id = id;
        part.kind = kindOf(record.partDrawType);
        std::copy_n(record.partColor, 4, part.color.begin());
        builder.addPart(part, true, {nodes.idList, nodes.idList + nodes.numNodes},
                        {nodes.nodeValues, nodes.nodeValues + std::size_t(3) * nodes.numNodes}, elementIds,
                        elements.nodesPerElement, {elements.elmIndices, elements.elmIndices + elements.numElements});
    }
    return builder.build();
}

class ModelScene : public SceneTest
{
protected:
    // Solids, shells, beams and springs, side by side.
    void addAll()
    {
        PartInfoStr parts[] = {blockPart(4), sheetPart(6, true), beamPart(), discretePart()};
        const float places[4][3] = {{0, 0, 0}, {5, 0, 1}, {0, 5, 0}, {3, 6, 2}};
        for (int k = 0; k < 4; ++k) {
            movePart(parts[k], places[k][0], places[k][1], places[k][2]);
            paintPart(parts[k], 0.9f, 0.2f * static_cast<float>(k), 0.3f, k == 1 ? 0.5f : 1);
            model.add(parts[k]);
        }
        load(GL_SMOOTH);
    }
    Camera camera(double degrees = 0)
    {
        Camera out;
        out.setOrientation(*kvo::viewOrientation("iso"));
        out.setPerspective(degrees);
        return out.fit(kvo::visibleBox(*model), window);
    }
    void drawAlike(SceneView& ofEnvironment, SceneView& ofModel, const char* what)
    {
        for (SceneView* view : {&ofEnvironment, &ofModel}) {
            view->setCamera(camera());
        }
        const Picture expected = picture(ofEnvironment), drawn = picture(ofModel);
        EXPECT_EQ(drawn.rgba, expected.rgba) << what;
    }
};

std::size_t differentPixels(const Picture& a, const Picture& b)
{
    std::size_t out = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            out += a.at(x, y).r != b.at(x, y).r || a.at(x, y).g != b.at(x, y).g || a.at(x, y).b != b.at(x, y).b;
        }
    }
    return out;
}

TEST_F(ModelScene, LooksAsTheSameEnvironmentDoes)
{
    addAll();
    ModelView shown(modelOf(*model));
    SceneView ofEnvironment(*model), ofModel(shown);
    drawAlike(ofEnvironment, ofModel, "as loaded");
    for (SceneView* view : {&ofEnvironment, &ofModel}) {
        view->look().style = kvo::SceneStyle::ShadedEdges;
        view->look().lines.feature = true;
        view->look().section.cut = kvo::SceneCut::Slice;
        view->look().section.plane[3] = -1.5;
    }
    drawAlike(ofEnvironment, ofModel, "edges, lines and a section");
    for (SceneView* view : {&ofEnvironment, &ofModel}) {
        view->look().section.cut = kvo::SceneCut::Off;
        view->look().ghosts = true;
    }
    model.part(0).partFlag = (model.part(0).partFlag & ~PART_SHOWN) | PART_HIDDEN;
    shown.parts[0].hidden = true;
    model.part(2).partFlag |= PART_SELECTED;
    shown.parts[2].selected = true;
    model.part(3).partFlag |= PART_HIGHLIGHTED;
    shown.parts[3].highlighted = true;
    drawAlike(ofEnvironment, ofModel, "a ghost, a selected and a highlighted part");
    for (SceneView* view : {&ofEnvironment, &ofModel}) {
        view->setColoring(kvo::colorByQuality(shown, kvo::Quality::Skew));
    }
    drawAlike(ofEnvironment, ofModel, "coloured by quality");
}

TEST_F(ModelScene, SelectedElementsAndNodesAreDrawnAlike)
{
    addAll();
    ModelView shown(modelOf(*model));
    SceneView ofEnvironment(*model), ofModel(shown);
    kvo::ElementSet elements(shown);
    kvo::NodeSet nodes(shown);
    for (std::size_t k = 40; k < 64; ++k) {
        elements.insert(0, k);
    }
    elements.insert(1, 3);
    nodes.insert(0, 124);
    nodes.insert(1, 0);
    ASSERT_TRUE(kvo::selectOnly(shown, elements));
    ASSERT_TRUE(kvo::selectOnly(shown, nodes));
    ASSERT_TRUE(kvo::selectOnly(*model, elements));
    ASSERT_TRUE(kvo::selectOnly(*model, nodes));
    EXPECT_EQ(kvo::selectedElements(shown).marks, elements.marks);
    EXPECT_EQ(kvo::selectedNodes(shown).marks, nodes.marks);
    drawAlike(ofEnvironment, ofModel, "selected");
    elements.erase(1, 3);
    ASSERT_TRUE(kvo::selectOnly(shown, elements));
    ASSERT_TRUE(kvo::selectOnly(*model, elements));
    drawAlike(ofEnvironment, ofModel, "one less");
    EXPECT_FALSE(kvo::selectOnly(shown, kvo::ElementSet())) << "of another model";
    EXPECT_EQ(kvo::selectedElements(shown).marks, elements.marks);
}

TEST_F(ModelScene, HitsAreThoseOfTheEnvironment)
{
    addAll();
    ModelView shown(modelOf(*model));
    SceneView ofEnvironment(*model), ofModel(shown);
    kvo::ThroughPicker throughEnvironment(*model), throughModel(shown);
    const PickRegion region = PickRegion::rectangle(60, 60, 250, 200);
    for (const double degrees : {0.0, 40.0}) {
        for (SceneView* view : {&ofEnvironment, &ofModel}) {
            view->setCamera(camera(degrees));
            picture(*view);
        }
        kvo::VisiblePicker inEnvironment(ofEnvironment), inModel(ofModel);
        for (const PickType type : {PickType::Part, PickType::Element, PickType::Node}) {
            const std::vector<SceneHit> expected[] = {inEnvironment.pick(type, region),
                                                      throughEnvironment.pick(type, region, ofEnvironment.pickView())};
            const std::vector<SceneHit> found[] = {inModel.pick(type, region),
                                                   throughModel.pick(type, region, ofModel.pickView())};
            for (int k = 0; k < 2; ++k) {
                ASSERT_EQ(found[k].size(), expected[k].size());
                ASSERT_FALSE(found[k].empty());
                for (std::size_t h = 0; h < found[k].size(); ++h) {
                    EXPECT_EQ(found[k][h].partId, expected[k][h].partId);
                    EXPECT_EQ(found[k][h].entityId, expected[k][h].entityId);
                    EXPECT_NE(found[k][h].partId, 0u);
                    EXPECT_EQ(found[k][h].entityId == 0, type == PickType::Part);
                    EXPECT_EQ(found[k][h].depth, expected[k][h].depth);
                }
            }
        }
    }
}

TEST_F(ModelScene, TwoViewsOfOneModelDiffer)
{
    addAll();
    const Model records = modelOf(*model);
    ModelView first(records), second(records);
    EXPECT_EQ(first.model.parts().data(), second.model.parts().data()) << "the records are shared";
    SceneView left(first), right(second);
    left.setCamera(camera());
    right.setCamera(camera());
    EXPECT_EQ(differentPixels(picture(left), picture(right)), 0u);
    second.parts[0].hidden = true;
    const Picture before = picture(left);
    EXPECT_GT(differentPixels(before, picture(right)), 1000u);
    first.parts[0].color = {0, 1, 0, 1};
    EXPECT_GT(differentPixels(before, picture(left)), 1000u);
    EXPECT_EQ(records.parts()[0].color[1], 0.0f) << "the model keeps its own";
}

// Inside the block is a cell that shows when those before it are not there.
TEST_F(ModelScene, HiddenElementsAreNotThere)
{
    model.add(blockPart(3));
    load();
    ModelView shown(modelOf(*model));
    SceneView view(shown);
    view.setCamera(camera());
    picture(view);
    kvo::VisiblePicker picker(view);
    const PickRegion all = PickRegion::rectangle(0, 0, 320, 240);
    EXPECT_EQ(picker.pick(PickType::Element, all).size(), 19u) << "three sides of a 3 x 3 x 3 block";
    kvo::ElementSet hidden(shown);
    for (const SceneHit& hit : picker.pick(PickType::Element, all)) {
        hidden.insert(hit.part - 1, hit.entity - 1);
    }
    ASSERT_TRUE(kvo::hideOnly(shown, hidden));
    picture(view);
    EXPECT_EQ(picker.pick(PickType::Element, all).size(), 7u) << "of the 2 x 2 x 2 cells behind them";
    shown.parts[0].hiddenElements = nullptr;
    picture(view);
    EXPECT_EQ(picker.pick(PickType::Element, all).size(), 19u);
}

TEST_F(ModelScene, ModelsMayTakeEachOthersPlace)
{
    model.add(blockPart(2));
    load();
    ModelView shown(modelOf(*model));
    SceneView view(shown);
    const Picture block = picture(view); // as a whole, from the isometric side: no camera was set
    EXPECT_TRUE(view.camera());
    shown = ModelView();
    const Picture nothing = picture(view);
    EXPECT_GT(differentPixels(block, nothing), 5000u);
    kvo::VisiblePicker picker(view);
    EXPECT_TRUE(picker.pick(PickType::Element, PickRegion::rectangle(0, 0, 320, 240)).empty());
    shown = ModelView(modelOf(*model));
    EXPECT_EQ(picture(view).rgba, block.rgba);
}

TEST_F(ModelScene, BoxesAreDrawnAboutTheirParts)
{
    model.add(hexaPart());
    load();
    ModelView shown(modelOf(*model));
    SceneView view(shown);
    view.look().style = kvo::SceneStyle::Wire;
    view.look().edgeColor[0] = 1;
    shown.parts[0].hidden = true;
    const Picture nothing = picture(view);
    shown.parts[0].boxShown = true;
    EXPECT_EQ(differentPixels(picture(view), nothing), 0u) << "not of hidden parts";
    shown.parts[0].hidden = false;
    shown.parts[0].color = {0, 0, 0, 1};
    EXPECT_GT(differentPixels(picture(view), nothing), 200u);
}

// Quadrilaterals are drawn as two triangles each.
TEST_F(ModelScene, LinesAreTheSidesOfFacesAndNoDiagonals)
{
    model.add(quadPart());
    load();
    ModelView shown(modelOf(*model));
    SceneView view(shown);
    view.look().axes = false;
    Camera above;
    above.setOrientation(*kvo::viewOrientation("top"));
    above = above.fit(shown.visibleBox(), window);
    view.setCamera(above);
    const auto isLit = [&](const Picture& drawn, double x, double y) {
        const kvo::PicturePoint at = *above.project({x, y, 0}, window);
        bool lit = false;
        for (int step = 0; step < 9; ++step) {
            const auto pixel = drawn.at(static_cast<int>(at.pixel.x) + step % 3 - 1,
                                        239 - static_cast<int>(at.pixel.y) + step / 3 - 1);
            lit = lit || pixel.r + pixel.g + pixel.b > 30;
        }
        return lit;
    };
    EXPECT_TRUE(isLit(picture(view), 0.5, 0.5));
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    const Picture lines = picture(view);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    EXPECT_FALSE(isLit(lines, 0.5, 0.5)) << "a diagonal";
    for (const double side : {0.0, 1.0}) {
        EXPECT_TRUE(isLit(lines, 0.5, side));
        EXPECT_TRUE(isLit(lines, side, 0.5));
    }
}

TEST_F(ModelScene, SelectorsFindTheSameByIdsAndJoints)
{
    addAll();
    ModelView shown(modelOf(*model));
    kvo::Selector ofEnvironment(*model), ofModel(shown);
    const std::vector<kvo::IdRange> few = {{103, 104}, {150, 150}, {999, 2000}};
    const std::vector<kvo::IdRange> many = {{1, 1000, 2}};
    for (const std::vector<kvo::IdRange>& ids : {few, many}) {
        EXPECT_EQ(ofModel.elementsById(ids).marks, ofEnvironment.elementsById(ids).marks);
        EXPECT_EQ(ofModel.nodesById(ids).marks, ofEnvironment.nodesById(ids).marks);
        EXPECT_FALSE(ofModel.elementsById(ids).empty());
    }
    EXPECT_EQ(ofModel.elementsOfParts({{12, 13}}).marks, ofEnvironment.elementsOfParts({{12, 13}}).marks);
    EXPECT_FALSE(ofModel.elementsOfParts({{12, 12}}).empty());
    const kvo::ElementSet start = ofModel.elementsById({{101, 101}});
    EXPECT_EQ(ofModel.growByLayers(start, 2).marks, ofEnvironment.growByLayers(start, 2).marks);
    EXPECT_EQ(ofModel.attached(start).marks, ofEnvironment.attached(start).marks);
    shown.parts[0].hidden = true;
    EXPECT_EQ(ofModel.elementsOfKind(ElementKind::Solid).count(), 0u);
    ofModel.scope = kvo::Scope::AllParts;
    EXPECT_EQ(ofModel.elementsOfKind(ElementKind::Solid).count(), 64u);
}

TEST(ModelViews, BoxAndMarks)
{
    kvo::ModelBuilder builder;
    for (std::uint32_t k = 0; k < 2; ++k) {
        kvo::Part part;
        part.id = k + 1;
        const float x = 10 * static_cast<float>(k);
        builder.addPart(part, false, {1, 2, 3}, {x, 0, 0, x + 1, 0, 0, x, 2, 0}, {7, 9}, 4, {0, 1, 2, 2, 0, 1, 2, 2});
    }
    ModelView shown(builder.build());
    ASSERT_EQ(shown.parts.size(), 2u);
    EXPECT_EQ(shown.visibleBox().high[0], 11);
    shown.parts[1].hidden = true;
    EXPECT_EQ(shown.visibleBox().high[0], 1);
    shown.parts[0].hidden = true;
    EXPECT_EQ(shown.visibleBox().high[0], 11) << "all where all are hidden";
    EXPECT_EQ(ModelView().visibleBox().low[2], -1);
    const kvo::IdTable& ids = shown.model.parts()[0].elementIds;
    EXPECT_EQ(kvo::marksOf(ids, {8, 10}), nullptr);
    EXPECT_EQ(*kvo::marksOf(ids, {9, 10}), (std::vector<std::uint8_t>{0, 1}));
}

} // namespace
