// Writing small decks.
#include "small_decks.h"

#include <sstream>

std::string squaresDeck(const std::vector<Square>& squares, double scale)
{
    std::ostringstream nodes, elements;
    nodes << "*NODE\n";
    for (std::size_t k = 1; k <= squares.size(); ++k) {
        const Square& s = squares[k - 1];
        const double corners[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        for (std::size_t c = 0; c < 4; ++c) {
            nodes << 10 * k + c + 1 << ", " << scale * (s.x + corners[c][0]) << ", " << scale * (s.y + corners[c][1])
                  << ", " << scale * s.z << "\n";
        }
        elements << "*ELEMENT, TYPE=S4, ELSET=SQUARE" << k << "\n"
                 << 100 * k << ", " << 10 * k + 1 << ", " << 10 * k + 2 << ", " << 10 * k + 3 << ", " << 10 * k + 4
                 << "\n";
    }
    return nodes.str() + elements.str();
}

std::string gridDeck(int count)
{
    std::ostringstream out;
    out << "*NODE\n";
    for (int y = 0; y <= count; ++y) {
        for (int x = 0; x <= count; ++x) {
            out << y * (count + 1) + x + 1 << ", " << x << ", " << y << ", 0\n";
        }
    }
    out << "*ELEMENT, TYPE=S4, ELSET=GRID\n";
    for (int y = 0; y < count; ++y) {
        for (int x = 0; x < count; ++x) {
            const int a = y * (count + 1) + x + 1;
            out << y * count + x + 1 << ", " << a << ", " << a + 1 << ", " << a + count + 2 << ", " << a + count + 1
                << "\n";
        }
    }
    return out.str();
}
