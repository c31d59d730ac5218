#include "piImageSocket.h"

#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"

namespace Qv {

IxTile piComputeImageFrame(PxStrongHndl<PxNode const> const& node, double time, int proxyScale) {
    if (node.isNull())
        RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(PxImageProtocol)));
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    PxRequestPtr<PxImageMultiTileRequest> request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(time), proxyScale));
    manager.postRequest(request, 0);
    struct Release {
        PxRequestMgr& manager;
        PxRequestPtr<PxImageMultiTileRequest>& request;
        ~Release() { manager.releaseRequest(request); }
    } release{manager, request};
    RCStrongPtr<PxImageMultiTileRequest::Results> const results = request->getResults();
    return PxImageMultiTileRequest::assembleTiles(*results);
}

} // namespace Qv
