// Arguments: the words of one quorrin-cli command and the values they give; mistakes are returned.
#pragma once

#include "platform/instant.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quorrin::cli {

// A usage error: the message and the command whose help follows it.
struct UsageError {
    std::string message;
    std::string command;
};

// Either what the words gave or the usage error they make.
template <typename T>
class [[nodiscard]] Parsed {
public:
    Parsed(T value) : state_(std::in_place_index<0>, std::move(value)) {}
    Parsed(UsageError error) : state_(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return state_.index() == 0; }
    T& operator*() { return std::get<0>(state_); }
    const T& operator*() const { return std::get<0>(state_); }
    T* operator->() { return &std::get<0>(state_); }
    const UsageError& error() const { return std::get<1>(state_); }

private:
    std::variant<T, UsageError> state_;
};

// The words of one command: options (with their values) and the remaining operands. Every word
// after "--" is an operand, so that a file named "-x" or "--help" can be given.
class Words {
public:
    Words(std::vector<std::string> words, std::string command);

    // Takes the option `name` away; true when it was there.
    bool flag(const std::string& name);
    // Takes the option `name` and the word after it away; absent when the option is not there.
    Parsed<std::optional<std::string>> value(const std::string& name);
    // What is left once the options are taken: operands. An unknown option is a usage error.
    Parsed<std::vector<std::string>> operands() const;
    // The usage error of any word left over, or none.
    std::optional<UsageError> noOperands() const;

    UsageError error(std::string message) const { return {std::move(message), command_}; }

private:
    std::vector<std::string> words_;    // before "--": options and operands
    std::vector<std::string> literal_;  // after "--": operands only
    std::string command_;
};

// `text` as a whole number from `low` to `high`, given for `option` of `command`.
Parsed<std::int64_t> wholeNumber(const std::string& text, const std::string& option,
                                 const std::string& command, std::int64_t low, std::int64_t high);

// A day given as YYYY-MM-DD, as the instant of noon that day in local time.
Parsed<platform::Instant> localDay(const std::string& text, const std::string& option,
                                   const std::string& command);

}  // namespace quorrin::cli
