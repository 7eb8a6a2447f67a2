// The one door to the deck readers.
#include "deck_import.h"

#include "converter.h"
#include "deck.h"
#include "mesh_model.h"
#include "model_builder.h"
#include "model_origin.h"
#include "model_summary.h"

namespace kvo {

namespace {

const DeckFormat* formatOf(const DeckOptions& options)
{
    if (options.format.empty()) {
        return nullptr;
    }
    const DeckFormat* format = findDeckFormat(options.format);
    if (!format) {
        throw ImportError({}, "unknown deck format \"" + options.format + "\"");
    }
    return format;
}

ReadRules rulesOf(const DeckOptions& options)
{
    ReadRules rules;
    rules.root = options.root;
    return rules;
}

// Null for a deck that is no container.
const ContainerFormat* containerToImport(const std::string& deck, const DeckOptions& options)
{
    const ContainerFormat* container = containerOf(deck, options.format, rulesOf(options));
    if (container && !options.root.empty()) {
        throw ImportError({deck, 0}, std::string("is a file of format ") + container->name +
                                         ", in which links may name any other file: not read with --confine");
    }
    return container;
}

} // namespace

void importDeck(const std::string& deck, const std::string& modelDirectory, ImportLog& log, Progress progress,
                const DeckOptions& options)
{
    if (const ContainerFormat* container = containerToImport(deck, options)) {
        return convertContainer(deck, *container, modelDirectory, log, options);
    }
    const Mesh mesh = readDeck(deck, log, std::move(progress), formatOf(options), rulesOf(options));
    if (options.sourcesKnown) {
        options.sourcesKnown(mesh.sourceFiles);
    }
    ModelOptions model;
    model.shiftOrigin = options.shiftOrigin;
    writeModelDirectory(mesh, modelDirectory, log, model);
}

std::optional<Model> readDeckModel(const std::string& deck, const std::function<std::string()>& modelDirectory,
                                   ImportLog& log, Progress progress, const DeckOptions& options)
{
    if (const ContainerFormat* container = containerToImport(deck, options)) {
        convertContainer(deck, *container, modelDirectory(), log, options);
        return std::nullopt;
    }
    Mesh mesh = readDeck(deck, log, std::move(progress), formatOf(options), rulesOf(options));
    if (chooseFarOrigin(mesh) != Origin{}) {
        writeModelDirectory(mesh, modelDirectory(), log, {});
        return std::nullopt;
    }
    chooseOrigin(mesh, false, log); // warns of edges that single precision loses
    return makeModel(std::move(mesh), log);
}

std::vector<std::string> deckFormatKeys()
{
    std::vector<std::string> keys;
    for (const DeckFormat& format : deckFormats()) {
        keys.push_back(format.key);
    }
    for (const ContainerFormat& format : containerFormats()) {
        keys.push_back(format.key);
    }
    return keys;
}

std::string summarizeLeftOut(const ImportLog& log)
{
    std::uint64_t elements = 0, warnings = 0;
    for (const ImportLog::List& list : log.lists()) {
        for (const ImportLog::Entry& entry : list.entries) {
            elements += list.title == listElementsNotDrawn ? entry.count : 0;
        }
    }
    for (const ImportLog::Warnings& kind : log.warnings()) {
        warnings += kind.count;
    }
    std::string out;
    if (elements) {
        out = counted(elements, "element") + " of types that are not drawn";
    }
    if (warnings) {
        out += (out.empty() ? "" : ", ") + counted(warnings, "warning");
    }
    return out;
}

} // namespace kvo
