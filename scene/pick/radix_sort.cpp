#include "radix_sort.h"

#include <algorithm>
#include <cstddef>

#include "parallel.h"

namespace kvo {

namespace {

constexpr unsigned int digitBits = 11;
constexpr std::size_t digits = 1u << digitBits;
constexpr std::size_t leastPiece = 65536;
constexpr std::size_t smallCount = 256; // less is faster sorted by comparing

// One pass: items by one digit. Pieces of the items count their digits first, so that each knows where its own go.
void sortDigit(const std::vector<KeyedNumber>& from, unsigned int shift, std::size_t pieces,
               std::vector<KeyedNumber>& to)
{
    const std::size_t length = (from.size() + pieces - 1) / pieces;
    std::vector<std::size_t> places(pieces * digits, 0); // a row of digits for each piece
    const auto ofPiece = [&](std::size_t piece, const auto& action) {
        const std::size_t end = std::min(from.size(), (piece + 1) * length);
        for (std::size_t k = piece * length; k < end; ++k) {
            action(from[k], places[piece * digits + (from[k].key >> shift & (digits - 1))]);
        }
    };
    parallelFor(pieces, 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t piece = begin; piece < end; ++piece) {
            ofPiece(piece, [](const KeyedNumber&, std::size_t& place) { ++place; });
        }
    });
    std::size_t next = 0;
    for (std::size_t digit = 0; digit < digits; ++digit) {
        for (std::size_t piece = 0; piece < pieces; ++piece) {
            std::size_t& place = places[piece * digits + digit];
            const std::size_t count = place;
            place = next;
            next += count;
        }
    }
    parallelFor(pieces, 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t piece = begin; piece < end; ++piece) {
            ofPiece(piece, [&](const KeyedNumber& item, std::size_t& place) { to[place++] = item; });
        }
    });
}

} // namespace

unsigned int bitsOf(std::uint32_t value)
{
    unsigned int bits = 0;
    for (; value != 0; value >>= 1) {
        ++bits;
    }
    return bits;
}

void sortByKey(std::vector<KeyedNumber>& items, unsigned int bits)
{
    if (items.size() < smallCount) {
        std::stable_sort(items.begin(), items.end(),
                         [](const KeyedNumber& a, const KeyedNumber& b) { return a.key < b.key; });
        return;
    }
    const std::size_t pieces = std::clamp<std::size_t>(items.size() / leastPiece, 1, workerCount());
    std::vector<KeyedNumber> other(items.size());
    for (unsigned int shift = 0; shift < bits; shift += digitBits) {
        sortDigit(items, shift, pieces, other);
        items.swap(other);
    }
}

} // namespace kvo
