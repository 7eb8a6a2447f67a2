// Finding and running kvo-convert.
#include "converter.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "log_report.h"
#include "place.h"
#include "signal_guard.h"
#include "text/mapped_file.h"

namespace fs = std::filesystem;

namespace kvo {

namespace {

const char* const programName = "kvo-convert";

bool isProgram(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

// "" if it is nowhere.
std::string findProgram()
{
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    if (!error && isProgram(self.parent_path() / programName)) {
        return (self.parent_path() / programName).string();
    }
    const char* path = std::getenv("PATH");
    std::istringstream folders(path ? path : "");
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (!folder.empty() && isProgram(fs::path(folder) / programName)) {
            return (fs::path(folder) / programName).string();
        }
    }
    return "";
}

std::string readToEnd(int from)
{
    std::string text;
    char buffer[65536];
    for (;;) {
        const ssize_t got = read(from, buffer, sizeof buffer);
        if (got == 0 || (got < 0 && errno != EINTR)) {
            return text;
        }
        text.append(buffer, got > 0 ? static_cast<std::size_t>(got) : 0);
    }
}

// Starts the program with a pipe as its standard output; returns the end to read from.
int start(const std::vector<std::string>& command, pid_t& child)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw ImportError({command[0], 0}, std::string("no pipe: ") + std::strerror(errno));
    }
    std::vector<char*> words;
    for (const std::string& word : command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int error = posix_spawn(&child, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (error != 0) {
        close(ends[0]);
        throw ImportError({command[0], 0}, std::string("cannot be started: ") + std::strerror(error));
    }
    return ends[0];
}

// What the program prints. Its errors are in that, too; a program that ends otherwise is one.
std::string outputOf(const std::vector<std::string>& command)
{
    pid_t child = -1;
    const int from = start(command, child);
    guardChild(child);
    const std::string text = readToEnd(from);
    close(from);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    guardChild(0);
    const bool failed = !WIFEXITED(status) || WEXITSTATUS(status) != 0;
    if (failed && text.empty()) {
        throw ImportError({command[0], 0}, "ended without a report");
    }
    return text;
}

} // namespace

const ContainerFormat* containerOf(const std::string& deck, const std::string& formatKey, const ReadRules& rules)
{
    std::error_code error;
    if (!formatKey.empty()) {
        return findContainerFormat(formatKey);
    }
    if (deck == "-" || !fs::is_regular_file(deck, error)) { // looking into a pipe would empty it
        return nullptr;
    }
    const MappedFile file(deck, rules);
    const Container container = detectContainer(file);
    if (container.found && !container.format) {
        throw ImportError({deck, 0}, "is stored as " + container.storage + ", but is neither CGNS, Exodus II nor MED");
    }
    return container.format;
}

void convertContainer(const std::string& deck, const ContainerFormat& format, const std::string& modelDirectory,
                      ImportLog& log, const DeckOptions& options)
{
    const std::string program = findProgram();
    if (program.empty()) {
        throw ImportError({deck, 0},
                          std::string("is a file of format ") + format.name +
                              ", which kvo-convert reads, and that is neither beside kvo nor on PATH: install the "
                              "packages libcgns-dev, libmedc-dev and libnetcdf-dev and build kvo-convert");
    }
    std::vector<std::string> command = {program, "--report", "--format=" + std::string(format.key),
                                        "--output=" + modelDirectory};
    if (options.shiftOrigin) {
        command.push_back("--shift-origin");
    }
    command.insert(command.end(), {"--", deck});
    readLogReport(outputOf(command), log);
}

} // namespace kvo
