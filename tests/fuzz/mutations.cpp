// The kinds of damage, as a table.
#include "mutations.h"

#include <cctype>
#include <cstring>
#include <iterator>
#include <random>

namespace {

// Not the distributions of <random>, which differ from one standard library to the next.
class Dice
{
public:
    explicit Dice(unsigned seed) : engine(seed) {}
    std::size_t below(std::size_t bound) { return bound == 0 ? 0 : engine() % bound; }

private:
    std::mt19937 engine;
};

struct Range
{
    std::size_t begin;
    std::size_t size;
};

// The line that some byte is in, with its end.
Range someLine(const std::string& deck, Dice& dice)
{
    const std::size_t at = dice.below(deck.size());
    const std::size_t before = at == 0 ? std::string::npos : deck.rfind('\n', at - 1);
    const std::size_t begin = before == std::string::npos ? 0 : before + 1;
    const std::size_t end = deck.find('\n', begin);
    return {begin, (end == std::string::npos ? deck.size() : end + 1) - begin};
}

void flipBytes(std::string& deck, Dice& dice)
{
    for (std::size_t k = 1 + dice.below(4); k > 0; --k) {
        char& byte = deck[dice.below(deck.size())];
        byte = static_cast<char>(byte ^ (1 << dice.below(8)));
    }
}

void cutOff(std::string& deck, Dice& dice)
{
    deck.resize(dice.below(deck.size()));
}

void cutOut(std::string& deck, Dice& dice)
{
    deck.erase(dice.below(deck.size()), 1 + dice.below(16));
}

void removeLine(std::string& deck, Dice& dice)
{
    const Range line = someLine(deck, dice);
    deck.erase(line.begin, line.size);
}

void doubleLine(std::string& deck, Dice& dice)
{
    const Range line = someLine(deck, dice);
    const std::string text = deck.substr(line.begin, line.size);
    deck.insert(someLine(deck, dice).begin, text);
}

void exchangeLines(std::string& deck, Dice& dice)
{
    const Range line = someLine(deck, dice);
    const std::string text = deck.substr(line.begin, line.size);
    deck.erase(line.begin, line.size);
    deck.insert(deck.empty() ? 0 : someLine(deck, dice).begin, text);
}

// Puts an impossible number in place of one that stands in the text.
void blowUpNumber(std::string& deck, Dice& dice)
{
    static const char* const numbers[] = {"0",
                                          "-1",
                                          "99",
                                          "2147483647",
                                          "2147483648",
                                          "-2147483649",
                                          "4294967295",
                                          "999999999999",
                                          "9223372036854775807",
                                          "-9223372036854775808",
                                          "99999999999999999999999999",
                                          "1e308",
                                          "-1e-400",
                                          "1e999",
                                          "nan",
                                          "%"};
    std::size_t begin = dice.below(deck.size());
    while (begin < deck.size() && !std::isdigit(static_cast<unsigned char>(deck[begin]))) {
        ++begin;
    }
    std::size_t end = begin;
    while (end < deck.size() && std::isdigit(static_cast<unsigned char>(deck[end]))) {
        ++end;
    }
    deck.replace(begin, end - begin, numbers[dice.below(std::size(numbers))]);
}

// The same among bytes: counts, ids and offsets of binary formats.
void blowUpBytes(std::string& deck, Dice& dice)
{
    static const unsigned long long values[] = {0,          1,          0x7F,  0xFF,      0x7FFFFFFF,
                                                0x80000000, 0xFFFFFFFF, ~0ULL, 1ULL << 62};
    const unsigned long long value = values[dice.below(std::size(values))];
    const std::size_t width = std::size_t(1) << dice.below(4);
    if (deck.size() >= width) {
        std::memcpy(&deck[dice.below(deck.size() - width + 1)], &value, width);
    }
}

void (*const kinds[])(std::string& deck, Dice& dice) = {
    flipBytes, cutOff, cutOut, removeLine, doubleLine, exchangeLines, blowUpNumber, blowUpNumber, blowUpBytes};

} // namespace

std::string damaged(const std::string& deck, unsigned number)
{
    Dice dice(number);
    std::string result = deck;
    for (std::size_t faults = 1 + dice.below(3); faults > 0 && !result.empty(); --faults) {
        kinds[dice.below(std::size(kinds))](result, dice);
    }
    return result;
}
