// fork, a pipe, and how the child ended.
#include "isolated.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kvo {

namespace {

bool writeAll(int to, const std::string& text)
{
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t wrote = write(to, text.data() + done, text.size() - done);
        if (wrote < 0 && errno != EINTR) {
            return false;
        }
        done += wrote > 0 ? static_cast<std::size_t>(wrote) : 0;
    }
    return true;
}

std::string readAll(int from)
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

std::uint64_t pageBytes()
{
    return static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

// What is in use already comes on top. Memory that is only reserved, as threads do, does not count.
void limitMemory(std::uint64_t mostBytes)
{
#ifndef __SANITIZE_ADDRESS__     // which reserves terabytes
    std::uint64_t pages[6] = {}; // the last: of data and stack
    std::ifstream statm("/proc/self/statm");
    for (std::uint64_t& count : pages) {
        statm >> count;
    }
    const rlim_t limit = static_cast<rlim_t>(pages[5] * pageBytes() + mostBytes);
    rlimit limits = {};
    if (getrlimit(RLIMIT_DATA, &limits) == 0) {
        limits.rlim_cur = std::min(limit, limits.rlim_max);
        setrlimit(RLIMIT_DATA, &limits);
    }
#else
    static_cast<void>(mostBytes);
#endif
}

[[noreturn]] void work(const std::function<std::string()>& job, std::uint64_t mostBytes, pid_t parent, int to)
{
    limitMemory(mostBytes);
    prctl(PR_SET_PDEATHSIG, SIGTERM); // nobody would read the result
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(nowhere, stream);
    }
    const bool written = getppid() == parent && writeAll(to, job());
    _exit(written ? 0 : 1); // what the libraries do at the end of a process is of no use here
}

std::string endingOf(int status)
{
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "was ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
    }
    return "ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

std::uint64_t memoryForFile(std::uint64_t fileBytes)
{
    constexpr std::uint64_t least = std::uint64_t{4} << 30, densest = 1000;
    const std::uint64_t there = static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) * pageBytes();
    return std::min(there, std::max(least, std::min(fileBytes, there) * densest));
}

IsolatedResult runIsolated(const std::function<std::string()>& job, std::uint64_t mostBytes)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no pipe: ") + std::strerror(errno));
    }
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error(std::string("no child process: ") + std::strerror(errno));
    }
    if (child == 0) {
        close(ends[0]);
        work(job, mostBytes, parent, ends[1]);
    }
    close(ends[1]);
    IsolatedResult result;
    result.text = readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    result.finished = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    result.ending = result.finished ? std::string() : endingOf(status);
    return result;
}

} // namespace kvo
