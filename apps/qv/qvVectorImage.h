#pragma once
// A motion vector image as `qv motio` hands it on: its horizontal (R) and
// vertical (G) displacements in pixels, summed up in one line, written as a
// two-channel float EXR, or shown through the flow colour wheel in an 8-bit
// RGB image. Files are written to a temporary name beside the target and
// renamed once complete.
#include "ixTile.h"
#include "osFilePath.h"

#include <string>
#include <vector>

namespace Qv {

class QvVectorImage {
public:
    // The R and G of every pixel of the tile; an invalid or empty tile gives
    // an image of no pixel.
    explicit QvVectorImage(IxTile const& tile);

    int getWidth() const { return _width; }
    int getHeight() const { return _height; }
    float getX(int x, int y) const { return _xy[index(x, y)]; }
    float getY(int x, int y) const { return _xy[index(x, y) + 1]; }

    // Means of x and of y, and the largest magnitude, over every pixel; all 0
    // for an image of no pixel.
    struct Stats {
        double meanX = 0.0;
        double meanY = 0.0;
        double maxMagnitude = 0.0;
    };
    Stats getStats() const;
    // "mean 2.98375 1.99781 max 3.71204".
    static std::string formatStats(Stats const& stats);
    // printf's %.6g, with a negative zero written 0.
    static std::string formatNumber(double value);

    // The largest magnitude of the known vectors (finite, 1e9 at most); 0 when none moves.
    float getLargestMagnitude() const;

    // Throws FfIOEx, or ExBase for an image of no pixel.
    void writeExr(OsFilePath const& path) const;
    // In the format of the file's extension (PNG, say). `maxMagnitude` is the
    // magnitude of full saturation; 0 or less: the largest magnitude.
    void writeWheel(OsFilePath const& path, float maxMagnitude) const;

private:
    std::size_t index(int x, int y) const {
        return 2 *
               (static_cast<std::size_t>(y) * static_cast<std::size_t>(_width) + static_cast<std::size_t>(x));
    }
    void checkNotEmpty(OsFilePath const& path) const;

    int _width = 0;
    int _height = 0;
    std::vector<float> _xy; // x, y of each pixel, rows from the top
};

} // namespace Qv
