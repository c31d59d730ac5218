#pragma once
// Ready-made value nodes built from a PxResult<T>.
//
// PxConstantAnimValueNode<T>: a value fixed for the node's life.
// PxAnimValueNode<T>: a value the application changes through a set request;
//   every change invalidates the nodes above for the old and new intervals.
// PxValueNode<int>: the integer form of the latter.
#include "pxAnimValueProtocol.h"

#include <mutex>

namespace Qv {

template <class T>
class PxConstantAnimValueNode : public PxAnimValueProtocol<T> {
public:
    PxConstantAnimValueNode(PxNode::Init const& init, PxResult<T> const& value)
        : PxNode(init), PxAnimValueProtocol<T>(init), _value(value) {}

    void getAnimValue(PxResult<T>& result, PxTimeContext const&) const override { result = _value; }
    T const& getValue() const { return _value.getValue(); }
    PxResult<T> const& getResult() const { return _value; }

private:
    PxResult<T> const _value;
};

template <class T>
class PxAnimValueNode : public PxAnimValueProtocol<T> {
public:
    PxAnimValueNode(PxNode::Init const& init, PxResult<T> const& value)
        : PxNode(init), PxAnimValueProtocol<T>(init), _value(value) {}

    void getAnimValue(PxResult<T>& result, PxTimeContext const&) const override {
        std::lock_guard<std::mutex> lock(_lock);
        result = _value;
    }

    // A state change: run it through a set request while the graph is quiet.
    void setValue(PxResult<T> const& value) {
        PxValidityInterval old;
        {
            std::lock_guard<std::mutex> lock(_lock);
            old = _value.getVI();
            _value = value;
        }
        this->invalidate(old, 0);
        if (!(value.getVI() == old))
            this->invalidate(value.getVI(), 0);
    }

private:
    mutable std::mutex _lock;
    PxResult<T> _value;
};

template <class T>
class PxValueNode : public PxAnimValueNode<T> {
public:
    PxValueNode(PxNode::Init const& init, PxResult<T> const& value)
        : PxNode(init), PxAnimValueNode<T>(init, value) {}
};

} // namespace Qv
