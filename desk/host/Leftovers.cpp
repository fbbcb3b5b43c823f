#include "desk/host/Leftovers.h"

#include "desk/config/FolderFiles.h"
#include "desk/host/Counted.h"
#include "desk/journal/JournalEvents.h"
#include "orderservice/base/FileCount.h"
#include "orderservice/base/Text.h"

#include <nlohmann/json.hpp>

namespace desk {
namespace {

constexpr const char* kLeftOver = "an earlier run had taken it and did not end properly; look for its orders "
                                  "in the journal before you send them again; ";
constexpr const char* kDeletedLater = "the file is deleted when the next one comes";
constexpr const char* kKeptLater = "the file is moved to rejected/ when the next one comes";

} // namespace

void reportDiscard(const TC::CDiscardReport& report, const std::string& cause, CJournal& journal,
                   CTextSink& sink) {
    // The sink tells the user even if the journal refuses the record.
    (void)journal.append("discarded", discardFields(report, cause));
    const std::string lines = report.m_nLines < 0 ? "cannot be read" : counted(report.m_nLines, "line");
    sink.writeLine("NOT READ: " + report.m_strSource.toStdString() + " (" + lines + ") of channel " +
                       std::to_string(report.m_nChannel) + ": " + cause,
                   ESeverity::Warning);
}

void reportLeftovers(const TC::COrderStrategyMap& strategies, bool isKept, CJournal& journal,
                     CTextSink& sink) {
    const std::string cause = std::string(kLeftOver) + (isKept ? kKeptLater : kDeletedLater);
    for (const TC::COrderStrategyParam& strategy : strategies) {
        if (!strategy.comesFromFile()) continue;
        TC::CDiscardReport report;
        report.m_strSource = strategy.m_strSignalSource + QLatin1String(kTakenSuffix);
        const auto count = utils::countFile(utils::toPathBytes(report.m_strSource));
        if (!count || count->bytes == 0) continue;
        report.m_eStrategyType = strategy.m_eStrategyType;
        report.m_nChannel = strategy.m_nChannel;
        report.m_nLines = count->lines;
        report.m_nBytes = count->bytes;
        reportDiscard(report, cause, journal, sink);
    }
}

std::string crashText(std::int64_t seq) {
    return "The previous run did not end properly: the journal has no \"stopped\" line before line #" +
           std::to_string(seq) +
           ". Orders of its last \"intake\" lines that have no \"command\" line did not go out.";
}

std::string unbookedText(int firstTask, int lastTask) {
    const bool isOne = firstTask == lastTask;
    return (isOne ? "Task " + std::to_string(firstTask) + " has"
                  : "Tasks " + std::to_string(firstTask) + " to " + std::to_string(lastTask) + " have") +
           " a \"command\" line but " + (isOne ? "was" : "were") + " not carried out and " +
           (isOne ? "has" : "have") + " no orders. Send " + (isOne ? "it" : "them") +
           " again if you still want " + (isOne ? "it." : "them.");
}

} // namespace desk
