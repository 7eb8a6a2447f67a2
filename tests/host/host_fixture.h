// What tests of host/ share: a software context, a folder for files.
#ifndef KVO_TESTS_HOST_FIXTURE_H
#define KVO_TESTS_HOST_FIXTURE_H

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "headless_context.h"
#include "offscreen.h"

// An empty folder that goes away with the test.
class Folder
{
public:
    Folder()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name =
            (std::filesystem::temp_directory_path() / (std::string("kvo-") + test->name() + "-XXXXXX")).string();
        path = mkdtemp(&name[0]);
    }
    ~Folder() { std::filesystem::remove_all(path); }

    std::string file(const std::string& name) const { return (path / name).string(); }
    std::size_t count() const
    {
        std::size_t out = 0;
        for (auto it = std::filesystem::directory_iterator(path); it != std::filesystem::directory_iterator(); ++it) {
            ++out;
        }
        return out;
    }

    std::filesystem::path path;
};

inline std::string readText(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

inline void writeText(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

// The message of the error that the action throws; fails when it throws none.
template <class Error, class Action> std::string errorOf(Action action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    ADD_FAILURE() << "the error was not thrown";
    return "";
}
template <class Action> std::string hostError(Action action)
{
    return errorOf<kvo::HostError>(action);
}

inline bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

class Drawing : public testing::Test
{
protected:
    kvo::HeadlessContext context{"software"};
};

// Pixels of one colour: how many, and the box around them.
struct Blob
{
    int count = 0;
    int left = 1 << 30, right = -1, top = 1 << 30, bottom = -1;
    int width() const { return right - left + 1; }
    int height() const { return bottom - top + 1; }
};

inline Blob findColor(const kvo::Picture& picture, kvo::Color color)
{
    Blob out;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.at(x, y) != color) {
                continue;
            }
            ++out.count;
            out.left = std::min(out.left, x);
            out.right = std::max(out.right, x);
            out.top = std::min(out.top, y);
            out.bottom = std::max(out.bottom, y);
        }
    }
    return out;
}

#endif
