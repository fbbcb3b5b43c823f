#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/records/StrategyParam.h"

#include <cstdint>
#include <string>

namespace desk {

/// Journals a file that is deleted unread, and tells the user its name and its number of lines. Any thread.
void reportDiscard(const TC::CDiscardReport& report, const std::string& cause, CJournal& journal,
                   CTextSink& sink);

/// Reports the ".tmp" files that an interrupted run left at the paths of the strategies. When the next file
/// appears at the same path, the order service deletes such a file or, if `isKept`, moves it to rejected/.
/// Main thread, before strategies start.
void reportLeftovers(const TC::COrderStrategyMap& strategies, bool isKept, CJournal& journal,
                     CTextSink& sink);

/// The text that tells the user that the previous run was interrupted. `seq` is the number of this run's
/// first journal line.
std::string crashText(std::int64_t seq);

/// Tells the user which recorded commands of the previous run the paper broker does not have.
std::string unbookedText(int firstTask, int lastTask);

} // namespace desk
