#pragma once

#include <vector>

#include "app/FileType.h"

// The two kinds of file the application knows: its packages and the catch-all
// "Any". Both are registered with the toolkit during start-up.
namespace vx::FileTypes {

inline Ref<FileType> pvxpk;
inline Ref<FileType> pAny;
// Every type of the module, in order of creation.
inline std::vector<Ref<FileType>> pAllFileTypes;

inline Ref<FileType> vxpk() {
    return pvxpk;
}
inline Ref<FileType> Any() {
    return pAny;
}

// Makes, fills and registers both types; undone at shutdown.
void _Initialize();

}  // namespace vx::FileTypes
