#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/CliFailure.h"
#include "cli/Commands.h"
#include "cli/PackPlan.h"
#include "cli/PackWriter.h"
#include "cli/Progress.h"
#include "container/PackageDescription.h"
#include "runtime/core/RuntimeException.h"
#include "runtime/files/FolderItem.h"
#include "runtime/text/TextEncoding.h"

namespace vx::cli {
namespace {

// The wizard's fields hold their texts as UTF-8, and so does package.json.
struct PackOptions {
    std::string source;
    std::string package;
    std::string name;
    std::string uid;
    std::vector<std::string> excludes;
    bool packageJson = false;
    PackageDescription::Fields fields = PackageDescription::wizardDefaults();
    bool quiet = false;
};

// The package is written under a unique, unguessable name beside its final
// place and renamed there only when whole, so a failure leaves no partial
// package and an older one untouched.
class TemporaryPackage {
public:
    explicit TemporaryPackage(const std::string& package) {
        const std::filesystem::path target(package);
        path_ = (target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string();
        fd_ = ::mkstemp(path_.data());
        if (fd_ < 0) {
            failSystem(package, errno);
        }
    }
    ~TemporaryPackage() {
        if (fd_ >= 0) {
            ::close(fd_);
        }
        if (!committed_) {
            ::unlink(path_.c_str());
        }
    }
    TemporaryPackage(const TemporaryPackage&) = delete;
    TemporaryPackage& operator=(const TemporaryPackage&) = delete;

    int fd() const { return fd_; }
    // mkstemp makes the file private; a package gets the mode of any new file.
    void commit(const std::string& package) {
        const int closed = ::close(fd_);
        fd_ = -1;
        if (closed != 0) {
            failSystem(package, errno);
        }
        const mode_t mask = ::umask(0);
        ::umask(mask);
        if (::chmod(path_.c_str(), 0666 & ~mask) != 0 || ::rename(path_.c_str(), package.c_str())) {
            failSystem(package, errno);
        }
        committed_ = true;
    }

private:
    std::string path_;
    int fd_;
    bool committed_ = false;
};

void checkHeaderString(const std::string& option, const std::string& text) {
    if (text.size() > vxpkFormat::kMaxStringBytes) {
        failUnacceptable(option, "longer than 255 bytes");
    }
}

void pack(const PackOptions& options) {
    checkHeaderString("--name", options.name);
    checkHeaderString("--uid", options.uid);
    std::optional<std::string> packageJson;
    if (options.packageJson) {
        PackageDescription::Fields fields = options.fields;
        fields.name = String(options.name, Encodings::UTF8);
        fields.uid = String(options.uid, Encodings::UTF8);
        packageJson = std::string(PackageDescription::document(fields)->ToString().bytes());
    }
    const PackPlan plan = planPack(options.source, ExcludeGlob(options.excludes), packageJson);
    const String folderName =
        New<FolderItem>(String(options.source, nullptr), FolderItem::PathModeNative)->Name();
    checkHeaderString(options.source, std::string(folderName.bytes()));

    TemporaryPackage temporary(options.package);
    Progress progress(options.quiet, plan.items.size(), plan.contentBytes);
    WritePackage(temporary.fd(), options.source, options.package, plan,
                 {.name = String(options.name, nullptr),
                  .uid = String(options.uid, nullptr),
                  .folderName = folderName},
                 progress);
    temporary.commit(options.package);
}

void addPackageJsonOption(CLI::App& command, CLI::Option* packageJson, const std::string& name,
                          String& field, const std::string& what) {
    const std::string help = "The " + what + " in package.json (default \"" +
                             std::string(field.bytes()) + "\"); needs --package-json";
    command
        .add_option_function<std::string>(
            name, [&field](const std::string& text) { field = String(text, Encodings::UTF8); },
            help)
        ->needs(packageJson);
}

}  // namespace

void addPackCommand(CLI::App& app) {
    auto options = std::make_shared<PackOptions>();
    CLI::App* command = app.add_subcommand("pack", "Pack a folder tree into a package");
    command->add_option("SOURCE", options->source, "The folder to pack")->required();
    command->add_option("PACKAGE", options->package, "The package file to write")->required();
    command->add_option("--name", options->name, "The app's display name")->required();
    command->add_option("--uid", options->uid, "The app's identifier")->required();
    command->add_option("--exclude", options->excludes,
                        "Leave out entries whose path below SOURCE matches the glob "
                        "(*, ?, [...], ** for any depth); repeatable");
    CLI::Option* packageJson =
        command->add_flag("--package-json", options->packageJson,
                          "Put the package.json the App's wizard would write into the package");
    PackageDescription::Fields& fields = options->fields;
    addPackageJsonOption(*command, packageJson, "--app-version", fields.version, "version");
    addPackageJsonOption(*command, packageJson, "--company", fields.company, "company");
    addPackageJsonOption(*command, packageJson, "--main", fields.main, "main file");
    addPackageJsonOption(*command, packageJson, "--width", fields.width, "window width");
    addPackageJsonOption(*command, packageJson, "--height", fields.height, "window height");
    addPackageJsonOption(*command, packageJson, "--title", fields.title, "window title");
    command->add_flag("--quiet", options->quiet, "Show no progress");
    command->callback([options] { pack(*options); });
}

}  // namespace vx::cli
