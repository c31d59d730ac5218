#include "exBase.h"

namespace Qv {

ExBase::ExBase(char const* file, int line, std::string reason)
    : _file(file ? file : ""), _line(line), _reason(std::move(reason)) {}

ExBase::~ExBase() = default;

OPtrRet<ExBase> ExBase::clone() const {
    return std::make_unique<ExBase>(*this);
}

void ExBase::raise() const {
    throw *this;
}

} // namespace Qv
