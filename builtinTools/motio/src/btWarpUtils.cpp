#include "btWarpUtils.h"

#include "assertions.h"
#include "btWarpPxRequest.h"
#include "ipArithmetic.h"
#include "ixScanline.h"
#include "ixScanlineUtil.h"
#include "pxRequestMgr.h"
#include "stBufferManager.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <type_traits>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// The snapshot of the process's resources.
std::mutex gConfigLock;
bool gConfigStored = false;
std::atomic<int> gNbProc{0};
std::atomic<std::uint64_t> gBufferBudget{0};

// What one forward warp may use of the budget per pixel of the frame: it owns
// full-frame accumulators (16 bytes of RGBA and 4 of coverage a pixel), and
// the rest is headroom for the tiles it reads meanwhile.
constexpr std::uint64_t BYTES_PER_PIXEL = 80;

// A value over its coverage, or zero where nothing landed.
inline float normalise(float value, float coverage) {
    return coverage != 0.0f ? value / coverage : 0.0f;
}

// Adds the entries 1 .. n - 1 into the first over one strip of rows.
class AddRequest : public BtWarpPxRequest {
public:
    AddRequest(int index, int count, std::vector<IxTile> const& acc, std::vector<IxTile> const& cov)
        : BtWarpPxRequest(index, count), _acc(acc), _cov(cov) {}

    std::string getRequestType() const override { return "WarpAdd"; }
    void performExecute() override {
        PxRequestMgr::getInstance().checkCancellation();
        GeRectangle<int> const strip = getStrip(_acc.front().getPixelRegion(), getIndex(), getCount());
        if (strip.isEmpty())
            return;
        IxWriteGuard const acc(_acc.front());
        IxWriteGuard const cov(_cov.front());
        for (std::size_t j = 1; j < _acc.size(); ++j) {
            ipAdd(acc, IxReadGuard(acc), IxReadGuard(_acc[j]), &strip);
            ipAdd(cov, IxReadGuard(cov), IxReadGuard(_cov[j]), &strip);
        }
    }

private:
    std::vector<IxTile> const& _acc;
    std::vector<IxTile> const& _cov;
};

// acc over cov, per component, over one strip of rows of the output.
class FwdWarpReturnRequest : public BtWarpPxRequest {
public:
    FwdWarpReturnRequest(int index, int count, IxTile const& acc, IxTile const& cov, IxTile const& out)
        : BtWarpPxRequest(index, count), _acc(acc), _cov(cov), _out(out) {}

    std::string getRequestType() const override { return "FwdWarpReturn"; }
    void performExecute() override {
        if (_out.getPixelFormat().getComps() == IxPixelFormat::RGBA)
            divide<4>();
        else
            divide<1>();
    }

private:
    template <int N>
    void divide() {
        PxRequestMgr const& mgr = PxRequestMgr::getInstance();
        GeRectangle<int> const strip = getStrip(_out.getPixelRegion(), getIndex(), getCount());
        IxReadGuard const acc(_acc);
        IxReadGuard const cov(_cov);
        IxWriteGuard const out(_out);
        std::ptrdiff_t const accSkip = static_cast<std::ptrdiff_t>(strip.x1 - _acc.getPixelRegion().x1) * N;
        std::ptrdiff_t const covSkip = strip.x1 - _cov.getPixelRegion().x1;
        int const width = strip.getWidth();
        for (int y = strip.y1; y < strip.y2; ++y) {
            mgr.checkCancellation();
            float const* a = acc.getLineAs<float>(y) + accSkip;
            float const* c = cov.getLineAs<float>(y) + covSkip;
            float* o = out.getLineAs<float>(y);
            for (int x = 0; x < width; ++x)
                for (int k = 0; k < N; ++k)
                    o[x * N + k] = normalise(a[x * N + k], c[x]);
        }
    }

    IxTile const& _acc;
    IxTile const& _cov;
    IxTile const& _out;
};

// The sum of every accumulator pair and the division, row by row, over one
// strip of rows of the output.
class FwdWarpAccAndReturnRequest : public BtWarpPxRequest {
public:
    FwdWarpAccAndReturnRequest(int index, int count, std::vector<IxTile> const& acc,
                               std::vector<IxTile> const& cov, IxTile const& out)
        : BtWarpPxRequest(index, count), _acc(acc), _cov(cov), _out(out) {}

    std::string getRequestType() const override { return "FwdWarpAccAndReturn"; }
    void performExecute() override {
        if (_out.getPixelFormat().getComps() == IxPixelFormat::RGBA)
            run<Rgba>();
        else
            run<float>();
    }

private:
    template <class T>
    void run() {
        PxRequestMgr const& mgr = PxRequestMgr::getInstance();
        GeRectangle<int> const strip = getStrip(_out.getPixelRegion(), getIndex(), getCount());
        if (strip.isEmpty())
            return;
        std::vector<IxReadGuard> accGuards, covGuards;
        for (std::size_t j = 0; j < _acc.size(); ++j) {
            accGuards.emplace_back(_acc[j]);
            covGuards.emplace_back(_cov[j]);
        }
        IxWriteGuard const out(_out);
        GeInterval<int> const columns = strip.getXInterval();
        IxScanline<T> sum(columns), part(columns), line(columns);
        IxScanline<float> coverage(columns), covPart(columns);
        for (int y = strip.y1; y < strip.y2; ++y) {
            mgr.checkCancellation();
            sum.readFrom(accGuards.front(), y);
            coverage.readFrom(covGuards.front(), y);
            for (std::size_t j = 1; j < accGuards.size(); ++j) {
                part.readFrom(accGuards[j], y);
                IxScanlineUtil::accumulateScanline(sum, part, nullptr);
                covPart.readFrom(covGuards[j], y);
                IxScanlineUtil::accumulateScanline(coverage, covPart, nullptr);
            }
            T const* s = sum.getData();
            float const* c = coverage.getData();
            T* o = line.getData();
            for (int x = 0; x < columns.getLength(); ++x) {
                if constexpr (std::is_same_v<T, float>)
                    o[x] = normalise(s[x], c[x]);
                else
                    o[x] = {normalise(s[x].r, c[x]), normalise(s[x].g, c[x]), normalise(s[x].b, c[x]),
                            normalise(s[x].a, c[x])};
            }
            line.writeTo(out, y);
        }
    }

