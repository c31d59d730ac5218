// btExpParse on arbitrary bytes. Every outcome is an accepted text or a
// BtExpEx with columns inside the text; anything else (a crash, a hang, a
// foreign exception) is a fault. Each text is also parsed a second time from
// inside a listener of the first parse, which must hear exactly the same and
// leave the outer parse hearing what a plain parse hears.
#include "btExpParser.h"
#include "btExpTracer.h"
#include "msgFileGuard.h"
#include "rcShdPtr.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

Qv::BtExpTraceReport checkedTrace(Qv::BtExpTracer& tracer, std::string const& text) {
    Qv::BtExpTraceReport report = tracer.trace(text);
    int const end = static_cast<int>(text.size()) + 1;
    if (!report.accepted && (report.firstColumn < 1 || report.firstColumn > report.lastColumn ||
                             report.lastColumn > end || report.reason.empty()))
        __builtin_trap();
    return report;
}

// At its first operand, parses the same text again from inside the parse.
class NestingTracer : public Qv::BtExpTracer {
public:
    explicit NestingTracer(std::string const& text) : _text(text) {}
    bool onConstant(Qv::LiString const& text, int first, int last) override {
        nest();
        return BtExpTracer::onConstant(text, first, last);
    }
    bool onAttribute(Qv::LiString const& text, int first, int last) override {
        nest();
        return BtExpTracer::onAttribute(text, first, last);
    }
    bool onFunction0(Qv::LiString const& name, int first, int last) override {
        nest();
        return BtExpTracer::onFunction0(name, first, last);
    }
    bool onUnknownToken(Qv::LiString const& text, int first, int last) override {
        nest();
        return BtExpTracer::onUnknownToken(text, first, last);
    }
    Qv::BtExpTraceReport _nested;

private:
    void nest() {
        if (_nesting)
            return;
        _nesting = true;
        Qv::RCShdPtr<Qv::BtExpTracer> inner(new Qv::BtExpTracer);
        _nested = checkedTrace(*inner, _text);
    }
    std::string const& _text;
    bool _nesting = false;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    Qv::MsgFileGuard catalogue("expressions.msg");
    Qv::BtExpParser::initialize();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    Qv::RCShdPtr<Qv::BtExpTracer> plain(new Qv::BtExpTracer);
    Qv::BtExpTraceReport const once = checkedTrace(*plain, text);
    Qv::RCShdPtr<NestingTracer> nesting(new NestingTracer(text));
    Qv::BtExpTraceReport const outer = checkedTrace(*nesting, text);
    // Every parse that hears anything hears an operand first.
    if (!(outer == once) || (!once.calls.empty() && !(nesting->_nested == once)))
        __builtin_trap();
    return 0;
}
