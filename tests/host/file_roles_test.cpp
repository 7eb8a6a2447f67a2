// Files that are read and written, compared by what they are.
#include <unistd.h>

#include "file_roles.h"
#include "host_fixture.h"

namespace fs = std::filesystem;
using kvo::FileRoles;

namespace {

struct Roles : testing::Test
{
    Roles()
    {
        fs::create_directory(folder.path / "sub");
        writeText(in, "input");
        fs::create_symlink("in", folder.path / "soft");
        fs::create_hard_link(in, folder.path / "hard");
        fs::create_directory_symlink(".", folder.path / "here");
    }
    Folder folder;
    const std::string in = folder.file("in");
    FileRoles roles;
};

} // namespace

TEST_F(Roles, InputsAreNotWrittenUnderAnyName)
{
    roles.reads(in, "the deck");
    for (const char* name : {"in", "soft", "hard", "here/in", "sub/../in", "./in"}) {
        EXPECT_EQ(hostError([&] { roles.writes(folder.file(name), "--log"); }),
                  "--log: \"" + folder.file(name) + "\" is also the deck");
    }
    roles.writes(folder.file("other"), "--log");
}

TEST_F(Roles, TheOrderMakesNoDifference)
{
    roles.writes(folder.file("hard"), "--log");
    EXPECT_EQ(hostError([&] { roles.reads(in, "the deck"); }),
              "--log: \"" + folder.file("hard") + "\" is also the deck");
}

TEST_F(Roles, NothingIsWrittenTwice)
{
    roles.writes(folder.file("new"), "the picture");
    for (const char* name : {"new", "here/new", "sub/../new"}) {
        EXPECT_EQ(hostError([&] { roles.writes(folder.file(name), "--log"); }),
                  "--log: \"" + folder.file(name) + "\" is also the picture");
    }
    roles.writes(folder.file("new"), "the picture"); // by the same again
    roles.writes(folder.file("sub/new"), "--log");   // an equal name elsewhere
}

TEST_F(Roles, ALinkToWhatIsNotThereIsTheSameFile)
{
    fs::create_symlink("sub/new", folder.path / "dangling");
    roles.writes(folder.file("dangling"), "the picture");
    EXPECT_THROW(roles.writes(folder.file("sub/new"), "--log"), kvo::FileConflict);
}

TEST_F(Roles, AFolderThatIsWrittenTakesAllThatIsInIt)
{
    writeText(folder.file("sub/deck"), "deck");
    roles.writesFolder(folder.file("sub"), "the model");
    EXPECT_EQ(hostError([&] { roles.reads(folder.file("here/sub/deck"), "the deck"); }),
              "the deck: \"" + folder.file("here/sub/deck") + "\" lies in the model, which is replaced");
    EXPECT_THROW(roles.writes(folder.file("sub/log"), "--log"), kvo::FileConflict);
    EXPECT_THROW(roles.writes(folder.file("sub"), "--log"), kvo::FileConflict);
    roles.writes(folder.file("log"), "--log");

    FileRoles other;
    other.reads(folder.file("sub/deck"), "the deck");
    EXPECT_THROW(other.writesFolder(folder.file("sub"), "the model"), kvo::FileConflict);
}

TEST_F(Roles, StandardOutputIsAnOutput)
{
    const auto inChild = [&] {
        if (!std::freopen(folder.file("out").c_str(), "w", stdout)) {
            _exit(9);
        }
        FileRoles own;
        const bool told =
            contains(hostError([&] { own.writes(folder.file("out"), "the picture"); }), "is also standard output");
        _exit(told ? 0 : 1);
    };
    EXPECT_EXIT(inChild(), testing::ExitedWithCode(0), "");
}

TEST_F(Roles, SameFileIsOneFileOrOneNewName)
{
    EXPECT_TRUE(kvo::sameFile(in, folder.file("hard")));
    EXPECT_TRUE(kvo::sameFile(folder.file("new"), folder.file("here/new")));
    EXPECT_FALSE(kvo::sameFile(folder.file("new"), folder.file("new2")));
    EXPECT_FALSE(kvo::sameFile(folder.file("no/new"), folder.file("no/new"))); // not even the folder is there
}
