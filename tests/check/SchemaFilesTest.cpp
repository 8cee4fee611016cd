// The XML Schemas, asked by another program's parser: what scripts/check_schemas.py says.

#include "tests/Places.h"
#include "tests/ShellWord.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

namespace {

struct ClosePipe {
    void operator()(std::FILE* pipe) const noexcept { pclose(pipe); }
};

TEST(SchemaFilesTest, TakeEverySampleAndNoCounterexample) {
    const std::unique_ptr<std::FILE, ClosePipe> pipe(
        popen(("/usr/bin/python3 " +
               tests::ShellWord((tests::TopFolder() / "scripts" / "check_schemas.py").string()) +
               " 2>&1 && echo done")
                  .c_str(),
              "r"));
    ASSERT_TRUE(pipe);
    std::string said;
    std::array<char, 4096> piece{};
    for (std::size_t size = 0; (size = std::fread(piece.data(), 1, piece.size(), pipe.get())) > 0;) {
        said.append(piece.data(), size);
    }
    EXPECT_EQ(said, "done\n");
}

} // namespace
