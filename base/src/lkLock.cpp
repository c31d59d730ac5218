#include "lkLock.h"

#include <utility>

namespace Qv {

LkLock::LkLock(std::string name) : _name(std::move(name)) {}

LkLock::~LkLock() = default;

LkRecLock::LkRecLock(std::string name) : _name(std::move(name)) {}

LkRecLock::~LkRecLock() = default;

} // namespace Qv
