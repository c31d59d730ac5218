#pragma once
// What the expression tests share: the packages started once, texts evaluated
// the way the host's command line does, and a probe node that records when
// it is asked for its value.
#include "btExpEvalReport.h"
#include "inInitMgr.h"
#include "pxAnimValueProtocol.h"

#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <vector>

namespace Qv::ExpTest {

// Starts every package, the request manager among them, once per program.
class PackagesTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }
};

inline BtExpEvalReport evaluate(std::string const& text, double time = 0.0,
                                BtExpAttributeValues const& attributes = {}) {
    BtExpEvalReport report;
    btEvaluateExpression(text, time, attributes, report);
    return report;
}

// Gives a fixed value and interval, and writes its name and the time of each
// request into a shared log.
class ProbeNode : public PxAnimValueProtocol<double> {
public:
    struct Log {
        std::mutex lock;
        std::vector<std::string> entries;
    };

    ProbeNode(PxNode::Init const& init, std::string name, double value, PxValidityInterval const& vi,
              Log& log)
        : PxNode(init), PxAnimValueProtocol<double>(init), _name(std::move(name)), _value(value), _vi(vi),
          _log(log) {}

    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        {
            std::lock_guard guard(_log.lock);
            _log.entries.push_back(_name + "@" + std::to_string(context.getTime()));
        }
        result.set(_value, _vi);
    }

private:
    std::string const _name;
    double const _value;
    PxValidityInterval const _vi;
    Log& _log;
};

} // namespace Qv::ExpTest
