// Standard output or standard error as text, caught at the file descriptor: streams, printf and other libraries alike.
#ifndef OUTPUTCAPTURE_H
#define OUTPUTCAPTURE_H

#include <string>
#include <vector>

class OutputCapture
{
public:
    explicit OutputCapture(int descriptor = 1); // 1 standard output, 2 standard error; catches from here on
    ~OutputCapture();                           // as stop()
    OutputCapture(const OutputCapture&) = delete;
    OutputCapture& operator=(const OutputCapture&) = delete;

    std::string all();  // everything since construction
    std::string take(); // everything since the last take()
    void stop();        // the descriptor goes where it went before; what was caught stays readable

private:
    int descriptor;
    int saved; // duplicate of the original descriptor, -1 once stopped
    int file;
    std::size_t taken = 0;
};

// Without their line ends; a last line without one counts too.
std::vector<std::string> splitLines(const std::string& text);

#endif
