#include <gtest/gtest.h>

#include <string>

#include "engine/preview/ResponsePlan.h"

namespace vx::engine {
namespace {

// A package laid out by hand: each file's contents start 100 bytes after its
// record, records 1000 bytes apart.
class ResponsePlanTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* folder : {"css", "docs", "empty"}) {
            add(folder, true, 0);
        }
        add("index.html", false, 20);
        add("start.html", false, 30);
        add("css/site.css", false, 10);
        add("docs/index.html", false, 40);
        add("Logo.PNG", false, 5);
        add("v1.2/notes", false, 5);
        add("a b/%\xC3\xA9.html", false, 5);
    }
    void add(const std::string& path, bool isFolder, uint64_t size) {
        next_ += 1000;
        index.add({.path = path,
                   .isFolder = isFolder,
                   .number = next_ / 1000,
                   .recordOffset = next_,
                   .contentsOffset = next_ + 100,
                   .size = size});
    }
    ResponsePlan plan(std::string_view target, std::optional<std::string_view> range = {},
                      std::optional<std::string_view> ifNoneMatch = {},
                      std::optional<std::string_view> ifRange = {}) const {
        return PlanResponse(
            index,
            {.target = target, .range = range, .ifNoneMatch = ifNoneMatch, .ifRange = ifRange});
    }
    uint64_t contentsOf(const std::string& path) const { return index.find(path)->contentsOffset; }

    PathIndex index;

private:
    uint64_t next_ = 0;
};

struct Found {
    std::string target;
    std::string file;
    std::string type;
};

void PrintTo(const Found& c, std::ostream* out) {
    *out << ::testing::PrintToString(c.target);
}

class ResponsePlanFoundTest : public ResponsePlanTest,
                              public ::testing::WithParamInterface<Found> {};

TEST_P(ResponsePlanFoundTest, pathInThePackage_answersItsFileWhole) {
    const ResponsePlan answer = plan(GetParam().target);
    const IndexedRecord& file = *index.find(GetParam().file);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.offset, file.contentsOffset);
    EXPECT_EQ(answer.length, file.size);
    EXPECT_EQ(answer.contentType, GetParam().type);
    EXPECT_EQ(answer.reason, "");
}

INSTANTIATE_TEST_SUITE_P(
    Targets, ResponsePlanFoundTest,
    ::testing::Values(Found{"/", "index.html", "text/html; charset=utf-8"},
                      Found{"/?x=1", "index.html", "text/html; charset=utf-8"},
                      Found{"/css/site.css", "css/site.css", "text/css; charset=utf-8"},
                      Found{"/docs/", "docs/index.html", "text/html; charset=utf-8"},
                      Found{"/Logo.PNG", "Logo.PNG", "image/png"},
                      // A dot in a folder's name is no extension.
                      Found{"/v1.2/notes", "v1.2/notes", "application/octet-stream"}));

TEST_F(ResponsePlanTest, rootWithAMainFile_answersTheMainFile) {
    index.setMainFile("start.html");
    EXPECT_EQ(plan("/").offset, contentsOf("start.html"));
    EXPECT_EQ(plan("/index.html").offset, contentsOf("index.html"));
    index.setMainFile("gone.html");
    EXPECT_EQ(plan("/").status, 404);
    EXPECT_EQ(plan("/").reason, "not in the package (the main file)");
}

struct Redirect {
    std::string mainFile;
    std::string target;
    int status;
    std::string location;
};

void PrintTo(const Redirect& c, std::ostream* out) {
    *out << ::testing::PrintToString(c.mainFile + " " + c.target);
}

class ResponsePlanRedirectTest : public ResponsePlanTest,
                                 public ::testing::WithParamInterface<Redirect> {};

