#include "btExpMessages.h"

#include "msgError.h"
#include "msgServer.h"
#include "msgSubscription.h"

#include <initializer_list>

namespace Qv {

namespace {
MsgSubscription gUnsupportedArgTypeForOp("MSG_EXPR_UNSUPPORTED_ARG_TYPE_FOR_OP");
MsgSubscription gUnsupportedArgTypeForFunc("MSG_EXPR_UNSUPPORTED_ARG_TYPE_FOR_FUNC");
MsgSubscription gInvalidArgTypeIn3DVector("MSG_EXPR_INVALID_ARG_TYPE_IN_3D_VECTOR");
MsgSubscription gInvalidArgTypeIn2DVector("MSG_EXPR_INVALID_ARG_TYPE_IN_2D_VECTOR");
MsgSubscription gCannotBuildValueNode("MSG_EXPR_CANNOT_BUILD_VALUE_NODE");
MsgSubscription gCannotBuild3DVector("MSG_EXPR_CANNOT_BUILD_3D_VECTOR");
MsgSubscription gCannotBuild2DVector("MSG_EXPR_CANNOT_BUILD_2D_VECTOR");
MsgSubscription gCannotBuildConstValueNode("MSG_EXPR_CANNOT_BUILD_CONST_VALUE_NODE");
MsgSubscription gCannotGetProcNode("MSG_EXPR_CANNOT_GET_PROC_NODE");
MsgSubscription gUnknownNode("MSG_EXPR_UNKNOWN_NODE");
MsgSubscription gUnsupportedSocketType("MSG_EXPR_UNSUPPORTED_SOCKET_TYPE");
MsgSubscription gReferenceLoop("MSG_EXPR_REFERENCE_LOOP");
MsgSubscription gSourceMissing("MSG_EXPR_SOURCE_MISSING");

std::string textOf(MsgSubscription const& subscription, std::initializer_list<std::string_view> values) {
    MsgWarning message(subscription);
    for (std::string_view value : values)
        message.substitute(value);
    return message.getText();
}
} // namespace

void BtExpMessages::subscribe() {
    for (MsgSubscription* subscription :
         {&gUnsupportedArgTypeForOp, &gUnsupportedArgTypeForFunc, &gInvalidArgTypeIn3DVector,
          &gInvalidArgTypeIn2DVector, &gCannotBuildValueNode, &gCannotBuild3DVector, &gCannotBuild2DVector,
          &gCannotBuildConstValueNode, &gCannotGetProcNode, &gUnknownNode, &gUnsupportedSocketType,
          &gReferenceLoop, &gSourceMissing})
        MsgServer::getInstance().subscribe(*subscription);
}

std::string BtExpMessages::getUnsupportedArgTypeForOp(std::string_view kind, std::string_view op) {
    return textOf(gUnsupportedArgTypeForOp, {kind, op});
}

std::string BtExpMessages::getUnsupportedArgTypeForFunc(std::string_view name) {
    return textOf(gUnsupportedArgTypeForFunc, {name});
}

std::string BtExpMessages::getInvalidArgTypeIn3DVector(std::string_view x, std::string_view y,
                                                       std::string_view z) {
    return textOf(gInvalidArgTypeIn3DVector, {x, y, z});
}

std::string BtExpMessages::getInvalidArgTypeIn2DVector(std::string_view x, std::string_view y) {
    return textOf(gInvalidArgTypeIn2DVector, {x, y});
}

std::string BtExpMessages::getCannotBuildValueNode(std::string_view text) {
    return textOf(gCannotBuildValueNode, {text});
}

std::string BtExpMessages::getCannotBuild3DVector(std::string_view x, std::string_view y,
                                                  std::string_view z) {
    return textOf(gCannotBuild3DVector, {x, y, z});
}

std::string BtExpMessages::getCannotBuild2DVector(std::string_view x, std::string_view y) {
    return textOf(gCannotBuild2DVector, {x, y});
}

std::string BtExpMessages::getCannotBuildConstValueNode() {
    return textOf(gCannotBuildConstValueNode, {});
}

std::string BtExpMessages::getCannotGetProcNode(std::string_view text) {
    return textOf(gCannotGetProcNode, {text});
}

std::string BtExpMessages::getUnknownNode(std::string_view name) {
    return textOf(gUnknownNode, {name});
}

std::string BtExpMessages::getUnsupportedSocketType(std::string_view typeName) {
    return textOf(gUnsupportedSocketType, {typeName});
}

std::string BtExpMessages::getReferenceLoop(std::string_view text) {
    return textOf(gReferenceLoop, {text});
}

void BtExpMessages::warnSourceMissing(std::string_view parameter, std::string_view text) {
    MsgWarning warning(gSourceMissing);
    warning.substitute(parameter).substitute(text);
    warning.display();
}

} // namespace Qv
