// kvo-convert: CGNS, Exodus II and MED files to model directories. kvo import calls it; it can be used alone.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <limits>
#include <new>

#include <CLI/CLI.hpp>

#include "container_reader.h"
#include "file_roles.h"
#include "isolated.h"
#include "log_report.h"
#include "model_builder.h"
#include "scratch_folder.h"
#include "signal_guard.h"
#include "standard_streams.h"
#include "text/printable.h"

namespace {

constexpr int exitFailure = 1;
constexpr int exitUsage = 2;

struct Options
{
    std::string deck;
    std::string output;
    std::string format;
    bool shiftOrigin = false;
    bool report = false;
};

std::string manual()
{
    std::string out = "\nFORMATS\n";
    for (const kvo::ContainerFormat& format : kvo::containerFormats()) {
        out += std::string("  ") + format.key + ": " + format.name + " (" + format.suffixes + "): " + format.summary +
               "\n";
    }
    return out + "\nEXIT STATUS\n  0  done\n  1  the file cannot be read; the message says why\n"
                 "  2  the command line makes no sense\n";
}

// The model directory, and the report about it. Runs in a child process.
std::string convert(const Options& options)
{
    try {
        kvo::ImportLog log(options.report ? std::numeric_limits<std::size_t>::max() : 5);
        const kvo::ContainerFormat* format =
            options.format.empty() ? nullptr : kvo::findContainerFormat(options.format);
        const kvo::Mesh mesh = kvo::readContainer(options.deck, format, log);
        kvo::ModelOptions model;
        model.shiftOrigin = options.shiftOrigin;
        kvo::writeModelDirectory(mesh, options.output, log, model);
        if (!options.report) {
            log.note(std::to_string(mesh.elementCount()) + " elements, " + std::to_string(mesh.nodeCount()) +
                     " nodes from " + mesh.formatName);
        }
        return kvo::logReport(log);
    } catch (const std::bad_alloc&) {
        return kvo::errorReport(options.deck +
                                ": needs more memory than the machine has, or than a file of its size can mean");
    } catch (const std::exception& error) {
        return kvo::errorReport(error.what());
    }
}

std::uint64_t sizeOf(const std::string& path)
{
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(path, missing);
    return missing ? 0 : size;
}

int statusOfOutput()
{
    std::cout.flush();
    if (std::cout) {
        return 0;
    }
    std::fprintf(stderr, "kvo-convert: standard output cannot be written\n");
    return exitFailure;
}

int run(const Options& options)
{
    kvo::FileRoles roles;
    roles.reads(options.deck, "the file to read");
    roles.writesFolder(options.output, "--output");
    kvo::checkModelName(options.output);
    kvo::removeDeadFolders(kvo::parentOf(options.output));
    const kvo::IsolatedResult result =
        kvo::runIsolated([&] { return convert(options); }, kvo::memoryForFile(sizeOf(options.deck)));
    if (!result.finished) { // what it had begun
        kvo::removeDeadFolders(kvo::parentOf(options.output));
        kvo::removeDeadFolders(std::filesystem::temp_directory_path().string());
    }
    const std::string report =
        result.finished ? result.text
                        : kvo::errorReport(options.deck + ": damaged: the library that reads it " + result.ending);
    kvo::ImportLog log(std::numeric_limits<std::size_t>::max());
    try {
        kvo::readLogReport(report, log);
    } catch (const std::exception& error) {
        std::cout << (options.report ? report : "");
        std::cout.flush();
        if (!options.report) {
            std::fprintf(stderr, "kvo-convert: %s\n", kvo::printableLines(error.what()).c_str());
        }
        return exitFailure;
    }
    if (options.report) {
        std::cout << report;
    } else {
        log.print(std::cout);
    }
    return statusOfOutput();
}

std::vector<std::string> formatKeys()
{
    std::vector<std::string> keys;
    for (const kvo::ContainerFormat& format : kvo::containerFormats()) {
        keys.push_back(format.key);
    }
    return keys;
}

} // namespace

int main(int argc, char** argv)
{
    kvo::openStandardStreams();
    kvo::installSignalGuard("kvo-convert");
    CLI::App program("Writes a model directory from a CGNS, Exodus II or MED file.", "kvo-convert");
    Options options;
    program.set_version_flag("--version", "kvo-convert " KVO_VERSION);
    program.add_option("deck", options.deck, "File to read")->required()->type_name("FILE");
    program.add_option("-o,--output", options.output, "Model directory to write")->required()->type_name("MODELDIR");
    program.add_option("--format", options.format, "The file's format, where its content misleads")
        ->check(CLI::IsMember(formatKeys(), CLI::ignore_case));
    program.add_flag("--shift-origin", options.shiftOrigin,
                     "Move the model near 0, for coordinates that single precision cannot keep");
    program.add_flag("--report", options.report, "Print one JSON object with all that there is to say, errors too");
    program.footer(manual);
    try {
        program.parse(argc, argv);
        return run(options);
    } catch (const CLI::Success& request) { // --help, --version
        program.exit(request);
        return statusOfOutput();
    } catch (const CLI::ParseError& error) {
        std::fprintf(stderr, "kvo-convert: %s; see kvo-convert --help\n", kvo::printableLines(error.what()).c_str());
        return exitUsage;
    } catch (const kvo::FileConflict& error) {
        std::fprintf(stderr, "kvo-convert: %s\n", kvo::printableLines(error.what()).c_str());
        return exitUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kvo-convert: %s\n", kvo::printableLines(error.what()).c_str());
        return exitFailure;
    }
}
