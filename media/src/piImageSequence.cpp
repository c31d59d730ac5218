#include "piImageSequence.h"

#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "xmlElement.h"

#include <map>

namespace Qv {

namespace {

struct FactoryRegistry {
    std::mutex lock;
    std::map<std::string, PiImageSequence::Factory, std::less<>> factories;
};

FactoryRegistry& getRegistry() {
    static FactoryRegistry registry;
    return registry;
}

} // namespace

PiImageFilePtr PiImageSequence::getImageForReading(int index, ImMemory::Factory const& factory) const {
    OsFilePath const name(getFileNameAt(index));
    PiImageFilePtr const file = rcDynamicCast<PiImageFile>(FfFileFormatMgr::getInstance().openFile(name));
    if (file.isNull())
        throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, name.toString());
    file->setFormatOptions(getFileFormatOptions());
    file->setMemoryFactory(factory);
    return file;
}

PiImageFilePtr PiImageSequence::getImageForWriting(int index, std::string const& options) {
    PiImageFilePtr const file =
        FfFileFormatMgr::getInstance().createImageFile(OsFilePath(getFileNameAt(index)));
    file->setFormatOptions(options);
    return file;
}

std::string PiImageSequence::getFileFormatOptions() const {
    std::lock_guard const guard(_optionsLock);
    return _fileFormatOptions;
}

void PiImageSequence::setFileFormatOptions(std::string const& options) {
    std::lock_guard const guard(_optionsLock);
    _fileFormatOptions = options;
}

void PiImageSequence::registerFactory(std::string const& tag, Factory factory) {
    FactoryRegistry& registry = getRegistry();
    std::lock_guard const guard(registry.lock);
    registry.factories[tag] = std::move(factory);
}

void PiImageSequence::unregisterFactory(std::string const& tag) {
    FactoryRegistry& registry = getRegistry();
    std::lock_guard const guard(registry.lock);
    registry.factories.erase(tag);
}

RCStrongPtr<PiImageSequence> PiImageSequence::createFromFragment(std::string const& xml) {
    XmlElement const root = XmlElement::parse(xml);
    Factory factory;
    {
        FactoryRegistry& registry = getRegistry();
        std::lock_guard const guard(registry.lock);
        auto const found = registry.factories.find(root.getNodeName());
        if (found == registry.factories.end())
            return {};
        // A copy, so that the reader runs without the lock and may itself
        // read fragments.
        factory = found->second;
    }
    return factory ? factory(root) : RCStrongPtr<PiImageSequence>();
}

} // namespace Qv
