#pragma once
// What a controller of a tool that publishes motion vectors offers so that
// a viewer can draw them over the image: the colour of the forward and of
// the backward vectors, stored with the node ("Forward Vectors Color",
// "Backward Vectors Color", three doubles R G B), and whether the drawing is
// on, which belongs to the session and is not stored. The controller
// inherits it beside its other interfaces; its tool's describe calls
// describe. Application thread only.
#include "piToolPolicyDescriptor.h"

#include <string>
#include <vector>

namespace Qv {

class PiShowVectorsControllerHelper {
public:
    virtual ~PiShowVectorsControllerHelper();

    static std::string const& getFwdVectorsColorName(); // "Forward Vectors Color"
    static std::string const& getBwdVectorsColorName(); // "Backward Vectors Color"
    // Forward green (0, 1, 0) and backward red (1, 0, 0): the two directions
    // told apart at a glance, and neither close to the usual grey of footage.
    static std::vector<double> const& getDefaultFwdVectorsColor();
    static std::vector<double> const& getDefaultBwdVectorsColor();

    // Declares the two stored colours.
    static void describe(PiToolPolicyDescriptor& descriptor);

    // The stored colours; the default one while the node stores none (a node
    // not yet reset, or one without the value).
    std::vector<double> getFwdVectorsColor() const;
    std::vector<double> getBwdVectorsColor() const;

    bool isShowingVectors() const { return _showingVectors; }
    void setShowingVectors(bool showing) { _showingVectors = showing; }

    // The drawing back to how a new node starts: off. The colours are the
    // controller's to set, as each tool chooses its own.
    virtual void reset();

protected:
    PiShowVectorsControllerHelper() = default;

private:
    std::vector<double> getColor(std::string const& name, std::vector<double> const& fallback) const;

    bool _showingVectors = false;
};

} // namespace Qv
