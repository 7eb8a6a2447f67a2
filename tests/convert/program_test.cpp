// kvo and kvo-convert on containers, good and damaged.
#include <netcdf.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "convert_fixture.h"
#include "isolated.h"
#include "run_program.h"

namespace fs = std::filesystem;

namespace {

const char* const nowhere = "/nonexistent";

struct Writer
{
    const char* name; // of the file
    void (*write)(const std::string& path);
};

const Writer writers[] = {
    {"tiny.exo", [](const std::string& path) { writeTinyExodus(path); }},
    {"tiny4.exo", [](const std::string& path) { writeTinyExodus(path, ExodusStorage::Hdf5); }},
    {"tiny.med", [](const std::string& path) { writeTinyMed(path); }},
    {"tiny.cgns", [](const std::string& path) { writeTinyCgns(path); }},
    {"tiny-adf.cgns", [](const std::string& path) { writeTinyCgns(path, true); }},
};

class Program : public ImportTest
{
protected:
    Program() { fs::create_directory(path("scratch")); }

    ProgramRun convert(const std::string& file, const std::string& model = "model")
    {
        return runProgram(KVO_CONVERT_PROGRAM, {path(file), "-o", path(model)}, nowhere, path("scratch"));
    }
    ProgramRun kvo(const std::vector<std::string>& arguments, const std::string& program = KVO_PROGRAM,
                   const std::string& searched = nowhere)
    {
        return runProgram(program, arguments, searched, path("scratch"));
    }
    // kvo in a folder without kvo-convert.
    std::string loneKvo()
    {
        fs::create_directory(path("bin"));
        fs::copy_file(KVO_PROGRAM, path("bin/kvo"));
        return path("bin/kvo");
    }
    std::string contents(const std::string& file) const
    {
        std::ifstream in(path(file), std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    // The bytes of a model's files by their names.
    std::map<std::string, std::string> modelFiles(const std::string& model) const
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(path(model))) {
            if (entry.is_regular_file()) {
                const std::string name = fs::relative(entry.path(), path(model)).string();
                files[name] = contents(model + "/" + name);
            }
        }
        return files;
    }
    // Either a model, or a message that names the file, and no model. Nothing else in the folder in both cases.
    void expectModelOrMessage(const std::string& file, const std::string& what)
    {
        const ProgramRun run = convert(file);
        const bool model = fs::exists(path("model"));
        EXPECT_EQ(run.status, model ? 0 : 1) << what << ": " << run.err;
        EXPECT_EQ(run.err.empty(), model) << what << ": " << run.err;
        if (!model) {
            EXPECT_EQ(run.err.rfind("kvo-convert: " + path(file) + ": ", 0), 0u) << what << ": " << run.err;
        }
        fs::remove_all(path("model"));
        for (const auto& entry : fs::directory_iterator(folder)) {
            EXPECT_TRUE(entry.path().filename() == file || entry.path().filename() == "scratch") << entry.path();
        }
    }
};

} // namespace

TEST_F(Program, KvoImportsEveryContainer)
{
    for (const Writer& writer : writers) {
        writer.write(path(writer.name));
        const ProgramRun run = kvo({"import", path(writer.name), "-o", path("model")});
        EXPECT_EQ(run.status, 0) << writer.name << run.err;
        EXPECT_EQ(run.err, "") << writer.name;
        EXPECT_TRUE(contains(run.out, "solid: ")) << run.out;
        EXPECT_TRUE(fs::exists(path("model/part_start"))) << writer.name;
        fs::remove_all(path("model"));
    }
}

TEST_F(Program, KvoReportsWhatIsNotDrawn)
{
    writeTinyExodus(path("tiny.exo"));
    const ProgramRun run = kvo({"import", path("tiny.exo"), "-o", path("model")});
    EXPECT_TRUE(contains(run.out, "SPHERE1")) << run.out;
    EXPECT_TRUE(contains(run.out, "8 elements")) << run.out;
}

TEST_F(Program, EndingsDoNotMatter)
{
    writeTinyMed(path("tiny.inp"));
    EXPECT_EQ(kvo({"import", path("tiny.inp"), "-o", path("model")}).status, 0);
    EXPECT_TRUE(fs::exists(path("model/part_start")));
}

