#pragma once
// What the forward warp does around its splats: how many run at once, the
// sum of their accumulators, and the division by the coverage that makes
// the warped image. The number of warps depends on a snapshot of the
// process's resources (processors, image memory budget) taken once.
#include "geRectangle.h"
#include "ixPixelFormat.h"
#include "ixTile.h"

#include <cstdint>
#include <vector>

namespace Qv {

class BtWarpUtils {
public:
    // Takes the snapshot, the first time only: the request manager's worker
    // count and the buffer manager's budget. Every warp node calls it when it
    // is made.
    static void storeResourceConfig();
    // Replaces the snapshot, for tests and hosts that bound the warps
    // themselves; a processor count of 0 leaves the warps unable to run.
    static void setResourceConfig(int nbProc, std::uint64_t bufferBudget);
    static int getNbProc();
    static std::uint64_t getBufferBudget();

    // How many forward warps may run at once over `rgn`: each owns two
    // full-frame accumulators, and is allowed 80 bytes per pixel of the
    // budget; at least one, at most the processor count. Asserts
    // "nbProc != 0": the snapshot must have been taken.
    static int getNbFwdWarps(GeRectangle<int> const& rgn);
    // The same for a given snapshot.
    static int getNbFwdWarps(GeRectangle<int> const& rgn, int nbProc, std::uint64_t bufferBudget);

    // Adds every acc[j] into acc[0] and cov[j] into cov[0], in strips of
    // rows, one request each; nothing with fewer than two entries.
    static void accumulate(std::vector<IxTile>& acc, std::vector<IxTile>& cov);
    // The warped image over `rgn` in `format` (FLOAT32, ALPHA or RGBA): acc
    // divided by cov, every component alpha included, and zero where
    // nothing landed. Computed in nbProc strips of rows.
    static IxTile fwdWarpReturn(int nbProc, IxTile const& acc, IxTile const& cov, GeRectangle<int> const& rgn,
                                IxPixelFormat const& format);
    // The sum and the division in one pass by scanline, over two or more
    // accumulator pairs (asserts "acc.size() > 1").
    static IxTile fwdWarpAccAndReturn(int nbProc, std::vector<IxTile> const& acc,
                                      std::vector<IxTile> const& cov, GeRectangle<int> const& rgn,
                                      IxPixelFormat const& format);
};

} // namespace Qv