    std::vector<IxTile> const& _acc;
    std::vector<IxTile> const& _cov;
    IxTile const& _out;
};

// The output of a forward warp: `format` over `rgn`, zero outside.
IxTile makeOutput(std::vector<IxTile> const& acc, std::vector<IxTile> const& cov, GeRectangle<int> const& rgn,
                  IxPixelFormat const& format) {
    QV_ASSERT(!acc.empty() && acc.size() == cov.size());
    QV_ASSERT(format.getDepth() == IxPixelFormat::FLOAT32 &&
              format.getComps() == acc.front().getPixelFormat().getComps());
    for (std::size_t j = 0; j < acc.size(); ++j)
        QV_ASSERT(acc[j].getPixelRegion().contains(rgn) && cov[j].getPixelRegion().contains(rgn));
    return IxTile(format, rgn, Rgba::ZERO);
}

} // namespace

void BtWarpUtils::storeResourceConfig() {
    std::lock_guard const lock(gConfigLock);
    if (gConfigStored)
        return;
    gNbProc = PxRequestMgr::getInstance().getNbWorkers();
    gBufferBudget = StBufferManager::getInstance().getBudget();
    gConfigStored = true;
}

void BtWarpUtils::setResourceConfig(int nbProc, std::uint64_t bufferBudget) {
    std::lock_guard const lock(gConfigLock);
    gNbProc = nbProc;
    gBufferBudget = bufferBudget;
    gConfigStored = true;
}

int BtWarpUtils::getNbProc() {
    return gNbProc;
}

std::uint64_t BtWarpUtils::getBufferBudget() {
    return gBufferBudget;
}

int BtWarpUtils::getNbFwdWarps(GeRectangle<int> const& rgn) {
    return getNbFwdWarps(rgn, gNbProc, gBufferBudget);
}

int BtWarpUtils::getNbFwdWarps(GeRectangle<int> const& rgn, int nbProc, std::uint64_t bufferBudget) {
    QV_ASSERT(nbProc != 0);
    std::uint64_t const width = static_cast<std::uint64_t>(std::max(rgn.getWidth(), 0));
    std::uint64_t const height = static_cast<std::uint64_t>(std::max(rgn.getHeight(), 0));
    std::uint64_t const per = width * height * BYTES_PER_PIXEL;
    if (per == 0 || nbProc < 2)
        return 1;
    std::uint64_t const n = bufferBudget / per;
    if (n < 2)
        return 1;
    return static_cast<int>(std::min<std::uint64_t>(n, static_cast<std::uint64_t>(nbProc)));
}

void BtWarpUtils::accumulate(std::vector<IxTile>& acc, std::vector<IxTile>& cov) {
    if (acc.size() < 2)
        return;
    QV_ASSERT(acc.size() == cov.size());
    int const n = static_cast<int>(acc.size());
    std::vector<PxRequestPtr<AddRequest>> requests;
    for (int k = 0; k < n; ++k)
        requests.emplace_back(new AddRequest(k, n, acc, cov));
    BtWarpPxRequest::runAll(requests);
}

IxTile BtWarpUtils::fwdWarpReturn(int nbProc, IxTile const& acc, IxTile const& cov,
                                  GeRectangle<int> const& rgn, IxPixelFormat const& format) {
    IxTile const out = makeOutput({acc}, {cov}, rgn, format);
    if (rgn.isEmpty())
        return out;
    int const n = std::max(nbProc, 1);
    std::vector<PxRequestPtr<FwdWarpReturnRequest>> requests;
    for (int k = 0; k < n; ++k)
        requests.emplace_back(new FwdWarpReturnRequest(k, n, acc, cov, out));
    BtWarpPxRequest::runAll(requests);
    return out;
}

IxTile BtWarpUtils::fwdWarpAccAndReturn(int nbProc, std::vector<IxTile> const& acc,
                                        std::vector<IxTile> const& cov, GeRectangle<int> const& rgn,
                                        IxPixelFormat const& format) {
    QV_ASSERT_MSG(acc.size() > 1, "acc.size() > 1");
    IxTile const out = makeOutput(acc, cov, rgn, format);
    if (rgn.isEmpty())
        return out;
    int const n = std::max(nbProc, 1);
    std::vector<PxRequestPtr<FwdWarpAccAndReturnRequest>> requests;
    for (int k = 0; k < n; ++k)
        requests.emplace_back(new FwdWarpAccAndReturnRequest(k, n, acc, cov, out));
    BtWarpPxRequest::runAll(requests);
    return out;
}

} // namespace Qv
