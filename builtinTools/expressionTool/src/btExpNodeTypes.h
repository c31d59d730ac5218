#pragma once
// The handles the expression builders pass around: any node, and nodes typed
// by the value they give. The four value types of the language are double,
// bool, and 2D and 3D vectors of doubles.
#include "geVector.h"
#include "pxAnimValueProtocol.h"
#include "pxHandles.h"

namespace Qv::BtExpNodeTypes {

using Node = PxStrongHndl<PxNode>;
template <class T>
using Typed = PxStrongHndl<PxAnimValueProtocol<T> const>;
using Double = Typed<double>;
using Bool = Typed<bool>;
using Vec2 = Typed<GeVector2<double>>;
using Vec3 = Typed<GeVector3<double>>;

// The node typed as a node giving T, or null when it gives something else.
template <class T>
Typed<T> asTyped(Node const& node) {
    if (dynamic_cast<PxAnimValueProtocol<T> const*>(node.get()) == nullptr)
        return {};
    return Typed<T>(node);
}

// A new node of class N over the given children, built and initialised.
template <class N, class... Children>
Node create(Children const&... children) {
    PxNode::Init init;
    PxStrongHndl<N> node(new N(init, children...));
    PxNode::init(node);
    return node;
}

} // namespace Qv::BtExpNodeTypes
