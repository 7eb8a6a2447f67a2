// Runs the real program and keeps what it said.
#ifndef KVO_TESTS_RUN_KVO_H
#define KVO_TESTS_RUN_KVO_H

#include <filesystem>
#include <string>
#include <vector>

struct KvoRun
{
    int status = -1; // exit status, 128 + signal for a death by signal
    std::string out;
    std::string err;
};

// Draws with Mesa's processor driver. environment: further "NAME=value".
KvoRun runKvo(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {});

// Through a shell, with these words after the command line: ">&-", "> /dev/full".
KvoRun runKvoRedirected(const std::vector<std::string>& arguments, const std::string& redirections);

// As above, with a terminal as standard error; err is what came out of the terminal.
KvoRun runKvoOnTerminal(const std::vector<std::string>& arguments);

// A folder that goes away with this object.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(const std::string& name) const { return (path / name).string(); }
    std::vector<std::string> names() const; // of what is in it, sorted

    std::filesystem::path path;
};

std::string readText(const std::string& path);
void writeText(const std::string& path, const std::string& text);

inline bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

#endif
