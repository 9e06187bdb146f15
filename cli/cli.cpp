#include "cli/cli.h"

#include "cli/json_listing.h"
#include "cli/session.h"
#include "cli/usage.h"
#include "engine/calendar.h"
#include "engine/paths.h"
#include "store/file_list.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <set>

namespace quorrin::cli {
namespace {

using Engine::Entry;

// A usage error: the message and the command whose help follows it.
struct UsageError {
    std::string message;
    std::string command;
};

// The words of one command: options (with their values) and the remaining operands. Every word
// after "--" is an operand, so that a file named "-x" or "--help" can be given.
class Words {
public:
    Words(std::vector<std::string> words, std::string command) : command_(std::move(command)) {
        auto end = std::find(words.begin(), words.end(), std::string("--"));
        if (end != words.end())
            literal_.assign(end + 1, words.end());
        words_.assign(words.begin(), end);
    }

    bool flag(const std::string& name) {
        auto found = std::find(words_.begin(), words_.end(), name);
        if (found == words_.end())
            return false;
        words_.erase(found);
        return true;
    }
    std::optional<std::string> value(const std::string& name) {
        auto found = std::find(words_.begin(), words_.end(), name);
        if (found == words_.end())
            return std::nullopt;
        if (found + 1 == words_.end())
            throw UsageError{name + " needs a value", command_};
        std::string value = *(found + 1);
        words_.erase(found, found + 2);
        return value;
    }
    // What is left once the options are taken: operands. An unknown option is a usage error.
    std::vector<std::string> operands() {
        for (const std::string& word : words_)
            if (word.size() > 1 && word.front() == '-')
                throw UsageError{"unknown option " + word, command_};
        std::vector<std::string> all = words_;
        all.insert(all.end(), literal_.begin(), literal_.end());
        return all;
    }
    void noOperands() {
        if (auto rest = operands(); !rest.empty())
            throw UsageError{"unexpected argument " + rest.front(), command_};
    }

private:
    std::vector<std::string> words_;    // before "--": options and operands
    std::vector<std::string> literal_;  // after "--": operands only
    std::string command_;
};

std::string absolute(const std::string& path) {
    if (!path.empty() && path.front() == '/')
        return Engine::standardise(path);
    return Engine::standardise(std::filesystem::current_path().string() + "/" + path);
}

std::int64_t wholeNumber(const std::string& text, const std::string& option,
                         const std::string& command, std::int64_t low, std::int64_t high) {
    std::size_t used = 0;
    long long number = 0;
    try {
        number = std::stoll(text, &used);
    } catch (...) {
        used = 0;
    }
    if (used == 0 || used != text.size() || number < low || number > high)
        throw UsageError{option + " takes a whole number from " + std::to_string(low) + " to " +
                             std::to_string(high),
                         command};
    return number;
}

// A day given as YYYY-MM-DD, as the instant of noon that day in local time.
platform::Instant localDay(const std::string& text, const std::string& option,
                           const std::string& command) {
    int year = 0, month = 0, day = 0;
    char tail = 0;
    if (text.size() != 10 ||
        std::sscanf(text.c_str(), "%4d-%2d-%2d%c", &year, &month, &day, &tail) != 3)
        throw UsageError{option + " takes a day as YYYY-MM-DD", command};
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = 12;
    fields.tm_isdst = -1;
    std::tm normalised = fields;
    std::time_t seconds = std::mktime(&normalised);
    if (seconds == -1 || normalised.tm_mday != day || normalised.tm_mon != month - 1)
        throw UsageError{text + " is not a day of the calendar", command};
    return platform::Instant(std::chrono::seconds(seconds));
}

class Runner {
public:
    Runner(const CliContext& context, std::ostream& out, std::ostream& err)
        : context_(context), out_(out), err_(err) {}

    int run(std::vector<std::string> arguments) {
        if (arguments.empty())
            throw UsageError{"a command is needed", ""};
        const std::string command = arguments.front();
        Words words({arguments.begin() + 1, arguments.end()}, command);
        if (command == "--help" || command == "help") {
            out_ << usageText(arguments.size() > 1 ? arguments[1] : "");
            return 0;
        }
        static const std::set<std::string> known = {"folders", "scan",  "start", "undo",   "keep",
                                                    "unkeep",  "clear", "older", "review", "list"};
        if (!known.contains(command))
            throw UsageError{"unknown command " + command, ""};
        if (words.flag("--help") || words.flag("-h")) {
            out_ << usageText(command);
            return 0;
        }
        if (command == "folders")
            return folders(words);
        if (command == "scan")
            return scan(words);
        if (command == "start")
            return start(words);
        if (command == "undo")
            return undo(words);
        if (command == "keep" || command == "unkeep")
            return keep(words, command == "keep");
        if (command == "clear")
            return clear(words);
        if (command == "older")
            return older(words);
        if (command == "review")
            return review(words);
        return list(words);
    }

private:
    Session& session() {
        if (!session_)
            session_ = std::make_unique<Session>(context_, err_);
        return *session_;
    }
    store::Store& store() { return session().store(); }

