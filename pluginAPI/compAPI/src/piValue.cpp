#include "piValue.h"

#include "piEx.h"
#include "piGraph.h"
#include "piNode.h"

namespace Qv {

RCShdPtr<PiNode> PiValue::getNode() const {
    return RCShdPtr<PiNode>(_node);
}

void PiValue::setData(PiVariant const& data) {
    if (!PiVariantUtil::holdsType(data, _type))
        throw PiEx::ExBadValue(__FILE__, __LINE__,
                               "value " + _name + " takes a " + valueTypeToString(_type) + ", not '" +
                                   PiVariantUtil::toString(data) + "'");
    if (data == _data)
        return;
    QV_ASSERT(_node != nullptr);
    PiVariant old = _data;
    if (PiGraph* graph = _node->getGraph()) {
        RCShdPtr<PiValue> self(this);
        graph->getCommandStack().record(
            "Set " + _name, [self, old] { self->apply(old); }, [self, data] { self->apply(data); });
    }
    apply(data);
}

void PiValue::apply(PiVariant const& data) {
    _data = data;
    if (_node)
        _node->notifyValueChanged(_name, _data, false);
}

} // namespace Qv
