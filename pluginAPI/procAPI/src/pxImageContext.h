#pragma once
// What an image evaluation is asked for, beside the time:
//   PxTimeStreamContext  a time and a stream (regions of definition)
//   PxTimeScaleContext   a time and a proxy scale
//   PxImageContext       a time, a tile position in tile units, a proxy scale
//                        and a stream (one tile of an image)
// The proxy scale is an exponent: the image is evaluated at 1 / 2^proxyScale
// of its full size.
#include "gePoint2.h"
#include "pxTimeContext.h"

#include <fmt/format.h>
#include <string>

namespace Qv {

class PxTimeStreamContext : public PxTimeContext {
public:
    explicit PxTimeStreamContext(double time = 0.0, int stream = 0) : PxTimeContext(time), _stream(stream) {}
    int getStream() const { return _stream; }

private:
    int _stream;
};

class PxTimeScaleContext : public PxTimeContext {
public:
    explicit PxTimeScaleContext(double time = 0.0, int proxyScale = 0)
        : PxTimeContext(time), _proxyScale(proxyScale) {}
    int getProxyScale() const { return _proxyScale; }

private:
    int _proxyScale;
};

class PxImageContext : public PxTimeContext {
public:
    PxImageContext(double time, GePoint2<int> const& tilePosition, int proxyScale = 0, int stream = 0)
        : PxTimeContext(time), _tilePosition(tilePosition), _proxyScale(proxyScale), _stream(stream) {}

    GePoint2<int> const& getTilePosition() const { return _tilePosition; }
    int getProxyScale() const { return _proxyScale; }
    int getStream() const { return _stream; }

    PxTimeStreamContext getTimeStreamContext() const { return PxTimeStreamContext(getTime(), _stream); }
    PxTimeScaleContext getTimeScaleContext() const { return PxTimeScaleContext(getTime(), _proxyScale); }
    // The same time, scale and stream at another tile.
    PxImageContext atTile(GePoint2<int> const& tilePosition) const {
        return PxImageContext(getTime(), tilePosition, _proxyScale, _stream);
    }

    std::string dump() const {
        return fmt::format("time {} tile {} proxy {} stream {}", getTime(), _tilePosition.dump(), _proxyScale,
                           _stream);
    }

private:
    GePoint2<int> _tilePosition;
    int _proxyScale;
    int _stream;
};

} // namespace Qv
