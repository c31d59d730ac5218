#pragma once
// Keeps a message catalogue open for a scope, typically a package's
// initialise step while it subscribes its messages.
#include <memory>
#include <string>

namespace Qv {

class MsgCatalogue;

class MsgFileGuard {
public:
    // A bare file name ("expressions.msg") is looked for in <MsgDir>; a path
    // is taken as it is, after its aliases are expanded. Throws
    // MsgEx::ExCatalogueNotFound or MsgEx::ExMalformedCatalogue.
    explicit MsgFileGuard(std::string const& fileName);
    ~MsgFileGuard();
    MsgFileGuard(MsgFileGuard const&) = delete;
    MsgFileGuard& operator=(MsgFileGuard const&) = delete;

private:
    std::shared_ptr<MsgCatalogue const> _catalogue;
};

} // namespace Qv
