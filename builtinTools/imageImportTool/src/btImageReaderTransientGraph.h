#pragma once
// The disposable processing graph of an image reader tool: the reader node
// over the tool's sequence and the format node that states its output
// format. It is made when the footage changes and kept otherwise, so that
// the tiles it cached stay reachable; a change of a setting reaches the
// nodes as one PxSetRequest each, between evaluations.
//
// The cache identity: a sequence of files that exist is named by its path
// and the date of its first file, so that two readers of the same footage
// share their tiles and touching the file makes new ones; anything else
// (missing media, a movie, no date) gets a fresh identity kept in memory.
#include "btImageFormatNode.h"
#include "btImageReaderNode.h"
#include "btReaderCacheIdentity.h"
#include "cbDispatcher.h"
#include "cbHandler.h"
#include "coColor.h"
#include "coMotionVectorInfo.h"
#include "geVector.h"
#include "ixPixelFormat.h"
#include "pxHandles.h"
#include "rational.h"
#include "rcStrongPtr.h"
#include "uuid.h"

#include <string>

namespace Qv {

class PiImageSequence;

class BtImageReaderTransientGraph {
public:
    // What the tool's attributes say of the footage.
    struct State {
        GeVector2<int> size{0, 0};
        unsigned depth = IxPixelFormat::FLOAT16;
        Rational rate{24, 1};
        Rational pixelRatio{1, 1};
        long long startTime = 0;
        std::string formatOptions;
        CoMotionVectorInfo motionVectorInfo;
        bool unpremultiply = false;
        CoRgbColorTyped<float> unpremultiplyColor{0.0f, 0.0f, 0.0f};
    };

    // `onGuess` hears the colours a read guessed, on the application thread.
    // Asserts "!imageSequence.isNull()" and "imageSequence->getNbImages() > 0",
    // and that the first file's format is valid when `state` has no size.
    BtImageReaderTransientGraph(RCStrongPtr<PiImageSequence> const& imageSequence, std::string const& id,
                                State const& state, CbHandler<BtImageReaderNode::ColorGuess>* onGuess);
    ~BtImageReaderTransientGraph();
    BtImageReaderTransientGraph(BtImageReaderTransientGraph const&) = delete;
    BtImageReaderTransientGraph& operator=(BtImageReaderTransientGraph const&) = delete;

    Uuid const& getGraphId() const { return _graphId; }
    std::string const& getId() const { return _id; }
    BtReaderCacheIdentity const& getCacheIdentity() const { return _identity; }
    PxStrongHndl<BtImageReaderNode> const& getRootNode() const { return _readerNode; }
    PxStrongHndl<BtImageFormatNode> const& getFormatNode() const { return _formatNode; }

    void updateFileFormatOptions(std::string const& options);
    void updateMotionVectorInfo(CoMotionVectorInfo const& info);
    void updatePixelRatio(Rational const& ratio);
    void updateRate(Rational const& rate);
    void updateDepth(unsigned depth);
    void updateSize(GeVector2<int> const& size);
    void updateStartTime(long long startTime);
    void updateUnpreBgColor(CoRgbColorTyped<float> const& colour);
    void updateUnpreState(bool unpremultiply);

    // A read's guess, on the application thread: checked against this
    // graph's reader and handed on.
    void unpremultiplyBgColorGuessedCb(BtImageReaderNode::ColorGuess& guess);

private:
    template <class Arg, class Value>
    void update(void (BtImageReaderNode::*setter)(Arg), Value value);
    PxImageFormat makeFormat() const;

    RCStrongPtr<PiImageSequence> _imageSequence;
    std::string _id;
    Uuid _graphId;
    BtReaderCacheIdentity _identity;
    IxPixelFormat::Comps _comps = IxPixelFormat::RGBA;
    State _state;
    PxStrongHndl<BtImageFormatNode> _formatNode;
    PxStrongHndl<BtImageReaderNode> _readerNode;
    CbHandler<BtImageReaderNode::ColorGuess>* _onGuess;
    CbMethod<BtImageReaderTransientGraph, BtImageReaderNode::ColorGuess> _guessForwarder{
        this, &BtImageReaderTransientGraph::unpremultiplyBgColorGuessedCb};
};

} // namespace Qv
