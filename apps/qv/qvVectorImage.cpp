#include "qvVectorImage.h"

#include "exBase.h"
#include "ffImageFormatTraits.h"
#include "ffImageWriteUtil.h"
#include "ffImageWriter.h"
#include "imMemoryBuffer.h"
#include "imWriteGuard.h"
#include "ixPixelUtil.h"
#include "ixReadGuard.h"
#include "qvFlowColorWheel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace Qv {

namespace {

bool isKnown(float x, float y) {
    // The colour coding's mark of an unknown vector is a component beyond 1e9.
    return std::isfinite(x) && std::isfinite(y) && std::abs(x) <= 1e9f && std::abs(y) <= 1e9f;
}

} // namespace

QvVectorImage::QvVectorImage(IxTile const& tile) {
    if (!tile.isValid() || tile.isEmpty())
        return;
    GeRectangle<int> const& region = tile.getPixelRegion();
    _width = region.getWidth();
    _height = region.getHeight();
    _xy.resize(2 * static_cast<std::size_t>(_width) * static_cast<std::size_t>(_height));
    IxReadGuard const guard(tile);
    for (int y = 0; y < _height; ++y)
        for (int x = 0; x < _width; ++x) {
            CoRgbaColorTyped<float> const pixel =
                IxPixelUtil::getPixelColor(guard, region.x1 + x, region.y1 + y);
            _xy[index(x, y)] = pixel.r;
            _xy[index(x, y) + 1] = pixel.g;
        }
}

QvVectorImage::Stats QvVectorImage::getStats() const {
    Stats stats;
    std::size_t const count = _xy.size() / 2;
    if (count == 0)
        return stats;
    double sumX = 0.0;
    double sumY = 0.0;
    double max = 0.0;
    for (std::size_t i = 0; i < _xy.size(); i += 2) {
        double const x = _xy[i];
        double const y = _xy[i + 1];
        sumX += x;
        sumY += y;
        // A NaN anywhere shows in the maximum as in the means.
        double const magnitude = std::sqrt(x * x + y * y);
        max = std::isnan(max) || std::isnan(magnitude) ? std::nan("") : std::max(max, magnitude);
    }
    stats.meanX = sumX / static_cast<double>(count);
    stats.meanY = sumY / static_cast<double>(count);
    stats.maxMagnitude = max;
    return stats;
}

std::string QvVectorImage::formatNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value == 0.0 ? 0.0 : value);
    return text;
}

std::string QvVectorImage::formatStats(Stats const& stats) {
    return "mean " + formatNumber(stats.meanX) + " " + formatNumber(stats.meanY) + " max " +
           formatNumber(stats.maxMagnitude);
}

float QvVectorImage::getLargestMagnitude() const {
    float largest = 0.0f;
    for (std::size_t i = 0; i < _xy.size(); i += 2)
        if (isKnown(_xy[i], _xy[i + 1]))
            largest = std::max(largest, std::hypot(_xy[i], _xy[i + 1]));
    return largest;
}

void QvVectorImage::checkNotEmpty(OsFilePath const& path) const {
    if (_xy.empty())
        throw ExBase(__FILE__, __LINE__, path.toString() + ": the vector image is empty, nothing to write");
}

void QvVectorImage::writeExr(OsFilePath const& path) const {
    checkNotEmpty(path);
    ImImage const image(ImLayout({0, _width, 0, _height}, ImFormat(2, ImPixelFormat::HDR)),
                        ImMemoryBuffer::Factory::getInstance());
    {
        ImWriteGuard const guard(image);
        for (int y = 0; y < _height; ++y)
            std::copy_n(&_xy[index(0, y)], 2 * static_cast<std::size_t>(_width), guard.getLineAs<float>(y));
    }
    FfImageWriter writer(path, FfImageFormatTraits::find("openexr"));
    writer.setSize(_width, _height);
    writer.setFormat(image.getFormat());
    writer.setChannelNames({"R", "G"});
    writer.writeBlock(image);
    writer.close();
}

void QvVectorImage::writeWheel(OsFilePath const& path, float maxMagnitude) const {
    checkNotEmpty(path);
    float max = maxMagnitude > 0.0f ? maxMagnitude : getLargestMagnitude();
    // Nothing moves: every pixel white.
    if (max <= 0.0f)
        max = 1.0f;
    ImImage const image(ImLayout({0, _width, 0, _height}, ImFormat(3, ImPixelFormat::UINT8)),
                        ImMemoryBuffer::Factory::getInstance());
    {
        ImWriteGuard const guard(image);
        for (int y = 0; y < _height; ++y) {
            std::uint8_t* const row = guard.getLineAs<std::uint8_t>(y);
            for (int x = 0; x < _width; ++x) {
                QvFlowColorWheel::Rgb8 const rgb = QvFlowColorWheel::colorOf(getX(x, y), getY(x, y), max);
                std::copy(rgb.begin(), rgb.end(), row + 3 * x);
            }
        }
    }
    FfImageWriteUtil::writeImage(path, image);
}

} // namespace Qv
