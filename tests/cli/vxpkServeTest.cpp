#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "HttpFetch.h"
#include "ServeProcess.h"
#include "VxpkRun.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using namespace test;

constexpr const char* kSecret = "TOP-SECRET-beside-the-package";

// A small app packed into app.vxpk, with a secret file beside the package and
// one left in the source tree, neither of which the server may ever give.
class vxpkServeTest : public ::testing::Test {
protected:
    void SetUp() override {
        scratch.writeFile("site/index.html", "<h1>index</h1>");
        scratch.writeFile("site/start.html", "<h1>start</h1>");
        scratch.writeFile("site/package.json", R"({"name":"Demo","main":"start.html"})");
        scratch.writeFile("site/css/site.css", "body { color: rgb(0, 128, 0); }");
        scratch.writeFile("site/js/app.mjs", "export const x = 1;");
        scratch.writeFile("site/docs/index.html", "<h1>docs</h1>");
        scratch.writeFile("site/data/big.bin", std::string(200000, 'b') + "end");
        scratch.writeFile("site/_next/chunk.js", kSecret);
        scratch.writeFile("site/.env", kSecret);
        scratch.writeFile("secret.txt", kSecret);
        ASSERT_EQ(
            RunVxpk({"pack", "site", "app.vxpk", "--name", "Demo", "--uid", "d"}, scratch.path())
                .exitCode,
            0);
    }
    HttpAnswer get(ServeProcess& server, const std::string& target,
                   const std::vector<std::string>& options = {}) {
        const std::string origin = server.url().substr(0, server.url().size() - 1);
        return Fetch(origin, target, options, scratch.path());
    }

    ScratchFolder scratch;
};

TEST_F(vxpkServeTest, firstLine_isTheLoopbackURLAndTheSocketListensThereAlone) {
    ServeProcess server({"serve", "app.vxpk"}, scratch.path());
    ASSERT_TRUE(server.url().starts_with("http://127.0.0.1:")) << server.errors();
    EXPECT_TRUE(server.url().ends_with("/"));
    ASSERT_GT(server.port(), 0);

    // Every listening socket on the port, as the kernel lists them: local
    // address and state (0A listening), IPv4 and IPv6.
    char portHex[8];
    std::snprintf(portHex, sizeof portHex, "%04X", server.port());
    std::vector<std::string> listening;
    for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        std::ifstream in(table);
        std::string line;
        while (std::getline(in, line)) {
            std::istringstream fields(line);
            std::string number, local, remote, state;
            fields >> number >> local >> remote >> state;
            if (local.ends_with(std::string(":") + portHex) && state == "0A") {
                listening.push_back(local);
            }
        }
    }
    EXPECT_EQ(listening, std::vector<std::string>{std::string("0100007F:") + portHex});
}

TEST_F(vxpkServeTest, rootAndFolders_answerTheMainFileAndIndexPages) {
    ServeProcess server({"serve", "app.vxpk"}, scratch.path());
    ASSERT_FALSE(server.url().empty()) << server.errors();
    EXPECT_EQ(get(server, "/").body, "<h1>start</h1>");
    EXPECT_EQ(get(server, "/index.html").body, "<h1>index</h1>");
    EXPECT_EQ(get(server, "/docs/").body, "<h1>docs</h1>");
    HttpAnswer folder = get(server, "/docs");
    EXPECT_EQ(folder.status, 301);
    EXPECT_EQ(folder.headers["location"], "/docs/");
    HttpAnswer big = get(server, "/data/big.bin");
    EXPECT_EQ(big.body, std::string(200000, 'b') + "end");
    EXPECT_EQ(big.headers["content-type"], "application/octet-stream");

    struct Typed {
        const char* target;
        const char* type;
    };
    for (const Typed& typed :
         {Typed{"/", "text/html; charset=utf-8"}, Typed{"/css/site.css", "text/css; charset=utf-8"},
          Typed{"/js/app.mjs", "text/javascript; charset=utf-8"},
          Typed{"/package.json", "application/json"}}) {
        HttpAnswer answer = get(server, typed.target);
        EXPECT_EQ(answer.status, 200) << typed.target;
        EXPECT_EQ(answer.headers["content-type"], typed.type) << typed.target;
    }
    EXPECT_TRUE(server.logs("GET /css/site.css 200 31\n")) << server.errors();
    EXPECT_TRUE(server.logs("GET /docs 301 0\n")) << server.errors();
}

