#pragma once
// Failures of reading and building XML.
#include "exBase.h"

namespace Qv {

struct XmlEx {
    // Root of the family.
    QV_DECLARE_EX(ExXmlError, ExBase);
    // Malformed text; the reason names the file, when there is one, the line and the column.
    QV_DECLARE_EX(ExParseError, ExXmlError);
    // A required attribute or child element is absent.
    QV_DECLARE_EX(ExMissingAttribute, ExXmlError);
    QV_DECLARE_EX(ExMissingElement, ExXmlError);
    // An attribute is there but does not hold a value of the type asked.
    QV_DECLARE_EX(ExInvalidAttribute, ExXmlError);
    // An element or attribute name that XML does not allow.
    QV_DECLARE_EX(ExInvalidName, ExXmlError);
};

} // namespace Qv
