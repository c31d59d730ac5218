#pragma once
// Read access to the rows of a file-side image.
#include "imImageGuard.h"

namespace Qv {

class ImReadGuard : public ImImageGuard {
public:
    ImReadGuard() = default;
    explicit ImReadGuard(ImImageConst const& image) : ImImageGuard(image) {}

    std::byte const* getLine(int y) const { return lineAddress(y); }
    template <class T>
    T const* getLineAs(int y) const {
        return reinterpret_cast<T const*>(lineAddress(y));
    }
};

} // namespace Qv
