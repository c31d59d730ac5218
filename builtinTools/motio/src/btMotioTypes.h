#pragma once
// The two kinds of motion vectors the analysis makes, and the walk over them:
// every per-type array has NB_VECTOR_TYPES entries and is visited from 0 with
// next() until NB_VECTOR_TYPES.

namespace Qv {

class BtMotioTypes {
public:
    enum VectorType {
        FORWARD_VECTORS = 0,  // from the frame at t to the frame at t + 1
        BACKWARD_VECTORS = 1, // from the frame at t to the frame at t - 1
        NB_VECTOR_TYPES = 2   // the count, not a type
    };

    // v + 1; asserts "v < NB_VECTOR_TYPES".
    static VectorType next(VectorType v);
};

} // namespace Qv
