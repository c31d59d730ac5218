#pragma once
// The controller of an expression node. Setting the text (one undo step)
// validates it against the graph and, when it passes, builds: the dynamic
// inputs of the old references go, one is made per reference of the new
// text and connected to the attribute it names, and the result output
// publishes the expression's processing graph, cast to the output's type.
// A text that does not validate is kept with the flag false, its error's
// columns and text at hand, and the output gives the type's zero.
//
// Every later build of the node's processing nodes (after a load, when what
// feeds a reference changed, after undo or redo) remakes the graph from the
// existing inputs with the loader, never the validator. Undo and redo replay
// text, flag, inputs and connections through the command stack; nothing here
// writes then.
#include "btExpNodeTypes.h"
#include "piExpressionInterface.h"
#include "piNodeController.h"
#include "piSocket.h"
#include "piToolInterface.h"
#include "piToolTopologyInterface.h"
#include "piUndoRedoControllerHelper.h"
#include "piValueChangeInterface.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Qv {

class BtExpressionController : public PiExpressionInterface,
                               public PiToolTopologyInterface,
                               public PiToolInterface,
                               public PiValueChangeInterface,
                               public PiUndoRedoControllerHelper,
                               public virtual PiNodeController {
public:
    explicit BtExpressionController(PiSocketType type);
    ~BtExpressionController() override;

    void setExpression(std::string const& text) override;
    std::string getExpression() const override;
    bool validateExpression() override;
    void buildExpression() override;
    void rebuildExpression() override;
    void clearExpression() override;
    bool adjustExpression() override;
    bool isExpressionValid() const override;
    void setComment(std::string const& text) override;
    std::string getComment() const override;
    RCShdPtr<PiOutput> getResultOutput() override;
    RCShdPtr<PiOutput const> getResultOutput() const override;
    PxStrongHndl<PxNode const> getRoot() const override;
    PxStrongHndl<PxNode const> getOutputNode() const override;
    std::int32_t getErrorFirstColumn() const override { return _errorFirstColumn; }
    std::int32_t getErrorLastColumn() const override { return _errorLastColumn; }
    std::string getErrorText() const override { return _errorText; }

    void nodeCreated() override;
    void nodeLoaded() override;

    bool canAddDynamicInput(std::string const& name, PiSocketType type, Cardinality cardinality) override;
    bool canRemoveDynamicInput(RCShdPtr<PiInput> const& input) override;
    // Integer and boolean attributes reach the language as doubles.
    PxStrongHndl<PxNode const> createInputProcNode(RCShdPtr<PiInput> const& input,
                                                   PxStrongHndl<PxNode const> const& node) override;
    void createProcNodes(OutputPublisher& publisher) override;

    void valueChanged(PiNodeEvent::ValueChanged const& event) override;

    PiSocketType getType() const { return _type; }

private:
    class FlagScope;

    std::string getStoredString(std::string const& name) const;
    // One undo step of its own (or the enclosing one's).
    void writeStored(std::string const& label, std::string const& name, std::string const& text);
    // Runs the validator over the text, keeping the error of a refusal;
    // changes nothing of the graph. The sockets of the references when the
    // text is valid.
    std::optional<std::vector<RCShdPtr<PiSocket>>> checkText();
    void writeValidity(bool valid);
    // Takes off the dynamic inputs of the previous text.
    void removeDynamicInputs();
    // The node the output publishes for a root: the root, or its cast.
    // Throws for a root of another type (a vector).
    PxStrongHndl<PxNode const> castToOutput(BtExpNodeTypes::Node const& root) const;
    PxStrongHndl<PxNode const> const& getDefaultNode();

    PiSocketType _type;
    std::vector<RCShdPtr<PiSocket>> _sockets;
    std::int32_t _errorFirstColumn = 0;
    std::int32_t _errorLastColumn = 0;
    std::string _errorText;
    bool _validating = false;
    bool _building = false;
    BtExpNodeTypes::Node _root;
    PxStrongHndl<PxNode const> _outputNode;
    PxStrongHndl<PxNode const> _defaultNode;
};

} // namespace Qv
