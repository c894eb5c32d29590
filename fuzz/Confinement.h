#pragma once

#include <filesystem>

// Shuts a fuzz target into a private root so that no input can touch the
// machine it runs on, even as root. Fuzz targets that write files call
// EnterConfinement once from LLVMFuzzerInitialize, before libFuzzer reads its
// corpus, and CheckConfinement after every input.
//
// EnterConfinement enters a new user, mount and process namespace whose root
// is a fresh file system in memory (of at most 2 GiB, mounted on a new empty
// folder of the system's temporary folder): the rest of the machine is no
// longer reachable by any path, and no input can fill its disk. Inside stand
// only a scratch folder for the target, a private
// /proc and /dev/null and /dev/urandom for the sanitizers and the runtime,
// and, at their own paths, the folders named on the command line (corpus,
// dictionary, artifacts; the working folder when no artifact folder is given),
// so that libFuzzer reads and writes them as usual. The process that called it
// stays outside, waits, removes the empty folder afterwards and exits as the
// confined one did. Where the namespaces cannot be made the target refuses to
// run: it prints why and exits with status 1, never running unconfined.
// libFuzzer's -fork, -jobs and -merge modes, which start a shell, do not work
// inside.
namespace vx::fuzzing {

// Gives the scratch folder, empty, as seen from inside.
std::filesystem::path EnterConfinement(int argc, char** argv);

// Aborts, naming it, when anything appeared in the private root outside the
// scratch folder and the folders of the command line since EnterConfinement.
void CheckConfinement();

}  // namespace vx::fuzzing
