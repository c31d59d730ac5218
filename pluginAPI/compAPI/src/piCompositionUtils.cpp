#include "piCompositionUtils.h"

#include <mutex>

namespace Qv {

namespace {

struct Names {
    std::mutex mutex;
    std::string output;
    std::string renderedResult;
    std::string imageLink;
};

Names& names() {
    static Names instance;
    return instance;
}

void set(std::string Names::*field, std::string const& name) {
    std::lock_guard lock(names().mutex);
    names().*field = name;
}

std::string get(std::string Names::*field) {
    std::lock_guard lock(names().mutex);
    return names().*field;
}

} // namespace

void PiCompositionUtils::setOutputToolName(std::string const& name) {
    set(&Names::output, name);
}

std::string PiCompositionUtils::getOutputToolName() {
    return get(&Names::output);
}

void PiCompositionUtils::setRenderedResultToolName(std::string const& name) {
    set(&Names::renderedResult, name);
}

std::string PiCompositionUtils::getRenderedResultToolName() {
    return get(&Names::renderedResult);
}

void PiCompositionUtils::setImageLinkSuperToolName(std::string const& name) {
    set(&Names::imageLink, name);
}

std::string PiCompositionUtils::getImageLinkSuperToolName() {
    return get(&Names::imageLink);
}

} // namespace Qv
