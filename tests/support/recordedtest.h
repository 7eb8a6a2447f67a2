// The fixture of tests that watch the drawing library: OpenGL calls recorded without a context, standard output caught.
#ifndef RECORDEDTEST_H
#define RECORDEDTEST_H

#include <iostream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "glrecord.h"
#include "outputcapture.h"

using glrecord::Lines;

class RecordedTest : public testing::Test
{
protected:
    void SetUp() override
    {
        std::cout.clear(); // a broken stream of one test is not the next one's
        glrecord::start(glrecord::Mode::RecordOnly);
        output.emplace(1);
    }

    void TearDown() override
    {
        output->stop();
        if (HasFailure()) {
            std::fputs(output->all().c_str(), stdout);
        }
        glrecord::stop();
    }

    // What was printed since the last call (of either).
    std::string printed() { return output->take(); }
    Lines printedLines() { return splitLines(output->take()); }

    // From here on: no recorded calls, no prints.
    void forget()
    {
        output->take();
        glrecord::clear();
    }

private:
    std::optional<OutputCapture> output;
};

// "LABEL=" followed by a number of milliseconds, as the timing lines have it.
inline bool isTiming(const std::string& line, const std::string& label, const std::string& unit = "")
{
    if (line.size() <= label.size() + unit.size() || line.compare(0, label.size(), label) != 0 ||
        line.compare(line.size() - unit.size(), unit.size(), unit) != 0) {
        return false;
    }
    const std::string number = line.substr(label.size(), line.size() - label.size() - unit.size());
    return number.find_first_not_of("0123456789") == std::string::npos;
}

#endif
