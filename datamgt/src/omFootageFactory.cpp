#include "omFootageFactory.h"

#include "omEx.h"
#include "omUtil.h"

#include <fmt/format.h>

namespace Qv {

RCShdPtr<OmComposition> OmFootageFactory::createComponent(std::string const& name) {
    if (!OmUtil::isValidName(name))
        throw OmEx::ExInvalidName(__FILE__, __LINE__, fmt::format("'{}' cannot name a footage entry", name));
    RCShdPtr<OmComposition> composition = OmComposition::create(name);
    composition->addVersion(getOriginalVersionName());
    return composition;
}

} // namespace Qv
