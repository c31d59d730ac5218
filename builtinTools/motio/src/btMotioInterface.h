#pragma once
// What other parts of the application ask of a Motio node's controller: to
// feed an input from its vectors, and the vectors it publishes now.
#include "btMotioTypes.h"
#include "pxHandles.h"
#include "pxImageProtocol.h"
#include "rcBase.h"
#include "rcShdPtr.h"

namespace Qv {

class PiInput;

class BtMotioInterface {
public:
    // The vectors of one direction as last published: a viewer draws them,
    // a tool reads them. A new record at each build, so that a holder keeps a
    // consistent one.
    class VectorsData : public RCBase<> {
    public:
        VectorsData(BtMotioTypes::VectorType type, PxStrongHndl<PxImageProtocol const> vectors)
            : _type(type), _vectors(std::move(vectors)) {}
        BtMotioTypes::VectorType getType() const { return _type; }
        PxStrongHndl<PxImageProtocol const> const& getVectors() const { return _vectors; }

    private:
        BtMotioTypes::VectorType _type;
        PxStrongHndl<PxImageProtocol const> _vectors;
    };

    virtual ~BtMotioInterface() = default;

    // Connects `input` to the node's "Forward Vectors" (or "Backward
    // Vectors") output, as one undoable change of the node's graph.
    virtual void connectFwdVectors(RCShdPtr<PiInput> const& input) = 0;
    virtual void connectBwdVectors(RCShdPtr<PiInput> const& input) = 0;
    // Null until the node's processing nodes are built.
    virtual RCShdPtr<VectorsData const> getFwdVectorsData() const = 0;
    virtual RCShdPtr<VectorsData const> getBwdVectorsData() const = 0;
};

} // namespace Qv
