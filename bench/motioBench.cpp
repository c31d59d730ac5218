// bench_motio: the motion kernels against OpenCV, one ratio line each.
#include "motioBench.h"

#include "inInitMgr.h"
#include "pxRequestMgr.h"

#include <opencv2/core.hpp>

int main() {
    Qv::InInitMgr::getInstance().initializeAll();
    int const workers = Qv::PxRequestMgr::getInstance().getNbWorkers();
    cv::setNumThreads(workers);
    QvBench::runLucasKanadeBench(workers);
    QvBench::runUpscaleBench(workers);
    QvBench::runBwdWarpBench(workers);
    return 0;
}