    // Action commands print every line the operation logged, oldest first, to standard output.
    int reportAction() {
        session().finish();
        bool couldNotRun = false;
        for (const std::string& line : session().takeNewLines()) {
            out_ << line << '\n';
            couldNotRun = couldNotRun || line == store::lockBusyMessage;
        }
        return couldNotRun ? 1 : 0;
    }

    // Listing commands print the files to standard output and the scan's lines to standard error.
    int reportListing(const std::vector<Entry>& entries, bool json) {
        for (const std::string& line : session().takeNewLines())
            err_ << line << '\n';
        if (json) {
            out_ << jsonListing(entries) << '\n';
        } else {
            for (const Entry& entry : entries)
                out_ << entry.url << '\n';
        }
        return 0;
    }

    int folders(Words& words) {
        const bool json = words.flag("--json");
        std::vector<std::string> operands = words.operands();
        if (operands.empty()) {
            const auto& roots = store().roots();
            if (json)
                out_ << jsonStrings(roots) << '\n';
            else
                for (const std::string& root : roots)
                    out_ << root << '\n';
            return 0;
        }
        const std::string sub = operands.front();
        std::vector<std::string> paths(operands.begin() + 1, operands.end());
        if ((sub != "add" && sub != "remove") || paths.empty())
            throw UsageError{sub == "add" || sub == "remove" ? sub + " needs at least one PATH"
                                                             : "unknown subcommand " + sub,
                             "folders"};
        for (std::string& path : paths)
            path = absolute(path);
        if (sub == "add")
            store().addFolders(paths);
        else
            store().removeFolders(paths);
        return reportAction();
    }

    int scan(Words& words) {
        store::ScanChoice choice{.duplicates = words.flag("--duplicates"),
                                 .health = words.flag("--health"),
                                 .usageDates = words.flag("--usage")};
        words.noOperands();
        if (int(choice.duplicates) + int(choice.health) + int(choice.usageDates) > 1)
            throw UsageError{"choose one of --duplicates, --health and --usage", "scan"};
        store().scan(choice);
        return reportAction();
    }

    int start(Words& words) {
        const bool keepDuplicates = words.flag("--keep-duplicates");
        words.noOperands();
        store().setAutoDuplicates(!keepDuplicates);
        store().scan({.organize = true});
        return reportAction();
    }

    int undo(Words& words) {
        words.noOperands();
        store().undo();
        return reportAction();
    }

    int keep(Words& words, bool keeping) {
        std::vector<std::string> paths = words.operands();
        if (paths.empty())
            throw UsageError{"at least one PATH is needed", keeping ? "keep" : "unkeep"};
        for (const std::string& given : paths) {
            const std::string path = absolute(given);
            Entry entry{.url = path};
            if (keeping) {
                auto info = context_.platform.stat(path, false);
                if (!info) {
                    err_ << "quorrin-cli: " << given << ": " << info.error().description << '\n';
                    continue;
                }
                store().keep(entry);
            } else {
                store().unkeep(entry);
            }
        }
        return reportAction();
    }

    int clear(Words& words) {
        const bool duplicates = words.flag("--duplicates");
        std::vector<std::string> paths = words.operands();
        if (paths.empty())
            throw UsageError{"at least one PATH is needed", "clear"};
        store().scan({.duplicates = duplicates});
        session().finish();
        std::vector<Entry> chosen;
        for (const std::string& given : paths) {
            const std::string path = absolute(given);
            auto found = std::find_if(store().files().begin(), store().files().end(),
                                      [&](const Entry& e) { return e.id() == path; });
            if (found == store().files().end())
                err_ << "quorrin-cli: " << given << ": not a file in the connected folders\n";
            else
                chosen.push_back(*found);
        }
        store().clear(chosen, duplicates);
        return reportAction();
    }

