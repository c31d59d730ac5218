#pragma once
// How an image file's pixels carry motion vectors, if they do. Files store a
// displacement either in pixels as it is (ABSOLUTE), or mapped into [0, 1] so
// that 8-bit formats can hold it (NORMALIZED): a stored s means
// (2 * s - 1) * maxDisplacement pixels, 0.5 being no motion.
#include <fmt/format.h>
#include <string>

namespace Qv {

struct CoMotionVectorInfo {
    enum Status { NO_VECTORS = 0, HAS_VECTORS = 1 };
    enum Type { ABSOLUTE = 0, NORMALIZED = 1 };

    Status status = NO_VECTORS;
    Type type = ABSOLUTE;
    // Pixels that a stored 0 or 1 stands for, when NORMALIZED.
    float maxDisplacement = 0.0f;

    // Whether the pixels are vectors that can be read: a normalised kind needs
    // a displacement above zero.
    bool isValid() const { return status == HAS_VECTORS && (type == ABSOLUTE || maxDisplacement > 0.0f); }

    friend bool operator==(CoMotionVectorInfo const&, CoMotionVectorInfo const&) = default;
    std::string dump() const {
        return fmt::format("{} {} {}", status == HAS_VECTORS ? "HAS_VECTORS" : "NO_VECTORS",
                           type == NORMALIZED ? "NORMALIZED" : "ABSOLUTE", maxDisplacement);
    }
};

} // namespace Qv
