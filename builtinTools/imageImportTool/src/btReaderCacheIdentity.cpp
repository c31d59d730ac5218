#include "btReaderCacheIdentity.h"

#include "osFile.h"
#include "osFileEx.h"
#include "piImageSequence.h"
#include "stInterface.h"

namespace Qv {

BtReaderCacheIdentity BtReaderCacheIdentity::decide(PiImageSequence const& sequence) {
    BtReaderCacheIdentity identity;
    identity.storageId = Uuid::createRandom();
    if (sequence.isStream() || sequence.nonExistentMediaAllowed() || sequence.getNbImages() <= 0)
        return identity;
    try {
        std::string const date =
            OsFile(OsFilePath(sequence.getFileNameAt(0))).getModificationDate().toString();
        identity.text = "ImageReaderCache:" + sequence.getPath() + "@" + date;
    } catch (OsFileEx::ExFileError const&) {
        return identity;
    }
    identity.storageId = StInterface::getInstance().getStorageId(identity.text);
    identity.kind = PxResultProtocol::MEMORY_AND_DISK;
    return identity;
}

} // namespace Qv
