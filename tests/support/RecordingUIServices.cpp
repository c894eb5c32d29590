#include "support/RecordingUIServices.h"

namespace vx::test {

InstalledUIServices::InstalledUIServices(UIServices& services)
    : previous_(detail::installedUIServices) {
    InstallUIServices(&services);
}

InstalledUIServices::~InstalledUIServices() {
    InstallUIServices(previous_);
}

}  // namespace vx::test
