// Runs programs and keeps what they said.
#ifndef KVO_TESTS_CONVERT_RUN_PROGRAM_H
#define KVO_TESTS_CONVERT_RUN_PROGRAM_H

#include <string>
#include <vector>

struct ProgramRun
{
    int status = -1; // exit status, 128 + signal for a death by signal
    std::string out;
    std::string err;
};

// path: the PATH that the program sees; scratch: a folder for its output.
ProgramRun runProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& path,
                      const std::string& scratch);

#endif
