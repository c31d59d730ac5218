#include "piInputPolicy.h"

#include "piImageInputPolicy.h"
#include "piInput.h"
#include "piTypedInputPolicy.h"

#include <fmt/format.h>

namespace Qv {

PiInputPolicy::~PiInputPolicy() = default;

PiInputPolicy::ExtrapolationType PiInputPolicy::getDefaultExtrapolationType() const {
    return EXTRAPOLATION_CONSTANT;
}

PiInputPolicy::InterpolationType PiInputPolicy::getDefaultInterpolationType() const {
    return INTERPOLATION_CONSTANT;
}

bool PiInputPolicy::isUserEditable() const {
    return true;
}

bool PiInputPolicy::isHidden() const {
    return false;
}

void PiInputPolicy::resetValue(PiInput& input) const {
    input.setConstantValue(getDefault());
}

std::vector<std::string> PiInputPolicy::getDomainLabels() const {
    return {};
}

bool PiInputPolicy::isPassAll() const {
    return false;
}

PiVariant PiInputPolicy::filterValue(PiVariant const& value) const {
    return value;
}

PiVariant PiInputPolicy::getMin() const {
    return {};
}

PiVariant PiInputPolicy::getMax() const {
    return {};
}

std::vector<PiVariant> PiInputPolicy::getDomain() const {
    return {};
}

std::string PiInputPolicy::getDomainLabel(PiVariant const&) const {
    return {};
}

std::string PiInputPolicy::describeAcceptedValues() const {
    std::vector<PiVariant> domain = getDomain();
    if (!domain.empty()) {
        std::string text = "one of ";
        for (std::size_t i = 0; i < domain.size(); ++i) {
            text += (i ? ", " : "") + PiVariantUtil::toString(domain[i]);
            std::string label = getDomainLabel(domain[i]);
            if (!label.empty())
                text += " (" + label + ")";
        }
        return text;
    }
    PiVariant min = getMin();
    PiVariant max = getMax();
    bool hasMin = !std::holds_alternative<std::monostate>(min);
    bool hasMax = !std::holds_alternative<std::monostate>(max);
    if (hasMin && hasMax)
        return fmt::format("from {} to {}", PiVariantUtil::toString(min), PiVariantUtil::toString(max));
    if (hasMin)
        return "from " + PiVariantUtil::toString(min);
    if (hasMax)
        return "up to " + PiVariantUtil::toString(max);
    return {};
}

RCShdPtr<PiInputPolicy const> PiInputPolicy::getDefaultPolicy(PiSocketType type) {
    // Made on first use, not at static construction, and kept for the process.
    static RCShdPtr<PiInputPolicy const> const policies[] = {
        RCShdPtr<PiInputPolicy const>(new PiTypedInputPolicy<bool>(true)),
        RCShdPtr<PiInputPolicy const>(new PiTypedInputPolicy<double>(true)),
        RCShdPtr<PiInputPolicy const>(new PiTypedInputPolicy<int>(true)),
        RCShdPtr<PiInputPolicy const>(new PiTypedInputPolicy<std::string>(true)),
        PiImageInputPolicy::createPrimary(0, 0, 0, PiImageInputPolicy::RESET_NONE, false),
        RCShdPtr<PiInputPolicy const>(new PiTypedInputPolicy<DtTime>(true)),
    };
    switch (type.getType()) {
    case PiSocketType::BOOLEAN:
        return policies[0];
    case PiSocketType::DOUBLE:
        return policies[1];
    case PiSocketType::INTEGER:
        return policies[2];
    case PiSocketType::STRING:
        return policies[3];
    case PiSocketType::IMAGE:
        return policies[4];
    case PiSocketType::TIME:
        return policies[5];
    case PiSocketType::COLOR:
        // A colour's policy rules each of its channels.
        return policies[1];
    }
    return policies[1];
}

} // namespace Qv
