// Redirecting standard output and standard error.
#include <cstdio>
#include <iostream>

#include <unistd.h>

#include "host_fixture.h"
#include "output_redirect.h"

using kvo::ErrorCapture;
using kvo::OutputRedirect;

TEST(OutputRedirect, CatchesStreamsPrintfAndWriteInOrder)
{
    Folder folder;
    {
        OutputRedirect redirect(folder.file("log"));
        std::cout << "stream" << std::endl;
        std::printf("printf\n");
        std::fflush(stdout);
        EXPECT_EQ(write(STDERR_FILENO, "write\n", 6), 6);
        std::cerr << "error" << std::endl;
    }
    EXPECT_EQ(readText(folder.file("log")), "stream\nprintf\nwrite\nerror\n");
}

TEST(OutputRedirect, WhatWasBufferedBeforeAndAfterStaysWhereItWas)
{
    Folder folder;
    OutputRedirect outer(folder.file("outer"));
    std::printf("before ");
    {
        OutputRedirect inner(folder.file("inner"));
        std::printf("inside ");
    }
    std::printf("after ");
    outer.finish();
    EXPECT_EQ(readText(folder.file("outer")), "before after ");
    EXPECT_EQ(readText(folder.file("inner")), "inside ");
}

TEST(OutputRedirect, TheOldDescriptorsStillReachTheUser)
{
    Folder folder;
    OutputRedirect user(folder.file("user"));
    {
        OutputRedirect quiet("");
        std::printf("library\n");
        dprintf(quiet.standardOutput(), "out\n");
        dprintf(quiet.standardError(), "err\n");
    }
    user.finish();
    EXPECT_EQ(readText(folder.file("user")), "out\nerr\n");
}

TEST(OutputRedirect, BeginsTheFileAnew)
{
    Folder folder;
    writeText(folder.file("log"), "old text\n");
    {
        OutputRedirect redirect(folder.file("log"));
        std::puts("new");
    }
    EXPECT_EQ(readText(folder.file("log")), "new\n");
}

TEST(OutputRedirect, AnUnwritableFileIsAnErrorAndChangesNothing)
{
    Folder folder;
    OutputRedirect outer(folder.file("outer"));
    EXPECT_TRUE(contains(hostError([] { OutputRedirect redirect("/nowhere/at/all"); }), "/nowhere/at/all"));
    std::puts("still here");
    outer.finish();
    EXPECT_EQ(readText(folder.file("outer")), "still here\n");
}

TEST(OutputRedirect, AnOldFileStaysUntilTheEnd)
{
    Folder folder;
    writeText(folder.file("log"), "old text\n");
    OutputRedirect redirect(folder.file("log"));
    std::puts("new");
    std::fflush(stdout);
    EXPECT_EQ(readText(folder.file("log")), "old text\n");
    EXPECT_EQ(folder.count(), 1u);
    redirect.finish();
    EXPECT_EQ(readText(folder.file("log")), "new\n");
}

TEST(OutputRedirect, FinishTellsThatTheFileCannotBeWritten)
{
    Folder folder;
    std::filesystem::create_directory(folder.path / "sub");
    OutputRedirect redirect(folder.file("sub/log"));
    std::filesystem::remove(folder.path / "sub");
    std::puts("text");
    EXPECT_TRUE(contains(hostError([&] { redirect.finish(); }), folder.file("sub/log") + ": cannot be written"));
}

TEST(ErrorCaptureTest, TakesStandardErrorOnly)
{
    Folder folder;
    OutputRedirect outer(folder.file("outer"));
    {
        ErrorCapture capture;
        std::fprintf(stderr, "one\n");
        std::puts("output");
        std::cerr << "two\n";
        EXPECT_EQ(capture.text(), "one\ntwo\n");
    }
    std::cerr << "later\n";
    outer.finish();
    EXPECT_EQ(readText(folder.file("outer")), "output\nlater\n");
}

TEST(OutputRedirect, LeaksNoDescriptors)
{
    const auto open = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto before = open();
    for (int k = 0; k < 20; ++k) {
        OutputRedirect redirect("");
        ErrorCapture capture;
    }
    EXPECT_EQ(open(), before);
}
