#include "lumo/foundation/hardware/program_path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumo {

TEST(ProgramPath, FolderKeepsItsSeparator) {
    EXPECT_EQ(folder_of("/a/b/velmora"), "/a/b/");
    EXPECT_EQ(folder_of("a\\velmora"), "a\\");
    EXPECT_EQ(folder_of("velmora"), "");
    EXPECT_THAT(read_program_path(), testing::EndsWith("/hardware_test"));
}

}  // namespace lumo
