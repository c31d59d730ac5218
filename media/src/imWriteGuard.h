#pragma once
// Write access to the rows of a file-side image.
#include "imImage.h"
#include "imImageGuard.h"

namespace Qv {

class ImWriteGuard : public ImImageGuard {
public:
    ImWriteGuard() = default;
    explicit ImWriteGuard(ImImage const& image) : ImImageGuard(image) {}

    std::byte* getLine(int y) const { return lineAddress(y); }
    template <class T>
    T* getLineAs(int y) const {
        return reinterpret_cast<T*>(lineAddress(y));
    }
};

} // namespace Qv
