#pragma once

#include <cstdint>
#include <memory>

#include "runtime/core/Object.h"
#include "runtime/core/Ref.h"
#include "runtime/text/String.h"

class QImage;

namespace vx {

// A bitmap.
class Picture : public Object {
public:
    // A transparent picture of that size; each side must be 1 to 32767.
    Picture(int64_t width, int64_t height);
    explicit Picture(const QImage& image);
    ~Picture() override;

    int64_t Width() const;
    int64_t Height() const;

    // The picture stored with the application under that name (a drawing is
    // rendered at the size it declares), or nil when there is none. One that
    // cannot be read is empty: 0 by 0, and drawn as nothing.
    static Ref<Picture> _OpenFromApp(const String& resourceName);

    const QImage& _Image() const { return *image_; }

private:
    std::unique_ptr<QImage> image_;
};

}  // namespace vx
