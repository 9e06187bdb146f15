// The help text of quorrin-cli and of each of its commands.
#include "cli/usage.h"

#include <map>

namespace quorrin::cli {

const std::string& usageText(const std::string& command) {
    static const std::map<std::string, std::string> texts = {
        {"",
         "Usage: quorrin-cli COMMAND [OPTIONS]\n"
         "\n"
         "Keeps your connected folders in order. Nothing is deleted outright, nothing "
         "overwritten.\n"
         "\n"
         "Commands:\n"
         "  folders [add PATH... | remove PATH...]   show, connect or disconnect folders\n"
         "  scan [--duplicates | --health | --usage] [--no-cache]\n"
         "                                           scan the connected folders\n"
         "  start [--keep-duplicates] [--dry-run] [--no-cache]\n"
         "                                           arrange loose files (and trash duplicates)\n"
         "  undo                                     put back the files arrangements moved\n"
         "  keep PATH... / unkeep PATH...            protect files from arrangement and cleaning\n"
         "  clear [--duplicates] PATH...             send files to the Trash after re-checking\n"
         "  older [--basis ...] [--older-than M | --during M | --from D --through D]\n"
         "                                           find files by date, changing nothing\n"
         "  review [--weeks N] [--done]              list Downloads files unused for N weeks\n"
         "  list [--page ...] [--search TEXT] [--type CATEGORY] [--signal SIGNAL]\n"
         "                                           a page's files, filtered and sorted by name\n"
         "  cache --clear                            forget the cached digests and findings\n"
         "\n"
         "Listing commands (folders, older, review, list) print one path per line, or a JSON\n"
         "array with --json. Run 'quorrin-cli COMMAND --help' for a command's options.\n"},
        {"folders",
         "Usage: quorrin-cli folders [--json]\n"
         "       quorrin-cli folders add PATH...\n"
         "       quorrin-cli folders remove PATH...\n"
         "\n"
         "Without a subcommand, prints the connected folders, one path per line. 'add' connects\n"
         "folders by the rules of Add folder (personal folders below your home folder, not inside\n"
         "app, system or project folders; a folder already covered is skipped, folders inside a\n"
         "new one are replaced by it). 'remove' disconnects folders.\n"},
        {"scan",
         "Usage: quorrin-cli scan [--duplicates | --health | --usage] [--no-cache]\n"
         "\n"
         "Quick scan of the connected folders; --duplicates compares file content (Check\n"
         "duplicates), --health checks images, PDFs, empty files and installers (Check health),\n"
         "--usage reads last-used dates (Check usage). Prints what the scan reported.\n"
         "\n"
         "Digests and findings of unchanged files are taken from the results cache and new ones\n"
         "kept there; --no-cache reads and checks every file and leaves the cache as it is.\n"},
        {"cache",
         "Usage: quorrin-cli cache --clear\n"
         "\n"
         "Forgets the cached digests and health findings, so that the next check reads every\n"
         "file again.\n"},
        {"start",
         "Usage: quorrin-cli start [--keep-duplicates] [--dry-run [--json]] [--no-cache]\n"
         "\n"
         "Scans, sends exact duplicates to the Trash (unless --keep-duplicates), and moves the\n"
         "loose files of each connected folder into its numbered category folders, recording "
         "every\n"
         "move so that 'quorrin-cli undo' can put them back.\n"
         "\n"
         "--dry-run changes nothing: it prints what Start would do, one line per action in the\n"
         "order Start acts ('trash PATH (copy of ORIGINAL)', 'move FROM → TO', 'skip PATH:\n"
         "MESSAGE'), then the summary Start would give. With --json it prints one JSON array of\n"
         "{\"action\", \"path\"} objects with \"original\", \"to\" or \"message\".\n"
         "\n"
         "--no-cache compares every file's content without the results cache.\n"},
        {"undo",
         "Usage: quorrin-cli undo\n"
         "\n"
         "Puts back the files that arrangements moved, newest first, never over a file that has\n"
         "taken an old place since.\n"},
        {"keep",
         "Usage: quorrin-cli keep PATH...\n"
         "\n"
         "Protects files from arrangement and cleaning.\n"},
        {"unkeep",
         "Usage: quorrin-cli unkeep PATH...\n"
         "\n"
         "Lifts the protection of kept files.\n"},
        {"clear",
         "Usage: quorrin-cli clear [--duplicates] PATH...\n"
         "\n"
         "Scans (comparing content with --duplicates), then sends the given files to the Trash,\n"
         "each only while it is unchanged since the scan; with --duplicates each must also still\n"
         "be identical to its retained original. Kept files are never cleared.\n"},
        {"older",
         "Usage: quorrin-cli older [--basis created|modified] [--json]\n"
         "                         [--older-than MONTHS | --during MONTHS |\n"
         "                          --from YYYY-MM-DD --through YYYY-MM-DD]\n"
         "\n"
         "Reads the dates of every file in the connected folders and lists those that match:\n"
         "older than MONTHS months (default 24), dated during the calendar month MONTHS months\n"
         "ago, or between two days (both included). The date is the Created date unless\n"
         "--basis modified is given. Changes nothing.\n"},
        {"review",
         "Usage: quorrin-cli review [--weeks N] [--json]\n"
         "       quorrin-cli review [--weeks N] --done\n"
         "\n"
         "Checks usage and lists the Downloads files not used for N weeks (the saved setting,\n"
         "4 at first; --weeks saves a new one, 1 to 52). --done marks the weekly review done.\n"},
        {"list",
         "Usage: quorrin-cli list [--page all|duplicates|review|health|kept] [--search TEXT]\n"
         "                        [--type CATEGORY] [--signal SIGNAL] [--json]\n"
         "\n"
         "Runs the page's own scan and lists its files sorted by name. --search matches the full\n"
         "path, ignoring case. --type takes a category such as \"02 Images\" or Images.\n"
         "--signal (health page) takes Unreadable, Empty or Executable.\n"},
    };
    auto found = texts.find(command);
    return found == texts.end() ? texts.at("") : found->second;
}

}  // namespace quorrin::cli
