// bench_motio [PART...]: the motion kernels and the optical flow against
// OpenCV; the parts named (lk, upscale, bwdwarp, flow), or all of them.
#include "motioBench.h"

#include "inInitMgr.h"
#include "pxRequestMgr.h"

#include <opencv2/core.hpp>
#include <string_view>

int main(int argc, char** argv) {
    auto wanted = [argc, argv](std::string_view part) {
        for (int i = 1; i < argc; ++i)
            if (part == argv[i])
                return true;
        return argc == 1;
    };
    Qv::InInitMgr::getInstance().initializeAll();
    int const workers = Qv::PxRequestMgr::getInstance().getNbWorkers();
    cv::setNumThreads(workers);
    if (wanted("lk"))
        QvBench::runLucasKanadeBench(workers);
    if (wanted("upscale"))
        QvBench::runUpscaleBench(workers);
    if (wanted("bwdwarp"))
        QvBench::runBwdWarpBench(workers);
    if (wanted("flow"))
        QvBench::runFlowBench(workers);
    return 0;
}
