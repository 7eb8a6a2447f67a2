// Looking where files really lie.
#include "confinement.h"

#include <filesystem>

#include <CLI/CLI.hpp>

#include "file_checks.h"
#include "program_error.h"
#include "session_file.h"
#include "text/confined.h"
#include "text/mapped_file.h"

namespace fs = std::filesystem;

namespace kvo {

Confinement::Confinement(const std::string& wanted) : folder(wanted)
{
    std::error_code error;
    if (!folder.empty() && !fs::is_directory(folder, error)) {
        throw UsageError("--confine: " + folder + " is no folder");
    }
}

void Confinement::check(const std::vector<std::string>& files) const
{
    for (const std::string& file : files) {
        if (!file.empty() && !isGivenOpen(file) && !liesWithin(file, folder)) {
            throw ProgramError(file, "lies outside of " + folder + ", to which --confine restricts this");
        }
    }
}

void Confinement::checkSession(const Session& session) const
{
    for (const Operation& operation : session.operations) {
        const bool file = !operation.file.empty() && operation.file != standardOutputName;
        if (file && !liesWithin(operation.file, folder)) {
            throw ProgramError(session.file, operation.line,
                               operation.file + " lies outside of " + folder + ", to which --confine restricts this");
        }
    }
}

void Confinement::checkModel(const std::string& directory) const
{
    check({directory});
    std::error_code error;
    for (fs::recursive_directory_iterator entry(directory, error), end; !folder.empty() && !error && entry != end;
         entry.increment(error)) {
        if (entry->is_symlink(error)) {
            check({entry->path().string()});
        }
    }
}

void addConfineOption(CLI::App& command, std::string& folder)
{
    command
        .add_option("--confine", folder,
                    "Read and write nothing outside of this folder: for decks, models and sessions of others")
        ->type_name("DIR");
}

} // namespace kvo
