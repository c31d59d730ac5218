#include "piShowVectorsControllerHelper.h"

#include "piNode.h"
#include "piNodeController.h"
#include "piTypedValueUtil.h"

namespace Qv {

PiShowVectorsControllerHelper::~PiShowVectorsControllerHelper() = default;

std::string const& PiShowVectorsControllerHelper::getFwdVectorsColorName() {
    static std::string const name("Forward Vectors Color");
    return name;
}

std::string const& PiShowVectorsControllerHelper::getBwdVectorsColorName() {
    static std::string const name("Backward Vectors Color");
    return name;
}

std::vector<double> const& PiShowVectorsControllerHelper::getDefaultFwdVectorsColor() {
    static std::vector<double> const green{0.0, 1.0, 0.0};
    return green;
}

std::vector<double> const& PiShowVectorsControllerHelper::getDefaultBwdVectorsColor() {
    static std::vector<double> const red{1.0, 0.0, 0.0};
    return red;
}

void PiShowVectorsControllerHelper::describe(PiToolPolicyDescriptor& descriptor) {
    descriptor.stores(getFwdVectorsColorName(), PiValueType::DOUBLE_ARRAY);
    descriptor.stores(getBwdVectorsColorName(), PiValueType::DOUBLE_ARRAY);
}

std::vector<double> PiShowVectorsControllerHelper::getFwdVectorsColor() const {
    return getColor(getFwdVectorsColorName(), getDefaultFwdVectorsColor());
}

std::vector<double> PiShowVectorsControllerHelper::getBwdVectorsColor() const {
    return getColor(getBwdVectorsColorName(), getDefaultBwdVectorsColor());
}

void PiShowVectorsControllerHelper::reset() {
    _showingVectors = false;
}

std::vector<double> PiShowVectorsControllerHelper::getColor(std::string const& name,
                                                            std::vector<double> const& fallback) const {
    RCShdPtr<PiNode> const node = piControllerOf(*this).getNode();
    if (!node)
        return fallback;
    PiConstTypedValueArrayUtil<double> const color(node->getValue(name), CheckNull::NO_CHECK);
    // Three channels or it is no colour a viewer can draw with.
    if (color.isNull() || color.getSize() != 3)
        return fallback;
    return color.getValue();
}

} // namespace Qv
