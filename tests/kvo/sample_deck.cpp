// Writing the sample deck.
#include "sample_deck.h"

#include <cmath>
#include <cstdio>

namespace {

// x counts from the model's left end. The model stands around the origin, where the axis triad is drawn.
void node(std::string& deck, int id, double x, double y, double z)
{
    char line[100];
    std::snprintf(line, sizeof line, "%d, %.6g, %.6g, %.6g\n", id, x - 3, y, z);
    deck += line;
}

std::string nodes()
{
    std::string out = "*NODE\n";
    const int along = 4, around = 5;
    for (int k = 0; k < along; ++k) {
        for (int j = 0; j < around; ++j) {
            const double angle = std::acos(-1.0) / 2 * j / (around - 1);
            node(out, 1 + k * around + j, 2 * k, 3 * std::cos(angle), 3 * std::sin(angle));
        }
    }
    node(out, 101, 0, -3, 0);
    node(out, 102, 6, -3, 0);
    node(out, 103, 6, 3, 0);
    node(out, 104, 0, 3, 0);
    for (int k = 0; k < 12; ++k) { // three layers of a column
        node(out, 201 + k, 1 + (k % 4 == 1 || k % 4 == 2), -1 + (k % 4 >= 2), 0.2 + k / 4 * 0.9);
    }
    node(out, 301, 3, -1, 0.2); // wedge under a pyramid's neighbour
    node(out, 302, 4, -1, 0.2);
    node(out, 303, 3.5, 0, 0.2);
    node(out, 304, 3, -1, 1.2);
    node(out, 305, 4, -1, 1.2);
    node(out, 306, 3.5, 0, 1.2);
    node(out, 307, 3.5, -1.2, 2.4);
    node(out, 401, 5, -2, 0.1);
    node(out, 402, 5, 0, 1.5);
    node(out, 403, 5, 2, 0.1);
    node(out, 501, 1.5, -0.5, 2);
    node(out, 502, 1.5, -0.5, 2.9);
    return out;
}

std::string arch()
{
    std::string out = "*ELEMENT, TYPE=S4, ELSET=ARCH\n";
    char line[100];
    for (int k = 0; k < 3; ++k) {
        for (int j = 0; j < 4; ++j) {
            const int a = 1 + k * 5 + j;
            std::snprintf(line, sizeof line, "%d, %d, %d, %d, %d\n", 1 + k * 4 + j, a, a + 5, a + 6, a + 1);
            out += line;
        }
    }
    return out;
}

} // namespace

std::string sampleDeck()
{
    return "*HEADING\nA vault with something under it\n" + nodes() + arch() +
           "*ELEMENT, TYPE=S3, ELSET=FLOOR\n"
           "31, 101, 102, 103\n32, 101, 103, 104\n"
           "*ELEMENT, TYPE=C3D8, ELSET=BLOCK\n"
           "41, 201, 202, 203, 204, 205, 206, 207, 208\n"
           "42, 205, 206, 207, 208, 209, 210, 211, 212\n"
           "*ELEMENT, TYPE=C3D6, ELSET=MIXED\n51, 301, 302, 303, 304, 305, 306\n"
           "*ELEMENT, TYPE=C3D4, ELSET=MIXED\n52, 304, 305, 306, 307\n"
           "*ELEMENT, TYPE=C3D5, ELSET=MIXED\n53, 301, 302, 305, 304, 307\n"
           "*ELEMENT, TYPE=B31, ELSET=BAR\n61, 401, 402\n62, 402, 403\n"
           "*ELEMENT, TYPE=SPRINGA, ELSET=SPRING\n71, 501, 502\n"
           "*MATERIAL, NAME=STEEL\n*ELASTIC\n210000, 0.3\n"
           "*SHELL SECTION, ELSET=ARCH, MATERIAL=STEEL\n0.1\n"
           "*SHELL SECTION, ELSET=FLOOR, MATERIAL=STEEL\n0.2\n"
           "*SOLID SECTION, ELSET=BLOCK, MATERIAL=STEEL\n"
           "*SOLID SECTION, ELSET=MIXED, MATERIAL=STEEL\n"
           "*BEAM SECTION, ELSET=BAR, MATERIAL=STEEL, SECTION=RECT\n0.1, 0.1\n1, 0, 0\n"
           "*SPRING, ELSET=SPRING\n\n1000\n";
}