TEST_F(Program, InfoTakesContainers)
{
    writeTinyCgns(path("tiny.cgns"));
    const ProgramRun run = kvo({"info", path("tiny.cgns"), "--sets"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(contains(run.out, "walls")) << run.out;
    EXPECT_TRUE(contains(run.out, "deck: CGNS")) << run.out;
}

TEST_F(Program, WithoutTheProgramKvoSaysWhatToInstall)
{
    const std::string lone = loneKvo();
    for (const Writer& writer : writers) {
        writer.write(path(writer.name));
        const ProgramRun run = kvo({"import", path(writer.name), "-o", path("model")}, lone);
        EXPECT_EQ(run.status, 1) << writer.name;
        EXPECT_EQ(run.err.rfind("kvo: " + path(writer.name) + ": ", 0), 0u) << run.err;
        for (const char* word : {"kvo-convert", "libcgns-dev", "libmedc-dev", "libnetcdf-dev"}) {
            EXPECT_TRUE(contains(run.err, word)) << run.err;
        }
        EXPECT_FALSE(fs::exists(path("model")));
    }
}

TEST_F(Program, TheProgramIsFoundOnPath)
{
    const std::string lone = loneKvo();
    writeTinyCgns(path("tiny.cgns"));
    const std::string beside = fs::path(KVO_CONVERT_PROGRAM).parent_path().string();
    EXPECT_EQ(kvo({"import", path("tiny.cgns"), "-o", path("model")}, lone, "/nonexistent:" + beside).status, 0);
    EXPECT_TRUE(fs::exists(path("model/part_start")));
}

TEST_F(Program, OtherNetcdfFilesAreNoDecks)
{
    int file = 0;
    ASSERT_EQ(nc_create(path("weather.nc").c_str(), NC_CLOBBER, &file), NC_NOERR);
    nc_close(file);
    const ProgramRun run = kvo({"import", path("weather.nc"), "-o", path("model")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              "kvo: " + path("weather.nc") + ": is stored as netCDF, but is neither CGNS, Exodus II nor MED\n");
}

TEST_F(Program, AWrongFormatIsAMessage)
{
    writeTinyExodus(path("tiny.exo"));
    for (const char* key : {"cgns", "med"}) {
        const ProgramRun run = kvo({"import", path("tiny.exo"), "-o", path("model"), "--format", key});
        EXPECT_EQ(run.status, 1) << key;
        EXPECT_EQ(run.err.rfind("kvo: " + path("tiny.exo") + ": ", 0), 0u) << run.err;
    }
    EXPECT_FALSE(fs::exists(path("model")));
}

TEST_F(Program, AMissingFileIsNotCalledDamaged)
{
    for (const char* key : {"cgns", "exodus", "med"}) {
        const ProgramRun run = kvo({"import", path("nowhere"), "-o", path("model"), "--format", key});
        EXPECT_EQ(run.status, 1) << key;
        EXPECT_EQ(run.err, "kvo: " + path("nowhere") + ": cannot open: No such file or directory\n") << key;
    }
}

// An ADF file can end in space that nothing uses; a file that lost no more than that gives the whole model.
TEST_F(Program, CutOffFilesAreAMessage)
{
    for (const Writer& writer : writers) {
        writer.write(path("cut"));
        const std::string whole = contents("cut");
        ASSERT_EQ(convert("cut").status, 0);
        const auto wholeModel = modelFiles("model");
        fs::remove_all(path("model"));
        std::size_t messages = 0;
        for (std::size_t k = 1; k <= 20; ++k) {
            write("cut", whole.substr(0, whole.size() * k / 21));
            const ProgramRun run = convert("cut");
            if (run.status == 0) {
                EXPECT_TRUE(modelFiles("model") == wholeModel) << writer.name << " " << k;
            } else {
                ++messages;
                EXPECT_EQ(run.status, 1) << writer.name << " " << k;
                EXPECT_EQ(run.err.rfind("kvo-convert: " + path("cut") + ": ", 0), 0u) << run.err;
                EXPECT_FALSE(fs::exists(path("model"))) << writer.name << " " << k;
            }
            fs::remove_all(path("model"));
        }
        EXPECT_GE(messages, writer.name == std::string("tiny-adf.cgns") ? 18u : 20u) << writer.name;
    }
}

TEST_F(Program, DamagedBytesAreAModelOrAMessage)
{
    for (const Writer& writer : writers) {
        writer.write(path("whole"));
        const std::string whole = contents("whole");
        fs::remove(path("whole"));
        for (std::size_t k = 0; k < 24; ++k) {
            std::string damaged = whole;
            const std::size_t at = whole.size() * k / 24;
            for (std::size_t byte = at; byte < std::min(at + 8, damaged.size()); ++byte) {
                damaged[byte] = static_cast<char>(k % 2 == 0 ? 0xFF : damaged[byte] ^ 0x55);
            }
            write("damaged", damaged);
            expectModelOrMessage("damaged", std::string(writer.name) + " at " + std::to_string(at));
        }
    }
}

TEST_F(Program, AFailedConversionKeepsTheOldModel)
{
    writeTinyMed(path("tiny.med"));
    ASSERT_EQ(convert("tiny.med").status, 0);
    const std::string before = contents("model/part_start");
    write("tiny.med", contents("tiny.med").substr(0, 5000));
    EXPECT_EQ(convert("tiny.med").status, 1);
    EXPECT_EQ(contents("model/part_start"), before);
}

constexpr std::uint64_t plenty = std::uint64_t{1} << 32;

TEST(Isolated, ACrashIsToldFromAResult)
{
    const kvo::IsolatedResult good = kvo::runIsolated([] { return std::string("done"); }, plenty);
    EXPECT_TRUE(good.finished);
    EXPECT_EQ(good.text, "done");
    const kvo::IsolatedResult crashed = kvo::runIsolated([]() -> std::string { std::abort(); }, plenty);
    EXPECT_FALSE(crashed.finished);
    EXPECT_TRUE(contains(crashed.ending, "signal 6")) << crashed.ending;
}

TEST(Isolated, MemoryIsLimited)
{
#ifdef KVO_SANITIZED
    GTEST_SKIP() << "the sanitizer reserves terabytes";
#endif
    constexpr std::size_t wanted = std::size_t{200} << 20;
    const auto job = [] {
        try {
            return std::string(wanted, 'x').substr(0, 4);
        } catch (const std::bad_alloc&) {
            return std::string("none");
        }
    };
    EXPECT_EQ(kvo::runIsolated(job, wanted / 2).text, "none");
    EXPECT_EQ(kvo::runIsolated(job, wanted * 2).text, "xxxx");
}

// What it writes: never over what it reads, never a name that cannot be loaded, and no lost words.
TEST_F(Program, OutputsAreLookedAtFirst)
{
    write("a.cgns", "text");
    const ProgramRun over =
        runProgram(KVO_CONVERT_PROGRAM, {path("a.cgns"), "-o", path("a.cgns")}, nowhere, path("scratch"));
    EXPECT_EQ(over.status, 2);
    EXPECT_NE(over.err.find("is also the file to read"), std::string::npos) << over.err;
    const std::string longName = path(std::string(101, 'n'));
    const ProgramRun tooLong =
        runProgram(KVO_CONVERT_PROGRAM, {path("a.cgns"), "-o", longName}, nowhere, path("scratch"));
    EXPECT_EQ(tooLong.status, 1);
    EXPECT_NE(tooLong.err.find("could not be loaded"), std::string::npos) << tooLong.err;
    for (const char* way : {">&-", "> /dev/full"}) {
        const std::string text = std::string("exec ") + KVO_CONVERT_PROGRAM + " --help " + way;
        const ProgramRun closed = runProgram("/bin/sh", {"-c", text}, nowhere, path("scratch"));
        EXPECT_EQ(closed.status, 1) << way;
        EXPECT_NE(closed.err.find("standard output cannot be written"), std::string::npos) << closed.err;
    }
}

TEST(Isolated, MemoryGoesByTheFileAndTheMachine)
{
    const std::uint64_t there = kvo::memoryForFile(std::uint64_t{1} << 60);
    EXPECT_EQ(there,
              static_cast<std::uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)));
    EXPECT_EQ(kvo::memoryForFile(100), std::min(there, std::uint64_t{4} << 30));
    EXPECT_EQ(kvo::memoryForFile(5 << 20), std::min(there, std::uint64_t{5000} << 20));
}
