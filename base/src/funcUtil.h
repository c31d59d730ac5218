#pragma once
// Shaping curves for animation: an ease curve from 0 to 1, and a bell.
// Both are total: every input, infinities and NaN included, gives a defined
// value, since they are evaluated by expressions that must never fail.
namespace Qv {

struct FuncUtil {
    // An S-shaped ease from 0 to 1 as position goes from 0 to 1: the motion
    // speeds up evenly over the first `easeIn` of the way, keeps its speed,
    // and slows down evenly over the last `easeOut`. The result is continuous
    // with a continuous slope; (position, 0.5, 0.5) is the symmetric curve
    // 2p^2 up to the middle and 1 - 2(1-p)^2 after it.
    //
    // Position is clamped to [0, 1], NaN counting as 0. The two lengths are
    // clamped to [0, 1] (NaN as 0) and, when their sum exceeds 1, scaled down
    // to sum 1; (p, 0, 0) is the straight line.
    static double computeSCurve(double position, double easeIn, double easeOut);

    // A Gaussian bell over time: height * exp(-(time - center)^2 / (2 width^2)),
    // so `width` is the standard deviation and the peak, at `center`, is
    // `height`. The sign of width does not matter. A width of zero is the
    // limit of a narrowing bell: height at the centre, 0 elsewhere.
    static double computeGaussCurve(double time, double center, double width, double height);
};

} // namespace Qv
