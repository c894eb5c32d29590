#include "runtime/ui/FontConfiguration.h"

#include <fontconfig/fontconfig.h>

namespace vx {

namespace {

// Without a cache folder the fonts would be scanned file by file; the
// library's start-up handles that case, so it is left to it.
bool HasCacheFolder(FcConfig* config) {
    FcStrList* folders = FcConfigGetCacheDirs(config);
    if (folders == nullptr) {
        return false;
    }
    const bool any = FcStrListNext(folders) != nullptr;
    FcStrListDone(folders);
    return any;
}

}  // namespace

void _LoadFontConfiguration() {
    static bool loaded = false;
    if (loaded) {
        // Replacing the configuration later would pull it from under the
        // toolkit's font database.
        return;
    }
    loaded = true;
    FcConfig* config = FcConfigCreate();
    if (config == nullptr) {
        return;
    }
    // The same files the library reads, from the same place (its default
    // file, or the one the environment names), and the same font caches.
    if (FcConfigParseAndLoad(config, nullptr, FcTrue) && HasCacheFolder(config) &&
        FcConfigBuildFonts(config)) {
        FcConfigSetCurrent(config);
    }
    // The library keeps its own reference to its current configuration.
    FcConfigDestroy(config);
}

}  // namespace vx
