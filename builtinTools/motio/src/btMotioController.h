#pragma once
// The controller of a "Motio" node: builds the analysis chain on the node's
// image input and "Quality" once per build, publishes each direction's
// vectors on its output and the image itself on "Output", keeps the colours
// a viewer draws the vectors in, and lets other parts connect to its vectors.
#include "btMotioInterface.h"
#include "piNodeController.h"
#include "piSchematicInterface.h"
#include "piShowVectorsControllerHelper.h"
#include "piToolInterface.h"
#include "piToolTopologyInterface.h"
#include "piUserInterface.h"

#include <array>

namespace Qv {

class MotioController : public PiToolTopologyInterface,
                        public PiToolInterface,
                        public PiUserInterface,
                        public PiSchematicInterface,
                        public PiShowVectorsControllerHelper,
                        public BtMotioInterface,
                        public virtual PiNodeController {
public:
    MotioController();
    ~MotioController() override;

    // A new node starts with the vector colours set; a loaded one keeps its own.
    void nodeCreated() override;
    void createProcNodes(OutputPublisher& publisher) override;
    std::string getXmlFileName() const override;

    // Inputs back to their defaults, the drawing off, then the colours, as
    // one undo step.
    void reset() override;
    using PiToolInterface::reset;

    void connectFwdVectors(RCShdPtr<PiInput> const& input) override;
    void connectBwdVectors(RCShdPtr<PiInput> const& input) override;
    RCShdPtr<VectorsData const> getFwdVectorsData() const override;
    RCShdPtr<VectorsData const> getBwdVectorsData() const override;

private:
    void setColors();
    void connectVectors(std::string const& outputName, RCShdPtr<PiInput> const& input);

    std::array<RCShdPtr<VectorsData const>, BtMotioTypes::NB_VECTOR_TYPES> _vectorsData;
};

} // namespace Qv
