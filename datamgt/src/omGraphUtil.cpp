#include "omGraphUtil.h"

#include <atomic>

namespace Qv {

namespace {
std::atomic<OmGraphUtil::NodeCtrlFactory> gMissing{nullptr};
std::atomic<OmGraphUtil::NodeCtrlFactory> gBroken{nullptr};
std::atomic<OmGraphUtil::NodeCtrlFactory> gMissingSuper{nullptr};
} // namespace

void OmGraphUtil::registerMissingToolNodeCtrlFactory(NodeCtrlFactory factory) {
    gMissing = factory;
}

void OmGraphUtil::registerBrokenToolNodeCtrlFactory(NodeCtrlFactory factory) {
    gBroken = factory;
}

void OmGraphUtil::registerMissingSuperToolNodeCtrlFactory(NodeCtrlFactory factory) {
    gMissingSuper = factory;
}

OmGraphUtil::NodeCtrlFactory OmGraphUtil::getMissingToolNodeCtrlFactory() {
    return gMissing;
}

OmGraphUtil::NodeCtrlFactory OmGraphUtil::getBrokenToolNodeCtrlFactory() {
    return gBroken;
}

OmGraphUtil::NodeCtrlFactory OmGraphUtil::getMissingSuperToolNodeCtrlFactory() {
    return gMissingSuper;
}

} // namespace Qv
