#pragma once
// The names of the language's functions, in the order a user interface
// presents them (completion, menus). A list for presentation only: the
// builders do not consult it, and "t" and "align" work without being listed.
#include "inSingleton.h"
#include "liString.h"

#include <vector>

namespace Qv {

class BtExpFunctionRegistry : public InSingleton<BtExpFunctionRegistry> {
public:
    void registerFunctionName(LiString const& name) { _names.push_back(name); }
    // Exact, case included.
    bool isRegistered(LiString const& name) const;
    std::vector<LiString> const& getAllFunctionNames() const { return _names; }

    // Registers the functions of the language, once, when the package starts.
    void registerLanguageFunctions();

private:
    std::vector<LiString> _names;
};

} // namespace Qv
