#pragma once

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "engine/core/EngineFailure.h"
#include "engine/reading/PackageWalk.h"
#include "support/ScratchFolder.h"
#include "support/SystemCallFaults.h"

// A source tree with every kind of step the engine takes, for the tests that
// make its system calls fail: the header, records of files and folders, small
// files gathered together, and a large file written in parts and extracted
// past the page cache.
namespace vx::test {

// How a run under faults should end: well, or with this kind and message,
// where "{package}", "{source}" and "{destination}" stand for the absolute
// paths.
struct Expected {
    bool fails = true;
    engine::FailureKind kind = engine::FailureKind::kSystem;
    std::string message = "";
};

// One row of a fault table.
struct FaultCase {
    std::string step;
    Faults faults;
    Expected expected;
};

class EngineSite : public ::testing::Test {
protected:
    EngineSite();

    // Packs site into package, relative to the scratch folder.
    void pack(const std::string& package);
    // The records of package by path.
    std::map<std::string, engine::PackageEntry> entries(const std::string& package);
    // The names in the scratch folder, hidden ones included.
    std::set<std::string> namesInScratch() const;
    // Runs work under the case's faults and checks that it ends as expected
    // and that a fault was met.
    template <class Work>
    void runCase(const FaultCase& faultCase, Work&& work);

    ScratchFolder scratch;

private:
    std::string expand(std::string message) const;
};

template <class Work>
void EngineSite::runCase(const FaultCase& faultCase, Work&& work) {
    SCOPED_TRACE(faultCase.step);
    std::string failure;
    engine::FailureKind kind = engine::FailureKind::kUnacceptable;
    {
        const SystemCallFaults injected(faultCase.faults);
        try {
            work();
        } catch (const engine::EngineFailure& raised) {
            failure = raised.what();
            kind = raised.kind;
        }
        EXPECT_GT(injected.injected(), 0);
    }
    EXPECT_EQ(failure, faultCase.expected.fails ? expand(faultCase.expected.message) : "");
    if (faultCase.expected.fails) {
        EXPECT_EQ(kind, faultCase.expected.kind);
    }
}

}  // namespace vx::test