TEST_F(vxpkServeTest, mainFileInAFolder_isWhereTheRootSendsTheBrowser) {
    scratch.writeFile("nested/app/main page.html", "<link href=\"s.css\">");
    scratch.writeFile("nested/package.json", R"({"main":"app/main page.html"})");
    ASSERT_EQ(
        RunVxpk({"pack", "nested", "nested.vxpk", "--name", "N", "--uid", "n"}, scratch.path())
            .exitCode,
        0);
    ServeProcess server({"serve", "nested.vxpk"}, scratch.path());
    ASSERT_FALSE(server.url().empty()) << server.errors();
    HttpAnswer root = get(server, "/");
    EXPECT_EQ(root.status, 302);
    EXPECT_EQ(root.headers["location"], "/app/main%20page.html");
    EXPECT_EQ(get(server, root.headers["location"]).body, "<link href=\"s.css\">");
    EXPECT_TRUE(server.logs("GET / 302 0\n")) << server.errors();
}

TEST_F(vxpkServeTest, headRangesAndTags_answerAsHTTPSays) {
    ServeProcess server({"serve", "app.vxpk"}, scratch.path());
    ASSERT_FALSE(server.url().empty()) << server.errors();
    HttpAnswer head = get(server, "/css/site.css", {"-I"});
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.headers["content-length"], "31");
    EXPECT_EQ(head.headers["accept-ranges"], "bytes");

    HttpAnswer part = get(server, "/css/site.css", {"-H", "Range: bytes=7-11"});
    EXPECT_EQ(part.status, 206);
    EXPECT_EQ(part.body, "color");
    EXPECT_EQ(part.headers["content-range"], "bytes 7-11/31");
    part = get(server, "/data/big.bin", {"-H", "Range: bytes=-4"});
    EXPECT_EQ(part.body, "bend");
    EXPECT_EQ(part.headers["content-range"], "bytes 199999-200002/200003");

    HttpAnswer past = get(server, "/css/site.css", {"-H", "Range: bytes=31-"});
    EXPECT_EQ(past.status, 416);
    EXPECT_EQ(past.headers["content-range"], "bytes */31");
    EXPECT_EQ(past.body, "");

    const std::string tag = head.headers["etag"];
    ASSERT_FALSE(tag.empty());
    EXPECT_NE(get(server, "/index.html", {"-I"}).headers["etag"], tag);
    HttpAnswer cached = get(server, "/css/site.css", {"-H", "If-None-Match: " + tag});
    EXPECT_EQ(cached.status, 304);
    EXPECT_EQ(cached.body, "");
    EXPECT_EQ(get(server, "/css/site.css", {"-H", "If-None-Match: \"0-0\""}).status, 200);
    // The library must not cut the whole answer to the Range after all.
    HttpAnswer stale =
        get(server, "/css/site.css", {"-H", "Range: bytes=0-0", "-H", "If-Range: \"0-0\""});
    EXPECT_EQ(stale.status, 200);
    EXPECT_EQ(stale.body.size(), 31u);
    EXPECT_EQ(
        get(server, "/css/site.css", {"-H", "Range: bytes=0-0", "-H", "If-Range: " + tag}).body,
        "b");
}

TEST_F(vxpkServeTest, missingNames_are404WithTheReasonOnStandardError) {
    ServeProcess server({"serve", "app.vxpk"}, scratch.path());
    ASSERT_FALSE(server.url().empty()) << server.errors();
    EXPECT_EQ(get(server, "/_next/chunk.js").status, 404);
    EXPECT_EQ(get(server, "/.env").status, 404);
    // A browser accepts compressed answers, which must not garble the log.
    HttpAnswer missing = get(server, "/nothing.js", {"--compressed"});
    EXPECT_EQ(missing.status, 404);
    EXPECT_EQ(missing.body, "not in the package\n");
    // The library refuses a Range it cannot read before the plan is asked.
    EXPECT_EQ(get(server, "/nothing", {"-H", "Range: items=0-1"}).status, 416);
    // Control characters, ASCII and C1 in UTF-8, would drive the terminal.
    EXPECT_EQ(get(server,
                  "/a\x1b\xC2\x9B"
                  "2J\xC2\xA0")
                  .status,
              404);
    for (const std::string& line : std::vector<std::string>{
             "GET /nothing 416 0\n", "GET /a%1B%C2%9B2J\xC2\xA0 404 ",
             "GET /_next/chunk.js 404 61 not in the package: names starting with '_' are never "
             "packed\n",
             "GET /.env 404 61 not in the package: names starting with '.' are never packed\n",
             "GET /nothing.js 404 " + missing.headers["content-length"] +
                 " not in the package\n"}) {
        EXPECT_TRUE(server.logs(line)) << line << server.errors();
    }
}

TEST_F(vxpkServeTest, otherMethods_are405NamingTheTwoAnswered) {
    ServeProcess server({"serve", "app.vxpk"}, scratch.path());
    ASSERT_FALSE(server.url().empty()) << server.errors();
    for (const std::vector<std::string>& method :
         {std::vector<std::string>{"-X", "POST", "--data", "x=1"},
          {"-X", "PUT", "--data", "x"},
          {"-X", "OPTIONS"},
          {"-X", "DELETE"}}) {
        HttpAnswer refused = get(server, "/index.html", method);
        EXPECT_EQ(refused.status, 405) << method[1];
        EXPECT_EQ(refused.headers["allow"], "GET, HEAD") << method[1];
        EXPECT_TRUE(server.logs(method[1] + " /index.html 405 ")) << server.errors();
    }
}

