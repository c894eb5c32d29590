#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "engine/core/Interruption.h"
#include "engine/preview/PackageServer.h"
#include "engine/preview/ServedPackage.h"
#include "runtime/services/DesktopOpener.h"

namespace vx::cli {
namespace {

struct ServeOptions {
    std::string package;
    int port = 0;
    bool open = false;
};

void openInBrowser(const std::string& url) {
    if (!OpenWithDesktop(url)) {
        std::fprintf(stderr, "vxpk: warning: %s: cannot start xdg-open: %s\n", url.c_str(),
                     std::strerror(errno));
    }
}

void serve(const ServeOptions& options) {
    const engine::ServedPackage package(options.package);
    engine::PackageServer server(package);
    const std::string url =
        "http://127.0.0.1:" + std::to_string(server.listenOn(options.port)) + "/";
    // Scripts read this line to know where to go, so it leaves at once.
    std::printf("%s\n", url.c_str());
    std::fflush(stdout);
    if (options.open) {
        openInBrowser(url);
    }
    // A signal stops the server, and main ends with 128 and its number. The
    // action comes first: a signal before the work begins then still ends
    // the process, where one between the two would stop nothing.
    const engine::InterruptionAction stop([&server] { server.stop(); });
    const engine::InterruptibleWork work;
    server.run();
}

}  // namespace

void addServeCommand(CLI::App& app) {
    auto options = std::make_shared<ServeOptions>();
    CLI::App* command = app.add_subcommand(
        "serve",
        "Serve a package over HTTP on 127.0.0.1, every answer read from the package itself, to "
        "try the app in a browser as the host will load it; runs until SIGINT, SIGTERM or SIGHUP");
    command->add_option("PACKAGE", options->package, "The package to serve")->required();
    command
        ->add_option("--port", options->port,
                     "The port on 127.0.0.1 to listen on; 0, the default, lets the system pick")
        ->check(CLI::Range(0, 65535));
    command->add_flag("--open", options->open,
                      "Open the URL in the desktop's browser (with xdg-open) once listening");
    command->footer(
        "The first line on standard output is the URL, http://127.0.0.1:PORT/. Then each "
        "request is one line on standard error: method, target, status, body bytes and, for "
        "400 and 404, why. / answers the main file named by the package's package.json "
        "(index.html without one), redirecting to it when it is in a folder; a folder answers its "
        "index.html at its URL with a trailing /. A package that is not sound is "
        "refused as verify refuses it (exit 1). SIGINT, SIGTERM or SIGHUP stop it; it exits 130, "
        "143 or 129.");
    command->callback([options] { serve(*options); });
}

}  // namespace vx::cli
