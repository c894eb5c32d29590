#include "runtime/files/FileErrorCode.h"

#include <cerrno>

namespace vx {

int64_t FileErrorCode(int errnoValue) {
    switch (errnoValue) {
        case 0:
            return 0;
        case EACCES:
        case EPERM:
        case EROFS:
            return AccessDeniedErrorCode;
        case EBUSY:
        case ETXTBSY:
        case EEXIST:
            return FileInUseErrorCode;
        default:
            return PlatformErrorCodeBase + errnoValue;
    }
}

}  // namespace vx
