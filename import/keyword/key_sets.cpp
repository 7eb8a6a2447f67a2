// Reading of *SET_ cards.
#include "key_sets.h"

#include "text/fields.h"

namespace kvo {

namespace {

const char* const kindNames[] = {"NODE", "PART", "SHELL", "SOLID", "TSHELL", "BEAM", "DISCRETE"};

const int families[] = {MeshSet::anyFamily,
                        MeshSet::anyFamily,
                        static_cast<int>(Family::Shell),
                        static_cast<int>(Family::Solid),
                        static_cast<int>(Family::Solid),
                        static_cast<int>(Family::Beam),
                        static_cast<int>(Family::Discrete)};

MeshSet::Of membersOf(int kind)
{
    return kind == KeySets::Nodes   ? MeshSet::Of::Nodes
           : kind == KeySets::Parts ? MeshSet::Of::Parts
                                    : MeshSet::Of::Elements;
}

constexpr int fieldsOfList = 8;

} // namespace

bool KeySets::begin(int kind)
{
    current = static_cast<Kind>(kind);
    titled = context.keyword.takeOption("TITLE");
    title.clear();
    at = 0;
    card = nullptr;
    return takeForm();
}

bool KeySets::takeForm()
{
    KeyKeyword& keyword = context.keyword;
    keyword.takeOption("COLLECT");
    keyword.takeOption("LIST");
    keyword.takeOption("SMOOTH");
    form = Form::List;
    if (keyword.takeOption("GENERATE")) {
        form = keyword.takeOption("INCREMENT") ? Form::Increment : Form::Generate;
    } else if (keyword.takeOption("COLUMN")) {
        form = Form::Column;
    } else if (keyword.takeOption("GENERAL")) {
        form = Form::General;
    } else if (keyword.takeOption("ADD")) {
        form = Form::Add;
    }
    return keyword.options.empty();
}

void KeySets::line(std::string_view text)
{
    ++at;
    if (titled && at == 1) {
        title.assign(trimmed(text));
        return;
    }
    if (trimmed(text).empty()) {
        at -= at == (titled ? 2 : 1);
        return;
    }
    if (at > (titled ? 2 : 1)) {
        return members(text);
    }
    KeyFields fields = context.fields(text);
    const std::int64_t id = context.lines.shifted(fields.integer(10), KeyOffsets::Set);
    if (context.accept(fields)) {
        card = &sets[{current, id}]; // sets of the same id are one with _COLLECT, and else too
        card->name = title.empty() ? std::string("SET_") + kindNames[current] + " " + std::to_string(id) : title;
        card->place = context.lines.place();
    }
}

std::int64_t KeySets::shiftedMember(std::int64_t id) const
{
    static const KeyOffsets::Of members[] = {KeyOffsets::Node, KeyOffsets::Part, KeyOffsets::Element};
    return context.lines.shifted(id, members[static_cast<int>(membersOf(current))]);
}

void KeySets::addRange(std::int64_t first, std::int64_t last, std::int64_t step)
{
    if (first > 0 && last >= first && step > 0) {
        card->ids.addRange(shiftedMember(first), shiftedMember(last), step);
    } else if (first != 0 || last != 0) {
        context.log.warn(warnBadField, context.lines.place(),
                         "*" + context.keyword.name + ": no range from " + std::to_string(first) + " to " +
                             std::to_string(last));
    }
}

void KeySets::members(std::string_view text)
{
    if (!card) {
        return;
    }
    KeyFields fields = context.fields(text);
    if (form == Form::General) {
        return general(fields);
    }
    const int count = form == Form::Column ? 1 : form == Form::Increment ? 3 : fieldsOfList;
    std::int64_t values[fieldsOfList] = {};
    for (int k = 0; k < count; ++k) {
        values[k] = fields.integer(10);
    }
    if (!context.accept(fields)) {
        return;
    }
    if (form == Form::Increment) {
        return addRange(values[0], values[1], values[2]);
    }
    for (int k = 0; k < count; ++k) {
        if (form == Form::Generate) {
            k += 1;
            addRange(values[k - 1], values[k], 1);
        } else if (values[k] != 0 && form == Form::Add) {
            card->others.push_back(context.lines.shifted(values[k], KeyOffsets::Set));
        } else if (values[k] != 0) {
            card->ids.add(shiftedMember(values[k]));
        }
    }
}

// Only what lists ids is read: what takes boxes, parts or whole models is named in the log.
void KeySets::general(KeyFields& fields)
{
    const std::string option = upperCase(fields.text(10));
    if (option != "NODE" && option != "ELEM" && option != "ID") {
        context.log.count(listKeywordsNotRead, "*" + context.keyword.name + ", option " + option, 1,
                          context.lines.place());
        return;
    }
    for (int k = 1; k < fieldsOfList; ++k) {
        const std::int64_t id = fields.integer(10);
        if (!context.accept(fields)) {
            return;
        }
        if (id != 0) {
            card->ids.add(shiftedMember(id));
        }
    }
}

// The ids of a set and of all that it names, each set once: sets may name each other in a circle.
void KeySets::collect(Key key, std::set<Key>& visited, IdSet& ids)
{
    std::vector<Key> open = {key};
    while (!open.empty()) {
        const Key next = open.back();
        open.pop_back();
        const auto found = sets.find(next);
        if (!visited.insert(next).second) {
            continue;
        }
        if (found == sets.end()) {
            context.log.warn(warnMissingSet, sets[key].place,
                             "set " + std::to_string(key.second) + " takes the members of set " +
                                 std::to_string(next.second) + ", which does not exist");
            continue;
        }
        ids.ranges.insert(ids.ranges.end(), found->second.ids.ranges.begin(), found->second.ids.ranges.end());
        for (const std::int64_t other : found->second.others) {
            open.push_back({next.first, other});
        }
    }
}

void KeySets::finish()
{
    std::vector<Key> keys;
    for (const auto& entry : sets) {
        keys.push_back(entry.first);
    }
    for (const Key& key : keys) {
        MeshSet set;
        set.of = membersOf(key.first);
        set.name = sets[key].name;
        set.id = key.second;
        set.family = families[key.first];
        std::set<Key> visited;
        collect(key, visited, set.ids);
        context.mesh.sets.push_back(std::move(set));
    }
}

} // namespace kvo
