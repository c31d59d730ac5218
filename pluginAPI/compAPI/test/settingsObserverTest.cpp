// Observers of the user's settings, as an image reader follows "ProxiesOnRead".
#include "compTestTools.h"
#include "obObserver.h"
#include "piUserSettings.h"

#include <thread>

using namespace Qv;
using namespace Qv::CompTest;

namespace {

// Keeps its own copy of the setting, refreshed on each change, the way a
// reader keeps the flag it consults on every read.
class ProxiesOnReadFollower : public ObObserver {
public:
    void update(ObSubject& subject) override {
        ++calls;
        PiVariant const value = static_cast<PiSettings&>(subject).getValue("ProxiesOnRead");
        proxiesOnRead = std::holds_alternative<bool>(value) && std::get<bool>(value);
    }
    int calls = 0;
    bool proxiesOnRead = false;
};

using SettingsObserverTest = GraphTest;

TEST_F(SettingsObserverTest, ProxiesOnReadDefaultsOffAndObserversFollowEachChangeUntilDetached) {
    PiUserSettings& settings = PiUserSettings::getInstance();
    settings.reset();
    EXPECT_EQ(settings.getValue("ProxiesOnRead"), PiVariant(false));
    EXPECT_EQ(settings.getValue("ProxyScale"), PiVariant(0));

    ProxiesOnReadFollower follower, leaver;
    settings.attach(follower);
    settings.attach(leaver);
    struct Step {
        char const* what;
        std::function<void()> change;
        int calls;
        bool proxiesOnRead;
        bool leaverAttached;
    };
    std::vector<Step> const steps = {
        {"set on", [&] { settings.setValue("ProxiesOnRead", true); }, 1, true, true},
        {"another key", [&] { settings.setValue("ProxyScale", 2); }, 2, true, true},
        {"set from another thread",
         [&] { std::thread([&] { settings.setValue("ProxiesOnRead", false); }).join(); }, 3, false, true},
        {"set on again", [&] { settings.setValue("ProxiesOnRead", true); }, 4, true, false},
        {"reset", [&] { settings.reset(); }, 5, false, false},
    };
    for (auto const& step : steps) {
        if (!step.leaverAttached)
            settings.detach(leaver);
        int const leaverCallsBefore = leaver.calls;
        step.change();
        EXPECT_EQ(follower.calls, step.calls) << step.what;
        EXPECT_EQ(follower.proxiesOnRead, step.proxiesOnRead) << step.what;
        EXPECT_EQ(leaver.calls - leaverCallsBefore, step.leaverAttached ? 1 : 0) << step.what;
    }
    settings.detach(follower);
    settings.setValue("ProxiesOnRead", true);
    EXPECT_EQ(follower.calls, 5) << "told after detaching";
    settings.reset();
}

} // namespace
