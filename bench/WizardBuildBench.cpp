// Packs one tree twice over, in turns: through the wizard window, pressing
// Build with its log and its repaints as the user sees them, and through the
// packer alone, with a log that only counts. The difference is what the
// window costs.
//   vx_wizard_bench TREE [benchmark options]
// Runs on the offscreen platform unless QT_QPA_PLATFORM says otherwise.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "app/FileTypes.h"
#include "app/Startup.h"
#include "app/frmMain.h"
#include "container/vxPacker.h"
#include "runtime/files/FolderItem.h"
#include "runtime/ui/RuntimeLifecycle.h"
#include "runtime/ui/internal/DesktopUIServices.h"

namespace {

using namespace vx;

Ref<FolderItem> tree;
Ref<FolderItem> package;

// The desktop's own services, repaints during the build included, with the
// two dialogs answered by the tree and the package file.
class AnsweringUIServices : public DesktopUIServices {
public:
    void MsgBox(const String& message) override {
        std::fprintf(stderr, "message: %s\n", message.c_str());
        std::exit(1);
    }
    Ref<FolderItem> SelectFolder() override { return tree; }
    Ref<FolderItem> GetSaveFolderItem(const String&, const String&) override { return package; }
};

class CountingLog : public LogReceiver {
public:
    void log(const String& /*text*/) override { ++lines; }
    int64_t lines = 0;
};

// A wizard on its build page, with both paths chosen.
Ref<frmMain> ReadyWizard() {
    auto window = New<frmMain>();
    window->Constructor();
    window->cmdSelectAppFolder()->Push();
    window->cmdSelectAppFile()->Push();
    window->cmdNEXT()->Push();
    return window;
}

void ThroughTheWindow(benchmark::State& state) {
    AnsweringUIServices services;
    InstallUIServices(&services);
    for (auto _ : state) {
        state.PauseTiming();
        Ref<frmMain> window = ReadyWizard();
        state.ResumeTiming();

        window->cmdBuild()->Push();
        // The handler is over: the toolkit shows the last of the log.
        QCoreApplication::processEvents();

        state.PauseTiming();
        const String shown = window->txtLog()->Text();
        state.counters["log lines"] =
            static_cast<double>(std::count(shown.bytes().begin(), shown.bytes().end(), '\n'));
        window->Close();
        state.ResumeTiming();
    }
    InstallUIServices(nullptr);
}

void PackerAlone(benchmark::State& state) {
    for (auto _ : state) {
        auto log = New<CountingLog>();
        vxPacker::folder = tree;
        vxPacker::target = package;
        vxPacker::name = "My App";
        vxPacker::uid = "com.example.myapp";
        vxPacker::owner = log;
        vxPacker::build();
        state.counters["log lines"] = static_cast<double>(log->lines);
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s TREE [benchmark options]\n", argv[0]);
        return 2;
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    tree = New<FolderItem>(String(argv[1]), FolderItem::PathModeNative);
    package = New<FolderItem>(String(argv[1]) + ".vxpk", FolderItem::PathModeNative);

    _EarlyStartup();
    _RuntimeInitExternalClasses();
    // Both sides pack the same tree: the window's build leaves its
    // package.json there, so one untimed build puts it there before either
    // is timed, and warms the file cache for both.
    {
        AnsweringUIServices services;
        InstallUIServices(&services);
        ReadyWizard()->cmdBuild()->Push();
        InstallUIServices(nullptr);
    }
    // A build writes 200 MB, so the machine's own writing back disturbs single
    // runs; the least of many runs shows the cost best, the median with it.
    for (auto [name, body] : {std::pair{"ThroughTheWindow", &ThroughTheWindow},
                              std::pair{"PackerAlone", &PackerAlone}}) {
        benchmark::RegisterBenchmark(name, body)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime()
            ->Iterations(1)
            ->Repetitions(11)
            ->ComputeStatistics("min", [](const std::vector<double>& times) {
                return *std::min_element(times.begin(), times.end());
            });
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    package->Delete();
    RuntimePerformFinalizers();
    return RuntimeExit();
}
