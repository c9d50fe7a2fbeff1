#pragma once

// What the world did wrong, as a value: a reason with its context. What we did wrong is an
// assertion (base/check.h). Nothing is thrown past a command handler.

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace tessaran::base {

enum class ErrorKind {
    io,        // a file could not be opened, read or written; `cause` says why
    format,    // the content is not what the format asks for; `line` says where
    range,     // a number or a count is outside what is accepted
    state,     // the operation does not fit the state of its object
    cancelled, // the user ended it
};

// Why a file operation failed, in the numbering of the classic file exceptions. The numbers are
// part of the behaviour: messages are cut by them.
enum class IoCause {
    none = 0,
    other = 1,
    notFound = 2,
    badPath = 3,
    tooManyOpenFiles = 4,
    accessDenied = 5, // no permission, or a folder
    diskFull = 13,
};

struct Error {
    ErrorKind kind = ErrorKind::format;
    std::string text{}; // the reason, one sentence
    std::string file{}; // path, where one is involved
    long line = 0;      // 1-based line of `file`; 0 means none
    IoCause cause = IoCause::none;

    // "FILE:LINE: reason", as much of it as is known.
    std::string message() const;
};

inline Error formatError(std::string text, std::string file = {}, long line = 0) {
    return Error{ErrorKind::format, std::move(text), std::move(file), line, IoCause::none};
}
inline Error rangeError(std::string text) {
    return Error{ErrorKind::range, std::move(text)};
}
inline Error stateError(std::string text) {
    return Error{ErrorKind::state, std::move(text)};
}
inline Error cancelledError(std::string text = "cancelled by the user") {
    return Error{ErrorKind::cancelled, std::move(text)};
}

// A value or the reason why there is none.
template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}     // NOLINT: implicit
    Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {} // NOLINT: implicit

    explicit operator bool() const { return state_.index() == 0; }
    bool ok() const { return state_.index() == 0; }

    T& value() & { return std::get<0>(state_); }
    const T& value() const& { return std::get<0>(state_); }
    T&& value() && { return std::get<0>(std::move(state_)); }
    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

    const Error& error() const { return std::get<1>(state_); }

  private:
    std::variant<T, Error> state_;
};

// Success without a value, or the reason why not.
template <>
class [[nodiscard]] Result<void> {
  public:
    Result() = default;
    Result(Error error) : error_(std::move(error)) {} // NOLINT: implicit

    explicit operator bool() const { return !error_; }
    bool ok() const { return !error_; }
    const Error& error() const { return *error_; }

  private:
    std::optional<Error> error_;
};

} // namespace tessaran::base
