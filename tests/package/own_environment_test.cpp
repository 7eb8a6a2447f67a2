// A host that defines CAEEnv::cae_Env itself: its definition is the one that the library uses.
#include <gtest/gtest.h>

#include <GL/gl.h>

#include "caeenv.h"

CAEEnv* CAEEnv::cae_Env = nullptr;

TEST(OwnEnvironment, TheLibraryWritesTheHostsDefinition)
{
    ASSERT_EQ(CAEEnv::cae_Env, nullptr);
    CAEEnv env("dir", "model", GL_FLAT);
    EXPECT_EQ(CAEEnv::cae_Env, &env);
    EXPECT_EQ(CAEEnv::getPtr(), &env);
}

TEST(OwnEnvironment, TheLibraryReadsTheHostsDefinition)
{
    CAEEnv env("dir", "model", GL_FLAT);
    CAEEnv other("dir", "other", GL_FLAT);
    CAEEnv::cae_Env = &env;
    EXPECT_EQ(CAEEnv::getPtr(), &env);
    CAEEnv::setPtr(&other);
    EXPECT_EQ(CAEEnv::cae_Env, &other);
}
