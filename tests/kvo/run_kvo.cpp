// Child processes and their output.
#include "run_kvo.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The program runs by itself, or as what a shell is told to run.
[[noreturn]] void becomeKvo(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
                            int out, int err, const std::string& shellText = "")
{
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    // In builds with sanitizers: what is suppressed is no output of the program.
    const char* leaks = std::getenv("LSAN_OPTIONS");
    setenv("LSAN_OPTIONS", ((leaks ? leaks : "") + std::string(":print_suppressions=0")).c_str(), 1);
    // The leak checker stops all threads to look at them, and now and then falls over those of Mesa's driver.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 0);
    for (const std::string& entry : environment) {
        setenv(entry.substr(0, entry.find('=')).c_str(), entry.substr(entry.find('=') + 1).c_str(), 1);
    }
    std::vector<char*> words = {const_cast<char*>("kvo")};
    if (!shellText.empty()) {
        words = {const_cast<char*>("sh"), const_cast<char*>("-c"), const_cast<char*>(shellText.c_str()),
                 const_cast<char*>(KVO_PROGRAM)};
    }
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    execv(shellText.empty() ? KVO_PROGRAM : "/bin/sh", words.data());
    _exit(127);
}

int waitFor(pid_t child)
{
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

namespace {

KvoRun runWith(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
               const std::string& shellText)
{
    const TemporaryFolder folder;
    const int out = open(folder.file("out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const int err = open(folder.file("err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    const pid_t child = fork();
    if (child == 0) {
        becomeKvo(arguments, environment, out, err, shellText);
    }
    close(out);
    close(err);
    KvoRun run;
    run.status = waitFor(child);
    run.out = readText(folder.file("out"));
    run.err = readText(folder.file("err"));
    return run;
}

} // namespace

KvoRun runKvo(const std::vector<std::string>& arguments, const std::vector<std::string>& environment)
{
    return runWith(arguments, environment, "");
}

KvoRun runKvoRedirected(const std::vector<std::string>& arguments, const std::string& redirections)
{
    return runWith(arguments, {}, "exec \"$0\" \"$@\" " + redirections);
}

KvoRun runKvoOnTerminal(const std::vector<std::string>& arguments)
{
    const TemporaryFolder folder;
    const int out = open(folder.file("out").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    int master = -1, slave = -1;
    if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) {
        throw std::runtime_error("no pseudo terminal");
    }
    const pid_t child = fork();
    if (child == 0) {
        becomeKvo(arguments, {}, out, slave);
    }
    close(out);
    close(slave);
    KvoRun run;
    char buffer[4096];
    for (ssize_t got; (got = read(master, buffer, sizeof buffer)) > 0;) {
        run.err.append(buffer, static_cast<std::size_t>(got));
    }
    close(master);
    run.status = waitFor(child);
    run.out = readText(folder.file("out"));
    return run;
}

TemporaryFolder::TemporaryFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "kvo-test-XXXXXX").string();
    if (!mkdtemp(&name[0])) {
        throw std::runtime_error("no temporary folder");
    }
    path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::vector<std::string> TemporaryFolder::names() const
{
    std::vector<std::string> out;
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
        out.push_back(entry.path().filename().string());
    }
    std::sort(out.begin(), out.end());
    return out;
}

std::string readText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void writeText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}
