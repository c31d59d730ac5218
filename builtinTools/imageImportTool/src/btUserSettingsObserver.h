#pragma once
// Keeps the image reader's copy of the user's "ProxiesOnRead" setting up to
// date: read at start, refreshed on every change of the user's settings.
// A change does not interrupt reads in progress.
#include "btImageReaderNode.h"
#include "obObserver.h"

namespace Qv {

class BtImageReaderNode::UserSettingsObserver : public ObObserver {
public:
    void update(ObSubject& subject) override;

    // The package's start and end: attach to the user's settings and read them; detach.
    static void start();
    static void stop();
};

} // namespace Qv