    int older(Words& words) {
        const bool json = words.flag("--json");
        Engine::OlderQuery query{.months = 24,
                                 .mode = Engine::OlderMatch::older,
                                 .basis = Engine::FileDateBasis::created};
        if (auto basis = words.value("--basis")) {
            if (*basis == "created")
                query.basis = Engine::FileDateBasis::created;
            else if (*basis == "modified")
                query.basis = Engine::FileDateBasis::modified;
            else
                throw UsageError{"--basis takes created or modified", "older"};
        }
        auto olderThan = words.value("--older-than");
        auto during = words.value("--during");
        auto from = words.value("--from");
        auto through = words.value("--through");
        words.noOperands();
        const int modes = int(olderThan.has_value()) + int(during.has_value()) +
                          int(from.has_value() || through.has_value());
        if (modes > 1)
            throw UsageError{"choose one of --older-than, --during and --from/--through", "older"};
        if (olderThan)
            query.months = wholeNumber(*olderThan, "--older-than", "older", 0, 100000);
        if (during) {
            query.mode = Engine::OlderMatch::around;
            query.months = wholeNumber(*during, "--during", "older", 0, 100000);
        }
        if (from || through) {
            if (!from || !through)
                throw UsageError{"--from and --through go together", "older"};
            query.mode = Engine::OlderMatch::custom;
            query.from = localDay(*from, "--from", "older");
            query.through = localDay(*through, "--through", "older");
            if (query.from > query.through)
                err_ << "From date must be before or equal to Through date.\n";
        }
        store().scanOlder();
        session().finish();
        return reportListing(visibleOn({.page = store::Page::findOlder, .olderQuery = query}),
                             json);
    }

    int review(Words& words) {
        const bool json = words.flag("--json");
        const bool done = words.flag("--done");
        auto weeks = words.value("--weeks");
        words.noOperands();
        if (weeks)
            store().setWeeks(wholeNumber(*weeks, "--weeks", "review", 1, 52));
        if (done) {
            store().markReviewDone();
            return reportAction();
        }
        store().scan({.usageDates = true});
        session().finish();
        return reportListing(visibleOn({.page = store::Page::downloadsReview}), json);
    }

    int list(Words& words) {
        const bool json = words.flag("--json");
        store::ListView view;
        static const std::map<std::string, store::Page> pages = {
            {"all", store::Page::allFiles},
            {"duplicates", store::Page::duplicates},
            {"review", store::Page::downloadsReview},
            {"health", store::Page::fileHealth},
            {"kept", store::Page::keptFiles}};
        if (auto page = words.value("--page")) {
            auto found = pages.find(*page);
            if (found == pages.end())
                throw UsageError{"--page takes all, duplicates, review, health or kept", "list"};
            view.page = found->second;
        }
        if (auto search = words.value("--search"))
            view.query = *search;
        if (auto type = words.value("--type"))
            view.filter = typeValue(*type);
        if (auto signal = words.value("--signal"))
            view.issueFilter = signalValue(*signal);
        words.noOperands();
        store().scan({.duplicates = view.page == store::Page::duplicates,
                      .health = view.page == store::Page::fileHealth,
                      .usageDates = view.page == store::Page::downloadsReview});
        session().finish();
        return reportListing(visibleOn(view), json);
    }

    static std::string typeValue(const std::string& given) {
        for (const store::TypeOption& option : store::typeOptions())
            if (given == option.value || given == option.label)
                return option.value;
        throw UsageError{"--type takes a category such as \"02 Images\" or Images", "list"};
    }

    static std::string signalValue(const std::string& given) {
        for (const store::SignalOption& option : store::signalOptions())
            if (given == option.value || given == option.label)
                return option.value;
        throw UsageError{"--signal takes Unreadable, Empty or Executable", "list"};
    }

    std::vector<Entry> visibleOn(const store::ListView& view) {
        store::Store& s = store();
        return store::visible(store::ListSource{s.files(), s.olderFiles(), s.kept(), s.weeks()},
                              view, context_.platform.now(), Engine::Calendar::current());
    }

    const CliContext& context_;
    std::ostream& out_;
    std::ostream& err_;
    std::unique_ptr<Session> session_;
};

}  // namespace

int runCli(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err,
           const CliContext& context) {
    try {
        return Runner(context, out, err).run(arguments);
    } catch (const UsageError& usage) {
        err << "quorrin-cli: " << usage.message << "\n\n" << usageText(usage.command);
        return 2;
    }
}

}  // namespace quorrin::cli
