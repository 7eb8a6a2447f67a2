// Models made part by part.
#include <kvo/model.h>

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

namespace {

using Numbers = std::vector<std::uint32_t>;

const std::vector<float> square = {0, 0, 0, 1, 0, 0, 1, 2, 0, 0, 2, -3};

kvo::Part shellPart(std::uint32_t id)
{
    kvo::Part part;
    part.id = id;
    part.name = "sheet " + std::to_string(id);
    return part;
}

// What add() says of a square whose arrays are as given; "" when it takes them.
std::string refusal(kvo::Part part, Numbers nodes, std::vector<float> positions, Numbers elements,
                    std::uint32_t slotCount, Numbers slots)
{
    kvo::ModelBuilder builder;
    try {
        builder.addPart(std::move(part), false, std::move(nodes), std::move(positions), std::move(elements), slotCount,
                        std::move(slots));
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "";
}

} // namespace

TEST(Model, HoldsWhatItWasGiven)
{
    kvo::ModelBuilder builder({1e6, 0, 0});
    kvo::Part part = shellPart(7);
    part.color = {0.5f, 0.25f, 1, 1};
    builder.addPart(part, true, {11, 12, 13, 14}, square, {900, 901}, 4, {0, 1, 2, 3, 0, 1, 2, 2});
    const kvo::Model model = builder.build();
    ASSERT_EQ(model.parts().size(), 1u);
    const kvo::Part& held = model.parts()[0];
    EXPECT_EQ(held.name, "sheet 7");
    EXPECT_EQ(held.color, part.color);
    EXPECT_EQ(held.elementIds.find(901), 1u);
    EXPECT_EQ(held.nodeIds[3], 14u);
    EXPECT_EQ(held.slotsOf(1)[2], 2u);
    EXPECT_EQ(held.positionOf(2)[1], 2.0f);
    EXPECT_EQ(held.extents, (std::array<float, 6>{0, 1, 0, 2, -3, 0}));
    EXPECT_EQ(model.extents(), held.extents);
    EXPECT_EQ(model.origin()[0], 1e6);
    EXPECT_EQ(model.elementCount(), 2u);
    EXPECT_EQ(model.nodeCount(), 4u);
    EXPECT_EQ(model.files().size(), 1u);
}

TEST(Model, CopiesKeepTheArraysAlive)
{
    const float* first = nullptr;
    kvo::Model copy;
    {
        kvo::ModelBuilder builder;
        builder.addPart(shellPart(1), false, {1, 2, 3, 4}, square, {1}, 4, {0, 1, 2, 3});
        const kvo::Model model = builder.build();
        first = model.parts()[0].positions.data();
        copy = model;
    }
    EXPECT_EQ(copy.parts()[0].positions.data(), first) << "no second array";
    EXPECT_EQ(copy.parts()[0].positions[6], 1.0f);
}

TEST(Model, FindsPartsByTheirIds)
{
    kvo::ModelBuilder builder;
    for (const std::uint32_t id : {30u, 10u, 20u}) {
        builder.addPart(shellPart(id), false, {}, {}, {}, 4, {});
    }
    const kvo::Model model = builder.build();
    EXPECT_EQ(model.findPart(10), 1u);
    EXPECT_EQ(model.findPart(20), 2u);
    EXPECT_EQ(model.findPart(25), kvo::Model::notFound);
    EXPECT_NE(model.parts()[0].color, model.parts()[1].color) << "colours of the palette";
}

TEST(Model, ThirdNodesMayMiss)
{
    kvo::Part beam = shellPart(1);
    beam.kind = kvo::ElementKind::Beam;
    EXPECT_EQ(refusal(beam, {1, 2}, {0, 0, 0, 1, 0, 0}, {5}, 3, {0, 1, kvo::emptySlot}), "");
    EXPECT_EQ(refusal(beam, {1, 2}, {0, 0, 0, 1, 0, 0}, {5}, 3, {0, kvo::emptySlot, 1}),
              "part 1: element 5 has a node that the part has not");
}

TEST(Model, RefusesWhatWouldBeReadOutsideOfItsArrays)
{
    const Numbers nodes = {1, 2, 3, 4};
    EXPECT_EQ(refusal(shellPart(3), nodes, square, {8}, 4, {0, 1, 2, 4}),
              "part 3: element 8 has a node that the part has not");
    EXPECT_EQ(refusal(shellPart(3), nodes, square, {8}, 4, {0, 1, 2, kvo::emptySlot}),
              "part 3: element 8 has a node that the part has not");
    EXPECT_EQ(refusal(shellPart(3), nodes, square, {8}, 4, {0, 1, 2}), "part 3: 3 slots for 1 elements of 4");
    EXPECT_EQ(refusal(shellPart(3), nodes, {0, 0, 0}, {}, 4, {}), "part 3: 3 coordinates for 4 nodes");
    EXPECT_EQ(refusal(shellPart(3), nodes, square, {8}, 8, {0, 1, 2, 3, 0, 1, 2, 3}),
              "part 3: elements of kind shell do not have 8 slots");
}

TEST(Model, RefusesIdsThatCannotBeLookedUp)
{
    EXPECT_EQ(refusal(shellPart(3), {1, 3, 2, 4}, square, {}, 4, {}), "part 3: node ids are not ascending");
    EXPECT_EQ(refusal(shellPart(3), {1, 2, 3, 4}, square, {8, 8}, 4, {0, 1, 2, 3, 0, 1, 2, 3}),
              "part 3: an element id occurs twice");
    kvo::ModelBuilder builder;
    builder.addPart(shellPart(5), false, {}, {}, {}, 4, {});
    builder.addPart(shellPart(5), false, {}, {}, {}, 4, {});
    EXPECT_THROW(builder.build(), std::invalid_argument);
}

TEST(Model, RefusesCoordinatesThatAreNoNumbers)
{
    std::vector<float> broken = square;
    broken[4] = std::nanf("");
    EXPECT_EQ(refusal(shellPart(3), {1, 2, 3, 4}, broken, {}, 4, {}),
              "part 3: a coordinate of node 2 is not a finite number");
}
