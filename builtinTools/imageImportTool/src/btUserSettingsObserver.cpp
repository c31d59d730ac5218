#include "btUserSettingsObserver.h"

#include "piUserSettings.h"

#include <variant>

namespace Qv {

namespace {

BtImageReaderNode::UserSettingsObserver gObserver;

void refresh() {
    PiVariant const value = PiUserSettings::getInstance().getValue("ProxiesOnRead");
    bool const* const on = std::get_if<bool>(&value);
    BtImageReaderNode::setProxiesOnRead(on != nullptr && *on);
}

} // namespace

void BtImageReaderNode::UserSettingsObserver::update(ObSubject&) {
    refresh();
}

void BtImageReaderNode::UserSettingsObserver::start() {
    if (!PiUserSettings::isInitialized())
        return;
    PiUserSettings::getInstance().attach(gObserver);
    refresh();
}

void BtImageReaderNode::UserSettingsObserver::stop() {
    if (PiUserSettings::isInitialized())
        PiUserSettings::getInstance().detach(gObserver);
}

} // namespace Qv
