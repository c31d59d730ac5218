#pragma once
// The tool side of a controller: the policies of its inputs, its primary
// sockets, its presets, and resetting inputs to their defaults.
#include "piInputPolicy.h"

#include <map>
#include <string>
#include <vector>

namespace Qv {

class PiInput;
class PiNode;
class PiOutput;

class PiToolInterface {
public:
    virtual ~PiToolInterface();

    // The input named by the tool's protocol as primary; null when none.
    virtual RCShdPtr<PiInput> getPrimaryInput();
    virtual RCShdPtr<PiInput const> getPrimaryInput() const;
    // The first output; null when the node has none.
    virtual RCShdPtr<PiOutput> getPrimaryOutput();
    virtual RCShdPtr<PiOutput const> getPrimaryOutput() const;
    virtual void setInputsAddedOnRestore(bool added);
    virtual void setCurrentPreset(int index);
    virtual void setCurrentPreset(std::string const& name);
    virtual std::string getCurrentPreset() const;
    virtual std::vector<std::string> getPresets() const;
    virtual void setPresets(std::vector<std::string> const& presets);
    virtual void clearPresets();
    // The value node behind an input; null for an image input.
    virtual RCShdPtr<PiNode> getInputValueNode(RCShdPtr<PiInput const> const& input) const;
    // Every input back to its policy's default, as one undo step.
    virtual void reset();
    virtual void reset(RCShdPtr<PiInput> const& input);
    // The key under which an input's policy is kept: its name.
    virtual std::string getInputPolicyKey(RCShdPtr<PiInput const> const& input) const;

    // Attaches a policy to an input by name, before or after the node exists.
    void addInputPolicy(std::string const& name, RCShdPtr<PiInputPolicy const> policy);
    bool hasExplicitInputPolicy(RCShdPtr<PiInput const> const& input) const;
    // The explicit policy, else the default one of the input's type.
    RCShdPtr<PiInputPolicy const> getInputPolicy(RCShdPtr<PiInput const> const& input) const;
    bool areInputsAddedOnRestore() const { return _inputsAddedOnRestore; }

private:
    std::map<std::string, RCShdPtr<PiInputPolicy const>> _policies;
    std::vector<std::string> _presets;
    std::string _currentPreset;
    bool _inputsAddedOnRestore = false;
};

} // namespace Qv
