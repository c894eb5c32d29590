#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "ServeProcess.h"
#include "VxpkRun.h"
#include "support/ScratchFolder.h"

namespace vx {
namespace {

using namespace test;

constexpr const char* kChromium = "/usr/bin/chromium";

// An app that shows, in its own page, that its script ran, that its
// stylesheet coloured it, and what it fetched from a JSON file beside it.
void writeApp(const ScratchFolder& scratch) {
    scratch.writeFile("site/package.json", R"({"name":"Demo","main":"app.html"})");
    scratch.writeFile("site/app.html",
                      "<!doctype html><html><head><meta charset=\"utf-8\">"
                      "<link rel=\"stylesheet\" href=\"css/app.css\">"
                      "<script src=\"js/app.js\" defer></script></head>"
                      "<body><h1 id=\"title\">static page</h1><p id=\"colour\"></p>"
                      "<p id=\"data\"></p></body></html>");
    scratch.writeFile("site/css/app.css", "body { color: rgb(0, 128, 0); }");
    scratch.writeFile("site/js/app.js",
                      "document.getElementById('title').textContent = 'script ran';\n"
                      "document.getElementById('colour').textContent =\n"
                      "    'colour ' + getComputedStyle(document.body).color;\n"
                      "fetch('data/greeting.json').then(r => r.json()).then(j => {\n"
                      "    document.getElementById('data').textContent = 'json ' + j.greeting;\n"
                      "});\n");
    scratch.writeFile("site/data/greeting.json", R"({"greeting": "hello from the package"})");
}

TEST(vxpkServeBrowserTest, headlessChromium_runsTheAppFromThePackage) {
    if (::access(kChromium, X_OK) != 0) {
        GTEST_SKIP() << kChromium << " is not installed (scripts/install-deps.sh installs it)";
    }
    ScratchFolder scratch;
    writeApp(scratch);
    ASSERT_EQ(RunVxpk({"pack", "site", "app.vxpk", "--name", "Demo", "--uid", "d"}, scratch.path())
                  .exitCode,
              0);
    ServeProcess server({"serve", "app.vxpk"}, scratch.path());
    ASSERT_FALSE(server.url().empty()) << server.errors();

    const VxpkResult browser = RunProgram(
        "timeout",
        {"120", kChromium, "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic",
         "--no-first-run", "--disable-background-networking", "--disable-component-update",
         "--disable-sync", "--user-data-dir=" + scratch.makeFolder("profile"),
         "--virtual-time-budget=5000", "--dump-dom", server.url()},
        scratch.path());
    ASSERT_EQ(browser.exitCode, 0) << browser.err;
    const std::string& page = browser.out;
    EXPECT_NE(page.find("<h1 id=\"title\">script ran</h1>"), std::string::npos) << page;
    EXPECT_NE(page.find("colour rgb(0, 128, 0)"), std::string::npos) << page;
    EXPECT_NE(page.find("json hello from the package"), std::string::npos) << page;
    EXPECT_TRUE(server.logs("GET /data/greeting.json 200 ")) << server.errors();
}

}  // namespace
}  // namespace vx
