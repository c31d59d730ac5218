#include "btImageSequenceEntry.h"

#include "btImageSequence.h"
#include "btSequencePathParser.h"

#include <type_traits>

extern "C" __attribute__((visibility("default"))) void
btCreateImageSequence(std::string const& text, Qv::RCStrongPtr<Qv::PiImageSequence>& sequence) {
    using namespace Qv;
    sequence.reset();
    std::string const resolved = BtSequencePathParser::resolveSequencePath(text);
    if (!resolved.empty())
        sequence = BtImageSequence::create(resolved, BtImageSequence::NO_CHECK);
}

// The function's type is part of the contract with the host.
static_assert(std::is_same_v<decltype(&btCreateImageSequence), Qv::BtCreateImageSequenceFunction>);
