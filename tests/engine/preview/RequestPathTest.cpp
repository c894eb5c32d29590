#include <gtest/gtest.h>

#include <string>

#include "engine/preview/RequestPath.h"

namespace vx::engine {
namespace {

using namespace std::string_literals;

struct Accepted {
    std::string target;
    std::string path;
};

void PrintTo(const Accepted& c, std::ostream* out) {
    *out << ::testing::PrintToString(c.target);
}

class RequestPathAcceptedTest : public ::testing::TestWithParam<Accepted> {};

TEST_P(RequestPathAcceptedTest, decodeOnce_givesThePathBelowTheRoot) {
    const RequestPath decoded = DecodeRequestPath(GetParam().target);
    EXPECT_TRUE(decoded.valid) << decoded.refusal;
    EXPECT_EQ(decoded.path, GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(Targets, RequestPathAcceptedTest,
                         ::testing::Values(Accepted{"/", ""}, Accepted{"/index.html", "index.html"},
                                           Accepted{"/css/", "css"},
                                           Accepted{"/css/site.css?v=3#top", "css/site.css"},
                                           Accepted{"/a%20b/%C3%A9.txt", "a b/\xC3\xA9.txt"},
                                           // Decoded once: an encoded escape stays an escape.
                                           Accepted{"/%252e%252e/x", "%2e%2e/x"},
                                           Accepted{"/a+b", "a+b"}, Accepted{"/..a/b..", "..a/b.."},
                                           Accepted{"/_next/a.js", "_next/a.js"},
                                           Accepted{"/?../../x", ""}));

struct Refused {
    std::string target;
    std::string refusal;
};

void PrintTo(const Refused& c, std::ostream* out) {
    *out << ::testing::PrintToString(c.target);
}

class RequestPathRefusedTest : public ::testing::TestWithParam<Refused> {};

TEST_P(RequestPathRefusedTest, wayOutOrMalformed_isRefusedWithItsReason) {
    const RequestPath decoded = DecodeRequestPath(GetParam().target);
    EXPECT_FALSE(decoded.valid) << decoded.path;
    EXPECT_EQ(decoded.refusal, GetParam().refusal);
    EXPECT_EQ(decoded.path, "");
}

constexpr const char* kDots = "a \".\" or \"..\" path component";
constexpr const char* kEmpty = "an empty path component";

INSTANTIATE_TEST_SUITE_P(
    Targets, RequestPathRefusedTest,
    ::testing::Values(
        Refused{"/..", kDots}, Refused{"/../secret", kDots}, Refused{"/a/../../secret", kDots},
        Refused{"/a/./b", kDots}, Refused{"/.", kDots}, Refused{"/%2e%2e/secret", kDots},
        Refused{"/%2E%2e", kDots}, Refused{"/a/%2e/b", kDots}, Refused{"/a%2f..%2fsecret", kDots},
        Refused{"//etc/passwd", kEmpty}, Refused{"/%2Fetc/passwd", kEmpty},
        Refused{"/a//b", kEmpty}, Refused{"/a/b//", kEmpty},
        Refused{"/..\\secret", "a backslash in the path"},
        Refused{"/a%5c..%5csecret", "a backslash in the path"},
        Refused{"/a%00b", "a NUL in the path"}, Refused{"/a\0b"s, "a NUL in the path"},
        Refused{"http://evil/../x", "not a path below the root"},
        Refused{"*", "not a path below the root"}, Refused{"", "not a path below the root"},
        Refused{"a/b", "not a path below the root"}, Refused{"/a%2", "a malformed percent escape"},
        Refused{"/a%", "a malformed percent escape"},
        Refused{"/a%zz", "a malformed percent escape"},
        Refused{"/a%2g", "a malformed percent escape"}));

}  // namespace
}  // namespace vx::engine
