#pragma once
// The motion kernels against OpenCV doing the same work on 1920x1080, each
// printing its `ratio motio.<name> <ours/anchor>` line. OpenCV runs on as many
// threads as the request manager has workers.

namespace QvBench {

void runLucasKanadeBench(int workers); // ratio motio.lk.boxfilter
void runUpscaleBench(int workers);     // ratio motio.upscale.resize
void runBwdWarpBench(int workers);     // ratio motio.bwdwarp.remap

} // namespace QvBench
