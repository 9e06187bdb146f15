// The quorrin-cli commands: each reads its words, runs one Store operation and prints the result.
#include "cli/cli.h"

#include "cli/arguments.h"
#include "cli/json_listing.h"
#include "cli/session.h"
#include "cli/start_plan_text.h"
#include "cli/stop_signals.h"
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

std::string absolute(const std::string& path) {
    if (!path.empty() && path.front() == '/')
        return Engine::standardise(path);
    return Engine::standardise(std::filesystem::current_path().string() + "/" + path);
}

// What a command gives back: its exit status, or the usage error that kept it from running.
using Status = Parsed<int>;

class Runner {
public:
    Runner(const CliContext& context, std::ostream& out, std::ostream& err)
        : context_(context), out_(out), err_(err) {}

    Status run(std::vector<std::string> arguments) {
        if (arguments.empty())
            return UsageError{"a command is needed", ""};
        const std::string command = arguments.front();
        Words words({arguments.begin() + 1, arguments.end()}, command);
        if (command == "--help" || command == "help") {
            out_ << usageText(arguments.size() > 1 ? arguments[1] : "");
            return 0;
        }
        static const std::set<std::string> known = {"folders", "scan",   "start", "undo",
                                                    "keep",    "unkeep", "clear", "older",
                                                    "review",  "list",   "cache"};
        if (!known.contains(command))
            return UsageError{"unknown command " + command, ""};
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
        if (command == "cache")
            return cache(words);
        return list(words);
    }

private:
    Session& session() {
        if (!session_)
            session_ = std::make_unique<Session>(context_, err_);
        return *session_;
    }
    store::Store& store() { return session().store(); }

    // Action commands print every line the operation logged, oldest first, to standard output,
    // except a settings write that failed, which goes to standard error. The command failed when
    // another Quorrin held the undo history, or when its change could not be saved.
    int reportAction() {
        session().finish();
        for (const std::string& line : session().takeNewLines())
            (line.starts_with(store::settingsNotSavedText) ? err_ : out_) << line << '\n';
        return exitStatus();
    }

    int exitStatus() { return store().stopped() ? stoppedStatus : failed() ? 1 : 0; }

    bool failed() { return store().refusedByHistoryLock() || store().settingsNotSaved(); }

    // Listing commands print the files to standard output and the scan's lines to standard error.
    int reportListing(const std::vector<Entry>& entries, bool json) {
        for (const std::string& line : session().takeNewLines())
            err_ << line << '\n';
        if (store().stopped())
            return stoppedStatus;  // the list would be the one before the stopped scan
        if (json) {
            out_ << jsonListing(entries) << '\n';
        } else {
            for (const Entry& entry : entries)
                out_ << entry.url << '\n';
        }
        return failed() ? 1 : 0;
    }

    Status folders(Words& words) {
        const bool json = words.flag("--json");
        auto operands = words.operands();
        if (!operands)
            return operands.error();
        if (operands->empty()) {
            const auto& roots = store().roots();
            if (json)
                out_ << jsonStrings(roots) << '\n';
            else
                for (const std::string& root : roots)
                    out_ << root << '\n';
            return 0;
        }
        const std::string sub = operands->front();
        std::vector<std::string> paths(operands->begin() + 1, operands->end());
        if ((sub != "add" && sub != "remove") || paths.empty())
            return words.error(sub == "add" || sub == "remove" ? sub + " needs at least one PATH"
                                                               : "unknown subcommand " + sub);
        for (std::string& path : paths)
            path = absolute(path);
        if (sub == "add")
            store().addFolders(paths);
        else
            store().removeFolders(paths);
        return reportAction();
    }

    Status scan(Words& words) {
        store::ScanChoice choice{.duplicates = words.flag("--duplicates"),
                                 .health = words.flag("--health"),
                                 .usageDates = words.flag("--usage")};
        const bool noCache = words.flag("--no-cache");
        if (auto wrong = words.noOperands())
            return *wrong;
        if (int(choice.duplicates) + int(choice.health) + int(choice.usageDates) > 1)
            return words.error("choose one of --duplicates, --health and --usage");
        store().setUseResultsCache(!noCache);
        store().scan(choice);
        return reportAction();
    }

    Status start(Words& words) {
        const bool keepDuplicates = words.flag("--keep-duplicates");
        const bool dryRun = words.flag("--dry-run");
        const bool json = words.flag("--json");
        const bool noCache = words.flag("--no-cache");
        if (auto wrong = words.noOperands())
            return *wrong;
        if (json && !dryRun)
            return words.error("--json goes with --dry-run");
        store().setUseResultsCache(!noCache);
        store().setAutoDuplicates(!keepDuplicates);
        if (dryRun)
            return preview(json);
        store().scan({.organize = true});
        return reportAction();
    }

    // Empties the results cache; --clear is the only thing it does.
    Status cache(Words& words) {
        const bool clear = words.flag("--clear");
        if (auto wrong = words.noOperands())
            return *wrong;
        if (!clear)
            return words.error("cache needs --clear");
        store().forgetCachedResults();
        return reportAction();
    }

    // Prints what Start would do, changing nothing: the plan, then the summary Start would log.
    // The scan's own lines go to standard error.
    int preview(bool json) {
        store().previewStart();
        session().finish();
        for (const std::string& line : session().takeNewLines())
            err_ << line << '\n';
        const auto& plan = store().startPlan();
        if (store().stopped())
            return stoppedStatus;
        if (!plan)
            return 1;
        if (json) {
            out_ << jsonPlan(*plan) << '\n';
            return 0;
        }
        for (const store::StartAction* action : plan->shown())
            out_ << planLine(*action) << '\n';
        out_ << plan->summary() << '\n';
        return 0;
    }

