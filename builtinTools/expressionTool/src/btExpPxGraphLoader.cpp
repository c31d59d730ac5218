#include "btExpPxGraphLoader.h"

#include "btExpMessages.h"

namespace Qv {

BtExpPxGraphLoader::BtExpPxGraphLoader(std::vector<PxStrongHndl<PxNode const>> const& inputNodes)
    : _inputNodes(inputNodes.begin(), inputNodes.end()) {}

bool BtExpPxGraphLoader::onAttribute(LiString const& text, int firstColumn, int lastColumn) {
    if (_inputNodes.empty() || _inputNodes.front().isNull())
        return fail(std::make_unique<BtExpEx::ExInternalError>(
            __FILE__, __LINE__, BtExpMessages::getCannotGetProcNode(text), firstColumn, lastColumn));
    push(Node::constCast(_inputNodes.front()));
    _inputNodes.pop_front();
    return true;
}

} // namespace Qv
