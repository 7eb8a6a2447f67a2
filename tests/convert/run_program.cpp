// A child process with its output in files.
#include "run_program.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string readText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

} // namespace

ProgramRun runProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& path,
                      const std::string& scratch)
{
    const std::string out = scratch + "/out", err = scratch + "/err";
    const pid_t child = fork();
    if (child == 0) {
        dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
        dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        setenv("PATH", path.c_str(), 1);
        std::vector<char*> words = {const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        execv(program.c_str(), words.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ProgramRun run;
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.out = readText(out);
    run.err = readText(err);
    return run;
}
