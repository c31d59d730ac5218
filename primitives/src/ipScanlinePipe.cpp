#include "ipScanlinePipe.h"

#include "assertions.h"
#include "geRectangleUtil.h"

#include <algorithm>
#include <type_traits>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// One line form into another over the columns both hold; ZERO elsewhere.
template <class T, class U>
void copyLine(IxScanline<T> const& from, IxScanline<U>& to) {
    GeInterval<int> const both = to.getInterval().getIntersection(from.getInterval());
    std::fill(to.getData(), to.getData() + to.getLength(), U{});
    for (int x = both.x1; x < both.x2; ++x) {
        if constexpr (std::is_same_v<T, U>)
            to[x] = from[x];
        else if constexpr (std::is_same_v<U, float>)
            to[x] = from[x].r;
        else
            to[x] = {from[x], from[x], from[x], from[x]};
    }
}

template <class T>
void readZeroPadded(std::vector<IxReadGuard> const& guards, int y, IxScanline<T>& buffer) {
    buffer.setPaddingPolicy(IxPaddingPolicy<T>::constant(T{}));
    buffer.readFrom(guards, y);
}

} // namespace

void IpScanlinePipe::setDstRegion(GeRectangle<int> const& region) {
    _region = _hasRegion ? _region.getBounding(region) : region;
    _hasRegion = true;
}

void IpScanlinePipe::resetRegion() {
    _region = {};
    _hasRegion = false;
}

bool IpScanlinePipe::inputIsAvailable() const {
    return true;
}
void IpScanlinePipe::getAllInputs(std::vector<IpScanlinePipe*>&) const {}

void IpScanlinePipe::setExtraLinesBuffered(int n) {
    QV_ASSERT(n >= 0);
    _extraLines = std::max(_extraLines, n);
}

void IpSourceNode::getOutputScanline(int y, IxScanline<float>& buffer) {
    readZeroPadded(_guards, y, buffer);
}
void IpSourceNode::getOutputScanline(int y, IxScanline<Rgba>& buffer) {
    readZeroPadded(_guards, y, buffer);
}

template <class T>
void IpScanlinePipeOutput<T>::setDstRegion(GeRectangle<int> const& region) {
    IpScanlinePipe::setDstRegion(region);
    for (IpScanlinePipePtr const& input : _inputs) {
        int const lines = input->getExtraLinesBuffered();
        GeRectangle<int> const& r = getDstRegion();
        input->setDstRegion({r.x1 - _margin, r.x2 + _margin, r.y1 - lines, r.y2 + lines});
    }
}

template <class T>
void IpScanlinePipeOutput<T>::resetRegion() {
    IpScanlinePipe::resetRegion();
    _ring.clear();
    _rows.clear();
}

template <class T>
bool IpScanlinePipeOutput<T>::inputIsAvailable() const {
    return std::all_of(_inputs.begin(), _inputs.end(), [](IpScanlinePipePtr const& input) {
        return !input.isNull() && input->inputIsAvailable();
    });
}

template <class T>
void IpScanlinePipeOutput<T>::getAllInputs(std::vector<IpScanlinePipe*>& list) const {
    for (IpScanlinePipePtr const& input : _inputs)
        list.push_back(input.get());
}

template <class T>
template <class U>
void IpScanlinePipeOutput<T>::give(int y, IxScanline<U>& buffer) {
    GeRectangle<int> const& region = getDstRegion();
    if (!(region.y1 <= y && y < region.y2)) {
        std::fill(buffer.getData(), buffer.getData() + buffer.getLength(), U{});
        return;
    }
    if (_ring.empty()) {
        // First row of a pass: a ring wide enough for the rows consumers read around.
        std::size_t const slots = static_cast<std::size_t>(2 * getExtraLinesBuffered() + 1);
        for (std::size_t i = 0; i < slots; ++i)
            _ring.emplace_back(region.getXInterval());
        _rows.assign(slots, region.y1 - 1);
        initializeProcessing();
    }
    std::size_t const slot = static_cast<std::size_t>(y - region.y1) % _ring.size();
    _current = &_ring[slot];
    if (_rows[slot] != y) {
        processOutputScanline(y);
        _rows[slot] = y;
    }
    copyLine(*_current, buffer);
}

void IpDestNode::process(IxWriteGuard const& guard) {
    // Every stage once, inputs after their consumers.
    std::vector<IpScanlinePipe*> stages{_pipe.get()};
    for (std::size_t i = 0; i < stages.size(); ++i)
        stages[i]->getAllInputs(stages);
    QV_ASSERT(_pipe->inputIsAvailable());
    for (IpScanlinePipe* stage : stages)
        stage->resetRegion();
    GeRectangle<int> const& region = guard.getPixelRegion();
    _pipe->setDstRegion(region);
    IxScanline<Rgba> line(region.getXInterval());
    for (int y = region.y1; y < region.y2; ++y) {
        _pipe->getOutputScanline(y, line);
        line.writeTo(guard, y);
    }
}

template class IpScanlinePipeOutput<float>;
template class IpScanlinePipeOutput<Rgba>;

} // namespace Qv
