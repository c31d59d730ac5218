#pragma once
// The listener that builds an expression's processing graph once the
// validator passed: each reference takes the next validated socket, gets a
// new dynamic input of the expression's node (named by a fresh identifier,
// one per reference, duplicates included) connected to where the socket's
// value comes from, and reads that input's processing node. The reference's
// text is not looked at again.
#include "btExpPxGraphBase.h"
#include "piSocket.h"

#include <deque>
#include <vector>

namespace Qv {

class PiCreateProcGuard;

class BtExpPxGraphBuilder : public BtExpPxGraphBase {
public:
    // `guard` is the expression controller's, open for the build.
    BtExpPxGraphBuilder(RCShdPtr<PiNode> owner, std::vector<RCShdPtr<PiSocket>> const& sockets,
                        PiCreateProcGuard& guard);

    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override;

private:
    std::deque<RCShdPtr<PiSocket>> _sockets;
    PiCreateProcGuard& _guard;
};

} // namespace Qv
