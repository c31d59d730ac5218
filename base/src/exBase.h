#pragma once
// Root of every exception of the system: a reason text plus the source
// position that raised it. clone() and raise() let a caught exception be kept
// (for instance across threads) and thrown again with its dynamic type.
#include <exception>
#include <memory>
#include <string>

namespace Qv {

template <class T>
using OPtr = std::unique_ptr<T>;
// Passes sole ownership out of a factory.
template <class T>
using OPtrRet = std::unique_ptr<T>;
// Sole owner of an array.
template <class T>
using APtrRet = std::unique_ptr<T[]>;

class ExBase : public std::exception {
public:
    ExBase(char const* file, int line, std::string reason);
    ~ExBase() override;

    char const* what() const noexcept override { return _reason.c_str(); }
    virtual std::string const& getReason() const { return _reason; }
    virtual std::string const& getFile() const { return _file; }
    virtual int getLine() const { return _line; }

    virtual OPtrRet<ExBase> clone() const;
    [[noreturn]] virtual void raise() const;

protected:
    void setReason(std::string reason) { _reason = std::move(reason); }

private:
    std::string _file;
    int _line;
    std::string _reason;
};

} // namespace Qv

// Gives a class derived from ExBase the clone and raise of its own dynamic type.
#define QV_EX_CLONE_RAISE(Class)                                                                             \
    ::Qv::OPtrRet<::Qv::ExBase> clone() const override {                                                     \
        return std::make_unique<Class>(*this);                                                               \
    }                                                                                                        \
    [[noreturn]] void raise() const override {                                                               \
        throw *this;                                                                                         \
    }

// Declares `Name` derived from `Base` with ExBase's constructor.
#define QV_DECLARE_EX(Name, Base)                                                                            \
    class Name : public Base {                                                                               \
    public:                                                                                                  \
        using Base::Base;                                                                                    \
        QV_EX_CLONE_RAISE(Name)                                                                              \
    }
