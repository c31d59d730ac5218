#pragma once
// The listener that remakes an expression's processing graph from dynamic
// inputs that already exist (after a composition was read, or when what
// feeds them changed): each reference takes the next input's processing
// node, in the order of the inputs, which is the order of the references.
#include "btExpPxGraphBase.h"

#include <deque>
#include <vector>

namespace Qv {

class BtExpPxGraphLoader : public BtExpPxGraphBase {
public:
    explicit BtExpPxGraphLoader(std::vector<PxStrongHndl<PxNode const>> const& inputNodes);

    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override;

private:
    std::deque<PxStrongHndl<PxNode const>> _inputNodes;
};

} // namespace Qv
