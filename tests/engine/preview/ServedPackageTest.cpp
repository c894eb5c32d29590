#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "engine/core/EngineFailure.h"
#include "engine/packing/PackFolder.h"
#include "engine/preview/PackageServer.h"
#include "engine/preview/ResponsePlan.h"
#include "engine/preview/ServedPackage.h"
#include "support/ChildProcess.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

namespace vx::engine {
namespace {

class ServedPackageTest : public ::testing::Test {
protected:
    std::string pack(const std::string& packageJson) {
        scratch.writeFile("site/index.html", "<h1/>");
        scratch.writeFile("site/app/start.html", "<h2/>");
        scratch.writeFile("site/package.json", packageJson);
        NoProgress quiet;
        PackFolder({.source = scratch.path("site"),
                    .package = scratch.path("app.vxpk"),
                    .name = "A",
                    .uid = "a",
                    .excludes = {},
                    .packageJson = std::nullopt},
                   quiet);
        return scratch.path("app.vxpk");
    }

    test::ScratchFolder scratch;
};

TEST_F(ServedPackageTest, open_indexesEveryRecordAndReadsTheMainFile) {
    const ServedPackage package(pack(R"({"main": "./app/start.html"})"));
    EXPECT_EQ(package.index().mainFile(), "app/start.html");
    const IndexedRecord* start = package.index().find("app/start.html");
    ASSERT_NE(start, nullptr);
    EXPECT_EQ(start->size, 5u);
    ASSERT_NE(package.index().find("app"), nullptr);
    EXPECT_TRUE(package.index().find("app")->isFolder);
    EXPECT_EQ(package.index().find("site"), nullptr);
}

// A package rebuilt with a change that keeps every size must not be taken
// for the one a browser has cached.
TEST_F(ServedPackageTest, samePlacesDifferentPackage_giveDifferentTags) {
    const ServedPackage first(pack(R"({"a": 1})"));
    const ServedPackage second(pack(R"({"b": 1})"));
    const RequestFacts request{
        .target = "/package.json", .range = {}, .ifNoneMatch = {}, .ifRange = {}};
    EXPECT_EQ(first.index().find("package.json")->recordOffset,
              second.index().find("package.json")->recordOffset);
    EXPECT_NE(PlanResponse(first.index(), request).etag,
              PlanResponse(second.index(), request).etag);
}

TEST_F(ServedPackageTest, unsoundOrUnreadable_isRefusedWithItsKind) {
    const std::string path = pack("{}");
    const std::string bytes = scratch.readFile("app.vxpk");
    scratch.writeFile("cut.vxpk", bytes.substr(0, bytes.size() - 3));
    try {
        ServedPackage cut(scratch.path("cut.vxpk"));
        ADD_FAILURE() << "a cut package was served";
    } catch (const EngineFailure& failure) {
        EXPECT_EQ(failure.kind, FailureKind::kUnacceptable) << failure.what();
    }
    // package.json's contents end the package (its name sorts last), so
    // only the read of them after the walk fails.
    const uint64_t contents = ServedPackage(path).index().find("package.json")->contentsOffset;
    ASSERT_EQ(contents + 2, bytes.size());
    const test::SystemCallFaults faults({.readFailsAt = contents + 1});
    try {
        ServedPackage unreadable(path);
        ADD_FAILURE() << "a package that cannot be read was served";
    } catch (const EngineFailure& failure) {
        EXPECT_EQ(failure.kind, FailureKind::kSystem) << failure.what();
    }
}

// In a child, so that a server that never stops ends with the child.
TEST_F(ServedPackageTest, stopBeforeListening_endsTheRunOnceItListens) {
    const std::string path = pack("{}");
    const std::string result = test::RunInChild(
        [&] {
            ::alarm(20);
            const ServedPackage package(path);
            PackageServer server(package);
            server.listenOn(0);
            server.stop();
            server.run();
            return std::string("stopped");
        },
        {.unprivileged = false, .fileSizeLimit = std::nullopt});
    EXPECT_EQ(result, "stopped");
}

}  // namespace
}  // namespace vx::engine
