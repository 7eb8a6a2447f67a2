// kvo: finite-element models on the command line.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "command_words.h"
#include "commands.h"
#include "file_roles.h"
#include "program_error.h"
#include "signal_guard.h"
#include "standard_streams.h"
#include "text/printable.h"

namespace {

const char* const manual = R"(
EXAMPLES
  kvo import bracket.inp -o bracket          a model directory from a deck
  kvo info bracket                           its parts as a table
  kvo render bracket -o bracket.png          a picture
  kvo render bracket.inp -o all.png --view all
                                             the seven views of a deck in one picture
  kvo pick bracket --at 700,600 --type element
                                             the element at a place of the picture
  kvo play tour.session bracket              a session: views, picks, selections, pictures

Each command has its own manual: kvo render --help.

EXIT STATUS
  0  done
  1  something is wrong with the input, or on the way; the message says what and where
  2  the command line makes no sense
)";

int fail(const char* message, int status)
{
    std::cout.flush();
    std::fprintf(stderr, "kvo: %s\n", kvo::printableLines(message).c_str());
    return status;
}

int parseAndRun(CLI::App& program, int argc, char** argv)
{
    kvo::checkWords(program, std::vector<std::string>(argv + std::min(1, argc), argv + argc));
    try {
        program.parse(argc, argv);
        return 0;
    } catch (const CLI::Success& request) { // --help, --version
        return program.exit(request);
    } catch (const CLI::ParseError& error) {
        return fail((std::string(error.what()) + "; see kvo --help").c_str(), kvo::exitUsage);
    }
}

} // namespace

int main(int argc, char** argv)
{
    kvo::openStandardStreams();
    kvo::installSignalGuard("kvo");
    CLI::App program("Finite-element models: imports decks, says what is in them, draws them without a display.",
                     "kvo");
    program.set_version_flag("--version", "kvo " KVO_VERSION);
    program.require_subcommand(1);
    program.get_formatter()->column_width(34);
    kvo::addImportCommand(program);
    kvo::addInfoCommand(program);
    kvo::addRenderCommand(program);
    kvo::addPickCommand(program);
    kvo::addPlayCommand(program);
    program.footer(manual); // after the commands, which would inherit it
    try {
        const int status = parseAndRun(program, argc, argv);
        std::cout.flush();
        return std::cout ? status : fail("standard output cannot be written", kvo::exitFailure);
    } catch (const kvo::UsageError& error) {
        return fail(error.what(), kvo::exitUsage);
    } catch (const kvo::FileConflict& error) {
        return fail(error.what(), kvo::exitUsage);
    } catch (const std::bad_alloc&) {
        return fail("this needs more memory than there is", kvo::exitFailure);
    } catch (const std::exception& error) {
        return fail(error.what(), kvo::exitFailure);
    }
}
