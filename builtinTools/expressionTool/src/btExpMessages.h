#pragma once
// The texts of the expression catalogue that the graph builders put in their
// exceptions (the exceptions' own reasons are in BtExpEx). Subscribed with
// the parser (BtExpParser::initialize), while "expressions.msg" is open.
#include <string>
#include <string_view>

namespace Qv {

struct BtExpMessages {
    static void subscribe();

    // kind is "unary", "binary", "boolean binary" or "boolean unary".
    static std::string getUnsupportedArgTypeForOp(std::string_view kind, std::string_view op);
    static std::string getUnsupportedArgTypeForFunc(std::string_view name);
    static std::string getInvalidArgTypeIn3DVector(std::string_view x, std::string_view y,
                                                   std::string_view z);
    static std::string getInvalidArgTypeIn2DVector(std::string_view x, std::string_view y);
    static std::string getCannotBuildValueNode(std::string_view text);
    static std::string getCannotBuild3DVector(std::string_view x, std::string_view y, std::string_view z);
    static std::string getCannotBuild2DVector(std::string_view x, std::string_view y);
    static std::string getCannotBuildConstValueNode();
    static std::string getCannotGetProcNode(std::string_view text);
    static std::string getUnknownNode(std::string_view name);
    static std::string getUnsupportedSocketType(std::string_view typeName);
    static std::string getReferenceLoop(std::string_view text);
    // A warning: the expression of `parameter` reads attributes that are gone.
    static void warnSourceMissing(std::string_view parameter, std::string_view text);
};

} // namespace Qv
