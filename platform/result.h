// Result<T>: either a value or an Error. Status is the value-less form.
#pragma once

#include "platform/error.h"

#include <cassert>
#include <utility>
#include <variant>

namespace quorrin::platform {

template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

    bool ok() const { return state_.index() == 0; }
    explicit operator bool() const { return ok(); }

    T& value() & {
        assert(ok());
        return std::get<0>(state_);
    }
    const T& value() const& {
        assert(ok());
        return std::get<0>(state_);
    }
    T&& value() && {
        assert(ok());
        return std::get<0>(std::move(state_));
    }
    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

    const Error& error() const {
        assert(!ok());
        return std::get<1>(state_);
    }

private:
    std::variant<T, Error> state_;
};

template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error error) : error_(std::move(error)), failed_(true) {}

    bool ok() const { return !failed_; }
    explicit operator bool() const { return ok(); }
    const Error& error() const {
        assert(failed_);
        return error_;
    }

private:
    Error error_;
    bool failed_ = false;
};

using Status = Result<void>;

}  // namespace quorrin::platform