// Every way a request could try to leave the package, raw and encoded.
TEST_F(vxpkServeTest, escapeAttempts_areRefusedAndReadNothingOutside) {
    ServeProcess server({"serve", "app.vxpk"}, scratch.path());
    ASSERT_FALSE(server.url().empty()) << server.errors();
    const std::vector<std::string> attempts = {
        "/../secret.txt",
        "/css/../../secret.txt",
        "/%2e%2e/secret.txt",
        "/%2E%2E%2Fsecret.txt",
        "/..%2fsecret.txt",
        "/css/%2e%2e/%2e%2e/secret.txt",
        "/%252e%252e/secret.txt",
        "/..\\secret.txt",
        "/css\\..\\..\\secret.txt",
        "/css%5c..%5c..%5csecret.txt",
        "/secret.txt%00.html",
        "/%00",
        "/./secret.txt",
        "//secret.txt",
        "/%2F" + scratch.path("secret.txt").substr(1),
        scratch.path("secret.txt"),
        "http://evil/../secret.txt",
        "http://127.0.0.1/../secret.txt",
        "/secret.txt",
        "/site/.env",
        "/_next/chunk.js",
    };
    for (const std::string& target : attempts) {
        const HttpAnswer answer = get(server, target);
        EXPECT_TRUE(answer.status == 400 || answer.status == 404)
            << target << " answered " << answer.status;
        EXPECT_EQ(answer.body.find(kSecret), std::string::npos) << target;
        const std::string logged = "GET " + target + " " + std::to_string(answer.status) + " ";
        EXPECT_TRUE(server.logs(logged)) << logged;
    }
    // The server is still there, and answers what is inside.
    EXPECT_EQ(get(server, "/index.html").status, 200);
}

TEST_F(vxpkServeTest, sigterm_stopsItCleanlyWithTheShellsStatus) {
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
        ServeProcess server({"serve", "app.vxpk"}, scratch.path());
        ASSERT_FALSE(server.url().empty()) << server.errors();
        EXPECT_EQ(get(server, "/").status, 200);
        EXPECT_EQ(server.stop(signalNumber), 128 + signalNumber);
        EXPECT_EQ(server.errors().find("error"), std::string::npos) << server.errors();
    }
}

TEST_F(vxpkServeTest, unsoundPackageOrTakenPort_isRefusedWithOneLine) {
    scratch.writeFile("broken.vxpk", scratch.readFile("app.vxpk").substr(0, 200));
    ServeProcess broken({"serve", "broken.vxpk"}, scratch.path());
    EXPECT_EQ(broken.url(), "");
    EXPECT_EQ(broken.wait(), 1);
    EXPECT_TRUE(broken.errors().starts_with("vxpk: error: broken.vxpk: ")) << broken.errors();

    ServeProcess first({"serve", "app.vxpk"}, scratch.path());
    ASSERT_GT(first.port(), 0) << first.errors();
    ServeProcess second({"serve", "app.vxpk", "--port", std::to_string(first.port())},
                        scratch.path());
    EXPECT_EQ(second.wait(), 3);
    EXPECT_TRUE(second.errors().starts_with("vxpk: error: 127.0.0.1:")) << second.errors();
    EXPECT_EQ(RunVxpk({"serve", "app.vxpk", "--port", "70000"}, scratch.path()).exitCode, 2);
}

TEST_F(vxpkServeTest, open_startsXdgOpenWithTheURL) {
    // A stand-in for xdg-open that notes what it was asked to open.
    const std::string bin = scratch.makeFolder("bin");
    scratch.writeFile("bin/xdg-open",
                      "#!/bin/sh\nprintf '%s' \"$1\" > \"$(dirname \"$0\")/opened\"\n");
    ASSERT_EQ(::chmod((bin + "/xdg-open").c_str(), 0755), 0);
    const std::string path = std::getenv("PATH");
    ::setenv("PATH", (bin + ":" + path).c_str(), 1);
    ServeProcess server({"serve", "app.vxpk", "--open"}, scratch.path());
    ::setenv("PATH", path.c_str(), 1);
    ASSERT_FALSE(server.url().empty()) << server.errors();
    std::string opened;
    for (int tries = 0; tries < 100 && opened.empty(); ++tries) {
        ::usleep(50000);
        opened = scratch.readFile("bin/opened");
    }
    EXPECT_EQ(opened, server.url());
}

}  // namespace
}  // namespace vx
