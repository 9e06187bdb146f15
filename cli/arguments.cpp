// Arguments: splits a command's words into options and operands and reads numbers and days.
#include "cli/arguments.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace quorrin::cli {

Words::Words(std::vector<std::string> words, std::string command) : command_(std::move(command)) {
    auto end = std::find(words.begin(), words.end(), std::string("--"));
    if (end != words.end())
        literal_.assign(end + 1, words.end());
    words_.assign(words.begin(), end);
}

bool Words::flag(const std::string& name) {
    auto found = std::find(words_.begin(), words_.end(), name);
    if (found == words_.end())
        return false;
    words_.erase(found);
    return true;
}

Parsed<std::optional<std::string>> Words::value(const std::string& name) {
    auto found = std::find(words_.begin(), words_.end(), name);
    if (found == words_.end())
        return std::optional<std::string>();
    if (found + 1 == words_.end())
        return error(name + " needs a value");
    std::string value = *(found + 1);
    words_.erase(found, found + 2);
    return std::optional<std::string>(std::move(value));
}

Parsed<std::vector<std::string>> Words::operands() const {
    for (const std::string& word : words_)
        if (word.size() > 1 && word.front() == '-')
            return error("unknown option " + word);
    std::vector<std::string> all = words_;
    all.insert(all.end(), literal_.begin(), literal_.end());
    return all;
}

std::optional<UsageError> Words::noOperands() const {
    auto rest = operands();
    if (!rest)
        return rest.error();
    if (!rest->empty())
        return error("unexpected argument " + rest->front());
    return std::nullopt;
}

Parsed<std::int64_t> wholeNumber(const std::string& text, const std::string& option,
                                 const std::string& command, std::int64_t low, std::int64_t high) {
    std::size_t used = 0;
    long long number = 0;
    try {
        number = std::stoll(text, &used);
    } catch (...) {
        used = 0;
    }
    if (used == 0 || used != text.size() || number < low || number > high)
        return UsageError{option + " takes a whole number from " + std::to_string(low) + " to " +
                              std::to_string(high),
                          command};
    return std::int64_t(number);
}

Parsed<platform::Instant> localDay(const std::string& text, const std::string& option,
                                   const std::string& command) {
    int year = 0, month = 0, day = 0;
    char tail = 0;
    if (text.size() != 10 ||
        std::sscanf(text.c_str(), "%4d-%2d-%2d%c", &year, &month, &day, &tail) != 3)
        return UsageError{option + " takes a day as YYYY-MM-DD", command};
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = 12;
    fields.tm_isdst = -1;
    std::tm normalised = fields;
    std::time_t seconds = std::mktime(&normalised);
    if (seconds == -1 || normalised.tm_mday != day || normalised.tm_mon != month - 1)
        return UsageError{text + " is not a day of the calendar", command};
    return platform::Instant(std::chrono::seconds(seconds));
}

}  // namespace quorrin::cli
