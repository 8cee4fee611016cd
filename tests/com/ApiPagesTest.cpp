// docs/api says what the built type libraries say.

#include "tests/com/ApiPages.h"
#include "tests/com/HostServices.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#include <fstream>
#include <ios>
#include <iterator>
#include <string>

using namespace contract;

namespace {

std::string Stored(const std::string& file) {
    std::ifstream stream(tests::TopFolder() / "docs" / "api" / file, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
}

TEST(ApiPagesTest, AreThoseOfTheBuiltLibraries) {
    const TypeLibrary faces(support::Component::DllPath(), 2);
    const TypeLibrary component(support::Component::DllPath(), 1);
    const TypeLibrary services(HostServices::DllPath(), 1);
    const auto pages = ApiPages(faces, component, services);
    ASSERT_EQ(4U, pages.size());
    for (const ApiPage& page : pages) {
        EXPECT_TRUE(page.text == Stored(page.file)) << "docs/api/" << page.file << " is old; run ./tam api";
    }
}

} // namespace
