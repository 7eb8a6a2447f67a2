// Fuzzing's short form, for CTest and without Clang: every seed of a format as it is, and damaged in a fixed number of
// ways that are the same in every run.
//
//   fuzz_replay FORMAT DAMAGES [--trace] FILE|FOLDER...
//
// --trace names every case before it runs: the last one named is the one that ended the process.
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "mutations.h"
#include "read_input.h"

namespace fs = std::filesystem;

namespace {

constexpr unsigned secondsPerCase = 10;         // then SIGALRM ends the process: a reader that never ends
constexpr rlim_t memoryLimit = rlim_t(2) << 30; // then std::bad_alloc does: a reader that believes any count
constexpr std::size_t largeSeed = 65536;        // from here on a seed is damaged in fewer ways
constexpr unsigned damagesOfLargeSeed = 10;
constexpr unsigned modelEvery = 50; // cases whose mesh is also written

#if defined(__SANITIZE_ADDRESS__)
#define KVO_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KVO_ADDRESS_SANITIZER 1
#endif
#endif

void limitMemory()
{
#ifndef KVO_ADDRESS_SANITIZER // which reserves terabytes; the test sets ASAN_OPTIONS=max_allocation_size_mb instead
    const rlimit limit = {memoryLimit, memoryLimit};
    setrlimit(RLIMIT_AS, &limit);
#endif
}

std::vector<fs::path> seedsIn(const fs::path& place)
{
    if (!fs::is_directory(place)) {
        return {place};
    }
    std::vector<fs::path> seeds;
    for (const fs::directory_entry& entry : fs::directory_iterator(place)) {
        if (entry.is_regular_file()) {
            seeds.push_back(entry.path());
        }
    }
    std::sort(seeds.begin(), seeds.end());
    return seeds;
}

std::string contentOf(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "fuzz_replay: cannot open %s\n", path.c_str());
        std::exit(2);
    }
    return {std::istreambuf_iterator<char>(in), {}};
}

class Replay
{
public:
    Replay(const kvo::DeckFormat& format, unsigned damages, bool trace) : format(format), damages(damages), trace(trace)
    {
        std::string pattern = (fs::temp_directory_path() / "kvo_fuzz_XXXXXX").string();
        folder = mkdtemp(pattern.data());
    }
    ~Replay() { fs::remove_all(folder); }
    Replay(const Replay&) = delete;
    Replay& operator=(const Replay&) = delete;

    // Number 0 is the seed itself.
    void run(const fs::path& path)
    {
        const std::string seed = contentOf(path);
        const unsigned last = seed.size() < largeSeed ? damages : std::min(damages, damagesOfLargeSeed);
        for (unsigned number = 0; number <= last; ++number) {
            if (trace) {
                std::fprintf(stderr, "%s %s %u\n", format.key, path.c_str(), number);
            }
            runCase(number == 0 ? seed : damaged(seed, number), number % modelEvery == 0);
        }
    }

    unsigned casesRun() const { return cases; }

private:
    void runCase(const std::string& deck, bool writeModel)
    {
        alarm(secondsPerCase);
        readInput(format, deck.data(), deck.size(), writeModel ? (folder / "model").string() : std::string());
        alarm(0);
        ++cases;
    }

    const kvo::DeckFormat& format;
    const unsigned damages;
    const bool trace;
    fs::path folder;
    unsigned cases = 0;
};

} // namespace

int main(int argc, char** argv)
{
    const kvo::DeckFormat* format = argc > 3 ? kvo::findDeckFormat(argv[1]) : nullptr;
    if (!format) {
        std::fprintf(stderr, "usage: fuzz_replay FORMAT DAMAGES [--trace] FILE|FOLDER...\n");
        return 2;
    }
    limitMemory();
    const bool trace = std::strcmp(argv[3], "--trace") == 0;
    Replay replay(*format, static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)), trace);
    const auto start = std::chrono::steady_clock::now();
    for (int k = trace ? 4 : 3; k < argc; ++k) {
        for (const fs::path& seed : seedsIn(argv[k])) {
            replay.run(seed);
        }
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    std::printf("%s: %u cases in %.1f s\n", format->key, replay.casesRun(), elapsed.count());
    return replay.casesRun() > 0 ? 0 : 1;
}
