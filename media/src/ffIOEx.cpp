#include "ffIOEx.h"

#include "msgError.h"
#include "msgServer.h"
#include "msgSubscription.h"

namespace Qv {

namespace {

struct Message {
    MsgSubscription subscription;
    // The text while the catalogue is not open (a tool run before the packages start).
    char const* fallback;
};

Message gIOError{MsgSubscription("MSG_FF_IO_ERROR"), "%1%2"};
Message gUnknownFormat{MsgSubscription("MSG_FF_UNKNOWN_FORMAT"), "%1: unknown file format%2"};
Message gFileNotFound{MsgSubscription("MSG_FF_FILE_NOT_FOUND"), "%1: no such file%2"};
Message gIncompleteFile{MsgSubscription("MSG_FF_INCOMPLETE_FILE"), "%1: the file is incomplete%2"};
Message gCorruptFile{MsgSubscription("MSG_FF_CORRUPT_FILE"), "%1: the file is damaged%2"};
Message gOpNotSupported{MsgSubscription("MSG_FF_OP_NOT_SUPPORTED"), "%1: operation not supported%2"};
Message gReadError{MsgSubscription("MSG_FF_READ_ERROR"), "%1: cannot read the file%2"};
Message gWriteError{MsgSubscription("MSG_FF_WRITE_ERROR"), "%1: cannot write the file%2"};
Message gBadOptions{MsgSubscription("MSG_FF_BAD_OPTIONS"), "%1: bad format options%2"};

// The detail follows the message after ": " when there is one.
std::string compose(Message const& message, std::string const& fileName, std::string const& detail) {
    std::string const tail = detail.empty() ? std::string() : ": " + detail;
    if (message.subscription.isSubscribed())
        return MsgError(message.subscription).substitute(fileName).substitute(tail).getText();
    std::string text = message.fallback;
    text.replace(text.find("%1"), 2, fileName);
    text.replace(text.find("%2"), 2, tail);
    return text;
}

Message const& find(MsgSubscription const& subscription) {
    for (Message const* message : {&gIOError, &gUnknownFormat, &gFileNotFound, &gIncompleteFile,
                                   &gCorruptFile, &gOpNotSupported, &gReadError, &gWriteError, &gBadOptions})
        if (&message->subscription == &subscription)
            return *message;
    return gIOError;
}

} // namespace

FfIOEx::FfIOEx(char const* file, int line, std::string fileName, std::string detail)
    : FfIOEx(file, line, gIOError.subscription, std::move(fileName), std::move(detail)) {}

FfIOEx::FfIOEx(char const* file, int line, MsgSubscription const& message, std::string fileName,
               std::string detail)
    : ExBase(file, line, compose(find(message), fileName, detail)), _fileName(std::move(fileName)),
      _detail(std::move(detail)) {}

void FfIOEx::subscribeMessages() {
    for (Message* message : {&gIOError, &gUnknownFormat, &gFileNotFound, &gIncompleteFile, &gCorruptFile,
                             &gOpNotSupported, &gReadError, &gWriteError, &gBadOptions})
        MsgServer::getInstance().subscribe(message->subscription);
}

#define QV_FF_IO_EX_DEFINE(Name, message)                                                                    \
    FfIOEx::Name::Name(char const* file, int line, std::string fileName, std::string detail)                 \
        : FfIOEx(file, line, message.subscription, std::move(fileName), std::move(detail)) {}
QV_FF_IO_EX_DEFINE(ExUnknownFormat, gUnknownFormat)
QV_FF_IO_EX_DEFINE(ExFileNotFound, gFileNotFound)
QV_FF_IO_EX_DEFINE(ExIncompleteFile, gIncompleteFile)
QV_FF_IO_EX_DEFINE(ExCorruptFile, gCorruptFile)
QV_FF_IO_EX_DEFINE(ExOpNotSupported, gOpNotSupported)
QV_FF_IO_EX_DEFINE(ExReadError, gReadError)
QV_FF_IO_EX_DEFINE(ExWriteError, gWriteError)
QV_FF_IO_EX_DEFINE(ExBadOptions, gBadOptions)
#undef QV_FF_IO_EX_DEFINE

} // namespace Qv
