// A host that leaves CAEEnv::cae_Env to the library.
#include <gtest/gtest.h>

#include <GL/gl.h>

#include "caeenv.h"

TEST(DefaultEnvironment, TheLibraryDefinesTheCurrentEnvironment)
{
    EXPECT_EQ(CAEEnv::getPtr(), nullptr);
    CAEEnv env("dir", "model", GL_FLAT);
    EXPECT_EQ(CAEEnv::getPtr(), &env);
    EXPECT_EQ(CAEEnv::cae_Env, &env);
}
