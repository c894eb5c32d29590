#include <gtest/gtest.h>

#include <string>

#include "engine/preview/MainFile.h"

namespace vx::engine {
namespace {

struct MainCase {
    std::string packageJson;
    std::string main;
};

void PrintTo(const MainCase& c, std::ostream* out) {
    *out << ::testing::PrintToString(c.packageJson);
}

class MainFileTest : public ::testing::TestWithParam<MainCase> {};

TEST_P(MainFileTest, mainFrom_givesTheFileTheHostLoadsFirst) {
    EXPECT_EQ(MainFileFrom(GetParam().packageJson), GetParam().main);
}

INSTANTIATE_TEST_SUITE_P(
    Descriptions, MainFileTest,
    ::testing::Values(
        MainCase{R"({"name":"a","main":"app.html"})", "app.html"},
        MainCase{R"({"main":"pages/start page.html"})", "pages/start page.html"},
        MainCase{R"({"main":"./pages/a.html"})", "pages/a.html"},
        MainCase{R"({"main":"/a.html"})", "a.html"}, MainCase{R"({"main":""})", "index.html"},
        MainCase{R"({"main":"./"})", "index.html"}, MainCase{R"({"main":3})", "index.html"},
        MainCase{R"({"name":"a"})", "index.html"}, MainCase{R"(["main"])", "index.html"},
        MainCase{"{main", "index.html"}, MainCase{"", "index.html"}));

}  // namespace
}  // namespace vx::engine
