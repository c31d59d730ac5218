#pragma once
// The listener that checks an expression against the composition before
// anything is built: it resolves each reference to a socket of the graph,
// in text order, one entry per reference (duplicates included), and stands
// a constant 0 in for it so that the operators' type checks go on. It
// changes nothing in the graph.
//
// A reference "Node.Attribute" names a node of the expression's graph; a
// group is descended into, level by level ("Group.Node.Attribute"), and a
// group's own attribute is "Group.Attribute". A bare "Attribute" is searched
// on the node whose parameter the expression drives, then outwards through
// the groups holding it. Only boolean, double and integer sockets can be
// read; a socket that depends on the driven parameter would make a loop.
// Every refusal is BtExpEx::ExUnknownAttribute with the reference's columns.
#include "btExpPxGraphBase.h"
#include "piSocket.h"

#include <vector>

namespace Qv {

class BtExpPxGraphValidator : public BtExpPxGraphBase {
public:
    explicit BtExpPxGraphValidator(RCShdPtr<PiNode> owner);

    void beginParse() override;
    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override;

    // The sockets of the references, in text order.
    std::vector<RCShdPtr<PiSocket>> const& getSockets() const { return _sockets; }

private:
    // A socket of the node by name: an input, a sibling input, an output.
    static RCShdPtr<PiSocket> findAttribute(RCShdPtr<PiNode> const& node, std::string const& name,
                                            RCShdPtr<PiInput> const& sibling);
    // The node whose parameter the expression drives; null when it drives none.
    RCShdPtr<PiNode> findDrivenNode(RCShdPtr<PiInput>& driven) const;
    bool refuse(std::string const& message, int firstColumn, int lastColumn);

    std::vector<RCShdPtr<PiSocket>> _sockets;
};

} // namespace Qv
