#pragma once
// The private records of BtImageReaderNode's frame read and requests.
#include "btImageReaderNode.h"
#include "btTileKeeper.h"
#include "imReadGuard.h"
#include "ixTile.h"
#include "pxImageContext.h"

#include <memory>
#include <mutex>
#include <vector>

namespace Qv {

// A tile of the frame being read: filled strip by strip, complete when
// every pixel it expects arrived.
struct BtImageReaderNode::PartialTile {
    GeRectangle<int> rect;
    long long expected = 0;
    long long received = 0;
    IxTile tile = IxTile::INVALID_TILE;
    // Complete, waiting for the background guess to see its pixels as read.
    bool pending = false;
    bool isComplete() const { return received == expected; }
};

// The state of one read of a frame.
struct BtImageReaderNode::FrameRead {
    PxImageContext context;
    BtTileKeeper* keeper = nullptr;
    IxPixelFormat format;
    GeRectangle<int> tiles;
    std::vector<PartialTile> partials;
    bool wantsGuess = false;
    // The background unpremultiplying uses: the node's, or what this read guessed.
    CoRgbColorTyped<float> background;
    PartialTile& at(GePoint2<int> const& tile) {
        return partials[static_cast<std::size_t>(tile.y - tiles.y1) *
                            static_cast<std::size_t>(tiles.getWidth()) +
                        static_cast<std::size_t>(tile.x - tiles.x1)];
    }
};

// The job of one tile on one strip.
struct BtImageReaderNode::TileInfo {
    FrameRead* read = nullptr;
    GePoint2<int> tile;
    ImReadGuard const* strip = nullptr;
};

// The way back from a worker to the application thread: the node while it
// lives, nothing once it is destroyed.
struct BtImageReaderNode::Publisher {
    std::mutex mutex;
    BtImageReaderNode* node = nullptr;
};

class BtImageReaderNode::GetImageRequest : public PxRequest {
public:
    GetImageRequest(BtImageReaderNode const& node, PxImageContext const& context,
                    std::shared_ptr<BtTileKeeper> keeper)
        : _node(node), _context(context), _keeper(std::move(keeper)) {}

    std::string getRequestType() const override { return "ImageReaderGetImage"; }
    void performExecute() override { _result = _node.computeRequest(_context, *_keeper); }

    PxImageContext const& getContext() const { return _context; }
    PxImageResult const& getResult() const { return _result; }
    BtTileKeeper const& getKeeper() const { return *_keeper; }

private:
    BtImageReaderNode const& _node;
    PxImageContext const _context;
    std::shared_ptr<BtTileKeeper> const _keeper;
    PxImageResult _result;
};

} // namespace Qv
