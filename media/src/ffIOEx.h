#pragma once
// Failures of file formats and image files. Every reason names the file and
// says what went wrong, with what the image library reported when it did;
// the texts come from the catalogue "fileFormat.msg" (subscribed by the
// package "media"), or stay plain English before it is open.
#include "exBase.h"

#include <string>

namespace Qv {

class MsgSubscription;

class FfIOEx : public ExBase {
public:
    FfIOEx(char const* file, int line, std::string fileName, std::string detail);
    QV_EX_CLONE_RAISE(FfIOEx)

    std::string const& getFileName() const { return _fileName; }
    // What the image library or the check said, without the file name.
    std::string const& getDetail() const { return _detail; }

    // No format of this system has the file's extension, or the file is not
    // of the kind asked for.
    class ExUnknownFormat;
    // The file is not there.
    class ExFileNotFound;
    // The file ends before all its pixels, or it was closed before all its rows were written.
    class ExIncompleteFile;
    // The file is all there, but its data does not decode: damaged.
    class ExCorruptFile;
    // The format cannot do what was asked (write a read-only format, a
    // mismatch of formats, blocks out of order).
    class ExOpNotSupported;
    // The file could not be read or written for another reason.
    class ExReadError;
    class ExWriteError;
    // Format options that the format does not know or a value out of range.
    class ExBadOptions;

    // Resolves the family's messages in the open catalogues.
    static void subscribeMessages();

protected:
    FfIOEx(char const* file, int line, MsgSubscription const& message, std::string fileName,
           std::string detail);

private:
    std::string _fileName;
    std::string _detail;
};

#define QV_FF_IO_EX(Name)                                                                                    \
    class FfIOEx::Name : public FfIOEx {                                                                     \
    public:                                                                                                  \
        Name(char const* file, int line, std::string fileName, std::string detail = {});                     \
        QV_EX_CLONE_RAISE(Name)                                                                              \
    }
QV_FF_IO_EX(ExUnknownFormat);
QV_FF_IO_EX(ExFileNotFound);
QV_FF_IO_EX(ExIncompleteFile);
QV_FF_IO_EX(ExCorruptFile);
QV_FF_IO_EX(ExOpNotSupported);
QV_FF_IO_EX(ExReadError);
QV_FF_IO_EX(ExWriteError);
QV_FF_IO_EX(ExBadOptions);
#undef QV_FF_IO_EX

} // namespace Qv