    Status undo(Words& words) {
        if (auto wrong = words.noOperands())
            return *wrong;
        store().undo();
        return reportAction();
    }

    Status keep(Words& words, bool keeping) {
        auto paths = words.operands();
        if (!paths)
            return paths.error();
        if (paths->empty())
            return words.error("at least one PATH is needed");
        for (const std::string& given : *paths) {
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

    Status clear(Words& words) {
        const bool duplicates = words.flag("--duplicates");
        auto paths = words.operands();
        if (!paths)
            return paths.error();
        if (paths->empty())
            return words.error("at least one PATH is needed");
        store().scan({.duplicates = duplicates});
        session().finish();
        std::vector<Entry> chosen;
        for (const std::string& given : *paths) {
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

    Status older(Words& words) {
        const bool json = words.flag("--json");
        Engine::OlderQuery query{.months = 24,
                                 .mode = Engine::OlderMatch::older,
                                 .basis = Engine::FileDateBasis::created};
        auto basis = words.value("--basis");
        if (!basis)
            return basis.error();
        if (*basis) {
            if (**basis == "created")
                query.basis = Engine::FileDateBasis::created;
            else if (**basis == "modified")
                query.basis = Engine::FileDateBasis::modified;
            else
                return words.error("--basis takes created or modified");
        }
        std::optional<std::string> olderThan, during, from, through;
        for (auto [name, value] :
             {std::pair{"--older-than", &olderThan}, std::pair{"--during", &during},
              std::pair{"--from", &from}, std::pair{"--through", &through}}) {
            auto given = words.value(name);
            if (!given)
                return given.error();
            *value = *given;
        }
        if (auto wrong = words.noOperands())
            return *wrong;
        const int modes = int(olderThan.has_value()) + int(during.has_value()) +
                          int(from.has_value() || through.has_value());
        if (modes > 1)
            return words.error("choose one of --older-than, --during and --from/--through");
        if (olderThan || during) {
            const char* option = olderThan ? "--older-than" : "--during";
            auto months = wholeNumber(olderThan ? *olderThan : *during, option, "older", 0, 100000);
            if (!months)
                return months.error();
            query.months = *months;
            if (during)
                query.mode = Engine::OlderMatch::around;
        }
        if (from || through) {
            if (!from || !through)
                return words.error("--from and --through go together");
            auto first = localDay(*from, "--from", "older");
            if (!first)
                return first.error();
            auto last = localDay(*through, "--through", "older");
            if (!last)
                return last.error();
            query.mode = Engine::OlderMatch::custom;
            query.from = *first;
            query.through = *last;
            if (query.from > query.through)
                err_ << "From date must be before or equal to Through date.\n";
        }
        store().scanOlder();
        session().finish();
        return reportListing(visibleOn({.page = store::Page::findOlder, .olderQuery = query}),
                             json);
    }

    Status review(Words& words) {
        const bool json = words.flag("--json");
        const bool done = words.flag("--done");
        auto weeks = words.value("--weeks");
        if (!weeks)
            return weeks.error();
        if (auto wrong = words.noOperands())
            return *wrong;
        if (*weeks) {
            auto number = wholeNumber(**weeks, "--weeks", "review", 1, 52);
            if (!number)
                return number.error();
            store().setWeeks(*number);
        }
        if (done) {
            store().markReviewDone();
            return reportAction();
        }
        store().scan({.usageDates = true});
        session().finish();
        return reportListing(visibleOn({.page = store::Page::downloadsReview}), json);
    }

    Status list(Words& words) {
        const bool json = words.flag("--json");
        store::ListView view;
        static const std::map<std::string, store::Page> pages = {
            {"all", store::Page::allFiles},
            {"duplicates", store::Page::duplicates},
            {"review", store::Page::downloadsReview},
            {"health", store::Page::fileHealth},
            {"kept", store::Page::keptFiles}};
        auto page = words.value("--page");
        if (!page)
            return page.error();
        if (*page) {
            auto found = pages.find(**page);
            if (found == pages.end())
                return words.error("--page takes all, duplicates, review, health or kept");
            view.page = found->second;
        }
        auto search = words.value("--search");
        if (!search)
            return search.error();
        if (*search)
            view.query = **search;
        auto type = words.value("--type");
        if (!type)
            return type.error();
        if (*type) {
            auto value = typeValue(**type);
            if (!value)
                return words.error("--type takes a category such as \"02 Images\" or Images");
            view.filter = *value;
        }
        auto signal = words.value("--signal");
        if (!signal)
            return signal.error();
        if (*signal) {
            auto value = signalValue(**signal);
            if (!value)
                return words.error("--signal takes Unreadable, Empty or Executable");
            view.issueFilter = *value;
        }
        if (auto wrong = words.noOperands())
            return *wrong;
        store().scan({.duplicates = view.page == store::Page::duplicates,
                      .health = view.page == store::Page::fileHealth,
                      .usageDates = view.page == store::Page::downloadsReview});
        session().finish();
        return reportListing(visibleOn(view), json);
    }

    static std::optional<std::string> typeValue(const std::string& given) {
        for (const store::TypeOption& option : store::typeOptions())
            if (given == option.value || given == option.label)
                return option.value;
        return std::nullopt;
    }

    static std::optional<std::string> signalValue(const std::string& given) {
        for (const store::SignalOption& option : store::signalOptions())
            if (given == option.value || given == option.label)
                return option.value;
        return std::nullopt;
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
    Status status = Runner(context, out, err).run(arguments);
    if (status)
        return *status;
    err << "quorrin-cli: " << status.error().message << "\n\n" << usageText(status.error().command);
    return 2;
}

}  // namespace quorrin::cli
