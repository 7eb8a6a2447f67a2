// kvo import: a model directory from a deck.
#include <iostream>
#include <limits>
#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>

#include "commands.h"
#include "confinement.h"
#include "container.h"
#include "deck.h"
#include "deck_file.h"
#include "deck_import.h"
#include "file_checks.h"
#include "model_builder.h"
#include "model_source.h"
#include "model_summary.h"
#include "output_file.h"
#include "program_error.h"
#include "progress_bar.h"
#include "scratch_folder.h"
#include "text/printable.h"

namespace kvo {

namespace {

struct ImportOptions
{
    std::string deck;
    std::string output;
    std::string log;
    std::string confine;
    DeckOptions reading;
};

std::string manual()
{
    std::string out = "\nFORMATS\n  A deck's format is told by what it contains, else by its ending.\n";
    for (const DeckFormat& format : deckFormats()) {
        out += std::string("  ") + format.key + ": " + format.name + " (" + format.suffixes + "): " + format.summary +
               "\n";
    }
    out += "  Read by the program kvo-convert, where it is installed:\n";
    for (const ContainerFormat& format : containerFormats()) {
        out += std::string("  ") + format.key + ": " + format.name + " (" + format.suffixes + "): " + format.summary +
               "\n";
    }
    return out + R"(
MODEL DIRECTORY
  MODELDIR appears when everything is written; an older model directory of that name is replaced. A file or
  folder that is no model directory is left alone.

REPORT
  Prints what the model consists of, then what the deck has that the model has not: element types that are
  not drawn, keywords that are not read, elements without their nodes. Of many equal warnings the first few
  are printed; --log FILE gets all of them.

EXAMPLES
  kvo import bracket.inp -o bracket
  kvo import hull.stl -o models/hull --log hull.log
)";
}

// Directly below the title line come the kinds.
void printSummary(std::ostream& out, const ImportOptions& options, const ModelInfo& info)
{
    const ModelTotals totals = countModel(info);
    out << printable(options.output) << ": " << counted(info.parts.size(), "part") << ", "
        << counted(totals.elements, "element") << ", " << counted(totals.nodes, "node") << "\n";
    for (const auto& entry : totals.elementsByKind) {
        out << "  " << entry.first << ": " << counted(entry.second, "element") << "\n";
    }
}

void writeLog(const ImportOptions& options, const ModelInfo& info, const ImportLog& log)
{
    std::ostringstream out;
    printSummary(out, options, info);
    log.print(out);
    OutputFile(options.log).write(out.str());
}

FileRoles filesOf(const ImportOptions& options)
{
    FileRoles roles;
    roles.reads(options.deck, "the deck");
    roles.writesFolder(options.output, "--output");
    addOutput(roles, options.log, "--log");
    checkModelName(options.output);
    return roles;
}

void addSources(FileRoles& roles, const std::vector<std::string>& sources)
{
    for (const std::string& file : sources) {
        roles.reads(file, "a file of the deck");
    }
}

void import(const ImportOptions& options)
{
    const Confinement confinement(options.confine);
    confinement.check({options.deck, options.output, options.log});
    FileRoles roles = filesOf(options);
    DeckOptions reading = options.reading;
    reading.root = confinement.root();
    reading.sourcesKnown = [&roles](const std::vector<std::string>& sources) { addSources(roles, sources); };
    const bool everything = !options.log.empty();
    removeDeadFolders(parentOf(options.output));
    ImportLog log(everything ? std::numeric_limits<std::size_t>::max() : 5);
    {
        ProgressBar bar("reading");
        importDeck(
            options.deck, options.output, log,
            [&](std::uint64_t done, std::uint64_t total) {
                bar.update(total ? static_cast<double>(done) / static_cast<double>(total) : 0);
            },
            reading);
    }
    const ModelSource model(options.output, confinement);
    addSources(roles, readSources(model)); // those that kvo-convert has read
    printSummary(std::cout, options, model.info());
    if (!everything) {
        log.print(std::cout);
        return;
    }
    writeLog(options, model.info(), log);
    const std::string leftOut = summarizeLeftOut(log);
    std::cout << (leftOut.empty() ? "" : leftOut + "; ") << "report in " << printable(options.log) << "\n";
}

} // namespace

void addImportCommand(CLI::App& program)
{
    auto options = std::make_shared<ImportOptions>();
    CLI::App* command = program.add_subcommand("import", "Write a model directory from a deck.");
    command->add_option("deck", options->deck, "Deck to read, see below; - is standard input")
        ->required()
        ->type_name("DECK");
    command->add_option("-o,--output", options->output, "Model directory to write")->required()->type_name("MODELDIR");
    command->add_option("--log", options->log, "Write the whole report to this file")->type_name("FILE");
    command->add_option("--format", options->reading.format, "The deck's format, where its content and ending mislead")
        ->check(CLI::IsMember(deckFormatKeys(), CLI::ignore_case));
    command->add_flag("--shift-origin", options->reading.shiftOrigin,
                      "Move the model near 0, for coordinates that single precision cannot keep");
    addConfineOption(*command, options->confine);
    command->footer(manual);
    command->callback([options] { import(*options); });
}

} // namespace kvo
