#pragma once
// The motion kernels and the whole optical flow against OpenCV doing the same
// work on 1920x1080, each printing its `ratio motio.<name> <ours/anchor>`
// lines. OpenCV runs on as many threads as the request manager has workers.

namespace QvBench {

void runLucasKanadeBench(int workers); // ratio motio.lk.boxfilter
void runUpscaleBench(int workers);     // ratio motio.upscale.resize
void runBwdWarpBench(int workers);     // ratio motio.bwdwarp.remap
// ratio motio.full.farneback, motio.full.dis, motio.half.farneback; per pair
// epe motio|farneback|dis.<pair> and ratio motio.<pair>_epe.farneback
void runFlowBench(int workers);

} // namespace QvBench
