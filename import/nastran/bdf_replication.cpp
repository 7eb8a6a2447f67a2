// Replication of cards.
#include "bdf_replication.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "text/fields.h"
#include "text/numbers.h"

namespace kvo {

namespace {

constexpr std::size_t fieldsPerLine = 8;

// "*(5)", "* 5" and "*5" as 5; empty for anything else.
std::string_view incrementText(std::string_view field)
{
    field = trimmed(field);
    if (field.size() < 2 || field[0] != '*') {
        return {};
    }
    field = trimmed(field.substr(1));
    const bool brackets = field.size() > 2 && field.front() == '(' && field.back() == ')';
    return brackets ? trimmed(field.substr(1, field.size() - 2)) : field;
}

bool isInteger(std::string_view text, std::int64_t& value)
{
    const char* p = text.data();
    return scanInteger(p, text.data() + text.size(), value) && p == text.data() + text.size();
}

// A real that is whole keeps its point, so that it stays one.
std::string spelt(double value)
{
    char text[40];
    std::string result(text, std::to_chars(text, text + sizeof text, value).ptr);
    return result.find_first_of(".e") == std::string::npos ? result + "." : result;
}

} // namespace

BdfReplication::Increment BdfReplication::incrementOf(std::string_view field)
{
    const std::string_view text = incrementText(field);
    Increment increment;
    if (isInteger(text, increment.integer)) {
        increment.kind = Increment::Kind::Integer;
    } else if (!text.empty() && parseReal(text, increment.real)) {
        increment.kind = Increment::Kind::Real;
    }
    return increment;
}

// A blank field counts as 0. False for one that is no number, and for a sum that is none.
bool BdfReplication::added(const std::string& start, const Increment& increment, std::uint64_t times, std::string& sum)
{
    const std::string_view text = trimmed(start);
    std::int64_t integer = 0;
    const bool whole = increment.kind == Increment::Kind::Integer;
    if (whole && (text.empty() || isInteger(text, integer))) {
        std::int64_t steps = 0;
        if (__builtin_mul_overflow(increment.integer, static_cast<std::int64_t>(times), &steps) ||
            __builtin_add_overflow(integer, steps, &integer)) {
            return false;
        }
        sum = std::to_string(integer);
        return true;
    }
    double real = 0.0;
    if (!text.empty() && !parseReal(text, real)) {
        return false;
    }
    real += static_cast<double>(times) * (whole ? static_cast<double>(increment.integer) : increment.real);
    sum = spelt(real);
    return std::isfinite(real);
}

bool BdfReplication::refersBack(const BdfCard& card)
{
    return card.key == replicatedName ||
           std::any_of(card.fields.begin(), card.fields.end(), [](std::string_view field) {
               const std::string_view text = trimmed(field);
               return text == "=" || text == "==" || incrementOf(text).kind != Increment::Kind::None;
           });
}

bool BdfReplication::next(BdfCard& card)
{
    while (true) {
        if (repeatsLeft > 0) {
            --repeatsLeft;
            if (repeat(card)) {
                return true;
            }
            continue;
        }
        if (!lines.next(card)) {
            return false;
        }
        if (card.repeats > 0) {
            startRepeating(card);
        } else if (!card.replicates || !refersBack(card)) {
            remember(card);
            return true;
        } else if (replicate(card)) {
            return true;
        }
    }
}

const std::string& BdfReplication::fieldBefore(std::size_t field) const
{
    static const std::string blank;
    return field < before.size() ? before[field] : blank;
}

// Only where the next card may ask for it: this is in the way of every card.
void BdfReplication::remember(const BdfCard& card)
{
    keyBefore = 0;
    if (lines.nextReplicates()) {
        keyBefore = card.key;
        before.assign(card.fields.begin(), card.fields.end());
        increments.clear();
    }
}

// What the mesh needs must not be missing; anything else can.
bool BdfReplication::refuse(const BdfCard& card, std::size_t field)
{
    const std::string message = card.name() + ": nothing can be added to \"" + fieldBefore(field).substr(0, 20) +
                                "\" in field " + std::to_string(field + 2) + " of the card before";
    if (isMeshCard(card.key)) {
        throw ImportError(card.place(), message);
    }
    log.warn("replicated cards that are left out", card.place(), message);
    repeatsLeft = 0;
    keyBefore = 0;
    return false;
}

// --- cards with symbols ---

// All further fields of the line, and those of the further lines as far as the card does not give them itself.
void BdfReplication::copyRest(const BdfCard& card, std::size_t field)
{
    const std::size_t line = field / fieldsPerLine;
    for (std::size_t k = field; k < std::max(card.fields.size(), before.size()); ++k) {
        const bool absent = k >= card.fields.size() || card.fields[k].data() == nullptr;
        const bool ownBlank = !absent && card.blank(k) && k / fieldsPerLine == line;
        if (k > field && !absent && !ownBlank) {
            return;
        }
        made.push_back(fieldBefore(k));
    }
}

// False for an increment that cannot be added.
bool BdfReplication::takeField(const BdfCard& card, std::size_t field)
{
    const std::string_view text = trimmed(card.fields[field]);
    if (text == "=") {
        made.push_back(fieldBefore(field));
        return true;
    }
    const Increment increment = incrementOf(text);
    if (increment.kind == Increment::Kind::None) {
        made.emplace_back(text);
        return true;
    }
    increments.resize(std::max(increments.size(), field + 1));
    increments[field] = increment;
    std::string& sum = made.emplace_back();
    return added(fieldBefore(field), increment, 1, sum) || refuse(card, field);
}

bool BdfReplication::replicate(BdfCard& card)
{
    if (keyBefore == 0) {
        log.warn("replicated cards without a card", card.place(), "there is no card before that this one could repeat");
        return false;
    }
    card.key = card.key == replicatedName ? keyBefore : card.key;
    made.clear();
    increments.clear();
    while (made.size() < card.fields.size()) {
        const std::size_t field = made.size();
        if (trimmed(card.fields[field]) == "==") {
            copyRest(card, field);
        } else if (!takeField(card, field)) {
            return false;
        }
    }
    give(card);
    return true;
}

// --- repeats ---

void BdfReplication::startRepeating(const BdfCard& card)
{
    if (keyBefore == 0) {
        log.warn("replicated cards without a card", card.place(), "there is no card before that could be repeated");
        return;
    }
    if (card.repeats > mostCards - cardsMade) {
        throw ImportError(card.place(), "more than " + std::to_string(mostCards) + " cards would be made by \"=n\"");
    }
    cardsMade += card.repeats;
    repeatsLeft = card.repeats;
    repeatsDone = 0;
    start = before;
    repeated = card;
}

bool BdfReplication::repeat(BdfCard& card)
{
    ++repeatsDone;
    card = repeated;
    card.key = keyBefore;
    card.fields.assign(start.begin(), start.end());
    made = start;
    for (std::size_t k = 0; k < increments.size() && k < made.size(); ++k) {
        if (increments[k].kind != Increment::Kind::None && !added(start[k], increments[k], repeatsDone, made[k])) {
            return refuse(card, k);
        }
    }
    give(card);
    return true;
}

// The card's fields are those that were made, and it is the one before the next.
void BdfReplication::give(BdfCard& card)
{
    keyBefore = card.key;
    before.swap(made);
    card.fields.assign(before.begin(), before.end());
}

} // namespace kvo
