#include "desk/commands/ShowJournal.h"

#include "desk/commands/JournalText.h"
#include "desk/journal/JournalReader.h"
#include "orderservice/base/Clock.h"

#include <ostream>

namespace desk {
namespace {

constexpr double kFollowSeconds = 0.2;
constexpr const char* kReopened = "-- the journal was replaced or cut; the file from its beginning:\n";

void printNew(CJournalReader& reader, std::ostream& out) {
    while (const std::optional<CJournalLine> line = reader.next())
        out << journalText(*line);
    out.flush();
}

} // namespace

int runJournal(const std::string& folder, bool follow, std::ostream& out, std::ostream& err,
               const std::function<bool()>& keepGoing) {
    CJournalReader reader;
    if (const utils::KNError error = reader.open(folder); !error.isSuccess()) {
        err << error.errorMsg() << '\n';
        return 1;
    }
    printNew(reader, out);
    while (follow && keepGoing()) {
        utils::sleep(kFollowSeconds);
        printNew(reader, out);
        if (reader.reopenIfChanged()) out << kReopened << std::flush;
    }
    if (const std::optional<CJournalLine> rest = reader.rest(); rest && !follow) out << journalText(*rest);
    return 0;
}

} // namespace desk
