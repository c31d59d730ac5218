#include "cbContainer.h"

namespace Qv {

CbContainer::CbContainer() = default;

CbContainer::~CbContainer() {
    clear();
}

void CbContainer::clear() {
    // Taken out first, so that a handler's destructor that reaches this
    // container finds it already empty.
    auto registrations = std::move(_registrations);
    auto handlers = std::move(_handlers);
    _registrations.clear();
    _handlers.clear();
    for (auto it = registrations.rbegin(); it != registrations.rend(); ++it)
        (*it)();
    while (!handlers.empty())
        handlers.pop_back();
}

} // namespace Qv