// Relative links resolve against the URL, so a page is only answered at its own.
TEST_P(ResponsePlanRedirectTest, pageAskedForByAnotherURL_isSentToItsOwn) {
    index.setMainFile(GetParam().mainFile);
    const ResponsePlan answer = plan(GetParam().target);
    EXPECT_EQ(answer.status, GetParam().status);
    EXPECT_EQ(answer.location, GetParam().location);
    EXPECT_EQ(answer.length, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Targets, ResponsePlanRedirectTest,
    ::testing::Values(Redirect{"index.html", "/docs", 301, "/docs/"},
                      Redirect{"index.html", "/docs?v=2", 301, "/docs/?v=2"},
                      Redirect{"docs/index.html", "/", 302, "/docs/index.html"},
                      Redirect{"docs", "/?v=2", 302, "/docs/index.html"},
                      Redirect{"a b/%\xC3\xA9.html", "/", 302, "/a%20b/%25%C3%A9.html"}));

struct Missing {
    std::string target;
    int status;
    std::string reason;
};

void PrintTo(const Missing& c, std::ostream* out) {
    *out << ::testing::PrintToString(c.target);
}

class ResponsePlanMissingTest : public ResponsePlanTest,
                                public ::testing::WithParamInterface<Missing> {};

TEST_P(ResponsePlanMissingTest, nothingToAnswer_saysWhyAndSendsNoBytes) {
    const ResponsePlan answer = plan(GetParam().target);
    EXPECT_EQ(answer.status, GetParam().status);
    EXPECT_EQ(answer.reason, GetParam().reason);
    EXPECT_EQ(answer.length, 0u);
    EXPECT_EQ(answer.etag, "");
}

INSTANTIATE_TEST_SUITE_P(
    Targets, ResponsePlanMissingTest,
    ::testing::Values(Missing{"/nothing.js", 404, "not in the package"},
                      Missing{"/css/nothing.css", 404, "not in the package"},
                      Missing{"/INDEX.HTML", 404, "not in the package"},
                      Missing{"/empty/", 404, "not in the package (the folder has no index.html)"},
                      Missing{"/_next/static/app.js", 404,
                              "not in the package: names starting with '_' are never packed"},
                      Missing{"/css/_partial.css", 404,
                              "not in the package: names starting with '_' are never packed"},
                      Missing{"/.well-known/x", 404,
                              "not in the package: names starting with '.' are never packed"},
                      Missing{"/css/.map/_x", 404,
                              "not in the package: names starting with '.' are never packed"},
                      Missing{"/../index.html", 400, "refused: a \".\" or \"..\" path component"},
                      Missing{"/css%5c..%5cindex.html", 400, "refused: a backslash in the path"},
                      Missing{"http://evil/../x", 400, "refused: not a path below the root"}));

TEST_F(ResponsePlanTest, ifNoneMatch_namingTheFilesTag_answersNotModified) {
    const std::string tag = plan("/css/site.css").etag;
    ASSERT_FALSE(tag.empty());
    EXPECT_NE(plan("/index.html").etag, tag);
    for (const std::string& header : {tag, "W/" + tag, "\"other\", " + tag, std::string("*")}) {
        const ResponsePlan answer = plan("/css/site.css", {}, header);
        EXPECT_EQ(answer.status, 304) << header;
        EXPECT_EQ(answer.length, 0u) << header;
        EXPECT_EQ(answer.etag, tag) << header;
    }
    for (const std::string& header : {std::string("\"other\""), plan("/index.html").etag,
                                      tag.substr(1, tag.size() - 2), std::string()}) {
        EXPECT_EQ(plan("/css/site.css", {}, header).status, 200) << header;
    }
}

TEST_F(ResponsePlanTest, rangeOfTheFile_answersThatPartOfItsRecord) {
    const ResponsePlan part = plan("/css/site.css", "bytes=2-4");
    EXPECT_EQ(part.status, 206);
    EXPECT_EQ(part.offset, contentsOf("css/site.css") + 2);
    EXPECT_EQ(part.length, 3u);
    EXPECT_EQ(part.contentRange, "bytes 2-4/10");
    EXPECT_EQ(plan("/css/site.css", "bytes=-1").contentRange, "bytes 9-9/10");

    const ResponsePlan past = plan("/css/site.css", "bytes=10-");
    EXPECT_EQ(past.status, 416);
    EXPECT_EQ(past.length, 0u);
    EXPECT_EQ(past.contentRange, "bytes */10");

    const ResponsePlan several = plan("/css/site.css", "bytes=0-1,3-4");
    EXPECT_EQ(several.status, 200);
    EXPECT_EQ(several.length, 10u);
    EXPECT_EQ(several.contentRange, "");
}

TEST_F(ResponsePlanTest, rangeWithCurrentTag_answersNotModified) {
    const std::string tag = plan("/index.html").etag;
    EXPECT_EQ(plan("/index.html", "bytes=0-1", tag).status, 304);
}

TEST_F(ResponsePlanTest, ifRange_keepsTheRangeOnlyForTheCurrentStrongTag) {
    const std::string tag = plan("/css/site.css").etag;
    EXPECT_EQ(plan("/css/site.css", "bytes=0-0", {}, tag).status, 206);
    for (const std::string& other :
         {std::string("\"other\""), "W/" + tag, std::string("Tue, 24 Nov 2026 10:00:00 GMT")}) {
        const ResponsePlan whole = plan("/css/site.css", "bytes=0-0", {}, other);
        EXPECT_EQ(whole.status, 200) << other;
        EXPECT_EQ(whole.length, 10u) << other;
        EXPECT_EQ(whole.contentRange, "") << other;
    }
}

}  // namespace
}  // namespace vx::engine
