// The vector switch: which of computed and external vectors a tool's vector
// output shows, for every setting of "Calculate Motion" and every state of
// the two vectors inputs, and that a change of the setting reaches the nodes
// above.
#include "btMotionUtils.h"
#include "btPxVectorSwitchNode.h"
#include "motioTestSupport.h"

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class VectorSwitch : public MotioTestBase {};

GeRectangle<int> const FRAME{0, 8, 0, 6};
Rgba const COMPUTED{1.5f, -2.0f, 0.0f, 1.0f};
Rgba const EXTERNAL{-0.25f, 4.0f, 0.0f, 1.0f};

// Which vectors a tile shows: those of the computed image, of the external
// one, or none (an external input that nothing feeds).
enum class Shown { COMPUTED, EXTERNAL, NOTHING };

char const* toText(Shown shown) {
    switch (shown) {
    case Shown::COMPUTED:
        return "computed";
    case Shown::EXTERNAL:
        return "external";
    default:
        return "nothing";
    }
}

Shown shownBy(PxStrongHndl<PxImageProtocol const> const& node) {
    PxImageResult const result = evaluateTileAt(node, 2, 3);
    if (result.getPixelRegion().isEmpty())
        return Shown::NOTHING;
    IxTile const tile = result.getTile();
    Rgba const pixel = pixelAt(tile, 2, 3);
    if (near(pixel, COMPUTED))
        return Shown::COMPUTED;
    QV_ASSERT(near(pixel, EXTERNAL));
    return Shown::EXTERNAL;
}

// "Calculate Motion" off at time 0 and on at every other time.
class OffAtZero : public PxAnimValueProtocol<int> {
public:
    explicit OffAtZero(PxNode::Init const& init) : PxNode(init), PxAnimValueProtocol<int>(init) {}
    void getAnimValue(PxResult<int>& result, PxTimeContext const& context) const override {
        result.set(context.getTime() == 0.0 ? 0 : 1, BtMotionUtils::pointValidity(context.getTime()));
    }
};

} // namespace

TEST_F(VectorSwitch, ShowsExternalVectorsUnlessItComputesAndNoneAreConnected) {
    enum Calculate { OFF, ON, MISSING };
    struct Case {
        Calculate calculate;
        bool external;      // the input of this direction is connected
        bool otherExternal; // the input of the other direction is connected
        Shown shown;
    } const cases[] = {
        // Off: the input of this direction, whatever is connected.
        {OFF, false, false, Shown::NOTHING},
        {OFF, true, false, Shown::EXTERNAL},
        {OFF, false, true, Shown::NOTHING},
        {OFF, true, true, Shown::EXTERNAL},
        // On: connected vectors are taken as they are, either direction.
        {ON, true, false, Shown::EXTERNAL},
        {ON, true, true, Shown::EXTERNAL},
        {ON, false, true, Shown::NOTHING},
        {ON, false, false, Shown::COMPUTED},
        // A tool without the setting computes.
        {MISSING, false, false, Shown::COMPUTED},
        {MISSING, true, false, Shown::EXTERNAL},
        {MISSING, false, true, Shown::NOTHING},
    };
    PxStrongHndl<PxImageProtocol> const computed = constantImage(FRAME, COMPUTED);
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "calculate " << c.calculate << ", external " << c.external
                                        << ", other " << c.otherExternal);
        PxStrongHndl<PxNode const> const calculate =
            c.calculate == MISSING ? PxStrongHndl<PxNode const>() : constantValue<int>(c.calculate == ON);
        PxStrongHndl<PxImageProtocol> const external =
            c.external ? constantImage(FRAME, EXTERNAL) : nothing();
        PxStrongHndl<PxImageProtocol> const other =
            c.otherExternal ? constantImage(FRAME, {9.0f, 9.0f, 0.0f, 1.0f}) : nothing();
        PxStrongHndl<PxImageProtocol const> const node =
            BtPxVectorSwitchNode::create(computed, external, other, calculate);
        EXPECT_STREQ(toText(shownBy(node)), toText(c.shown));
        // What it forwards comes from the same child as its pixels.
        EXPECT_EQ(node->isChainConnected(), c.shown != Shown::NOTHING);
    }
}

TEST_F(VectorSwitch, WithoutTheOtherDirectionOnlyItsOwnInputCounts) {
    PxStrongHndl<PxImageProtocol const> const node = BtPxVectorSwitchNode::create(
        constantImage(FRAME, COMPUTED), nothing(), PxStrongHndl<PxNode const>(), constantValue<int>(1));
    EXPECT_STREQ(toText(shownBy(node)), toText(Shown::COMPUTED));
}

TEST_F(VectorSwitch, ReadsTheSettingAtTimeZeroOnly) {
    // Off at time 0 only: read at the time asked, other times would compute.
    PxStrongHndl<PxNode const> const calculate = make<OffAtZero>();
    PxStrongHndl<PxImageProtocol const> const node =
        BtPxVectorSwitchNode::create(constantImage(FRAME, COMPUTED), nothing(), nothing(), calculate);
    for (double time : {0.0, 1.0, -3.5}) {
        PxImageResult const result =
            evaluateTile(node, PxImageContext(time, PxImageProtocol::convertPixelToTile({2, 3})));
        EXPECT_TRUE(result.getPixelRegion().isEmpty()) << time;
    }
}

TEST_F(VectorSwitch, TurningTheComputationOffReachesTheNodesAbove) {
    PxStrongHndl<PxValueNode<int>> const calculate =
        make<PxValueNode<int>>(PxResult<int>(1, PxValidityInterval::FULL));
    PxStrongHndl<PxImageProtocol const> const node =
        BtPxVectorSwitchNode::create(constantImage(FRAME, COMPUTED), nothing(), nothing(), calculate);
    PxStrongHndl<InvalidationProbe> const above = probe(node);
    EXPECT_STREQ(toText(shownBy(above)), toText(Shown::COMPUTED));
    calculate->setValue(PxResult<int>(0, PxValidityInterval::FULL));
    EXPECT_GT(above->getNbInvalidations(), 0);
    EXPECT_STREQ(toText(shownBy(above)), toText(Shown::NOTHING));
}
