#pragma once

#include "platform/IntakeAudit.h"
#include "records/StrategyParam.h"

#include <memory>
#include <string>

namespace TC {

/// One batch of order lines that was taken from its writer. Whoever took it reads it to the end, reports it,
/// hands its orders to the gate, and destroys it then: with that the source lets the batch go, so that what
/// the gate has not taken is still there after a crash. File thread, with the registry locked.
class ILineSource {
public:
    virtual ~ILineSource() = default;

    /// Gives the next line, with its line end if it has one, and its position in a table, counted from 1, or
    /// 0 if the source is no table. False at the end. Throws if reading fails: the lines before that stay
    /// valid.
    virtual bool readLine(std::string& line, int& rowPosition) = 0;
    /// Size of the batch in bytes, so that the reader can make room for its orders; 0: not known.
    virtual long long bytes() const = 0;
    /// Called once behind the last line, before the batch is reported. Adds to the report what the source
    /// knows of the batch.
    virtual void finish(CIntakeReport& report) = 0;
};

/// A kind of line source. Keeps what it must know between passes. File thread, with the registry locked.
class ILineSourceKind {
public:
    virtual ~ILineSourceKind() = default;

    /// Whether strategies like this one read from sources of the kind. Asks nobody.
    virtual bool serves(const COrderStrategyParam& strategy) const = 0;
    /// Takes the strategy's batch away from its writer, so that no other pass reads it again. Null: nothing
    /// waits, or it cannot be taken, which was reported. The source must not outlive the kind. `channel` is
    /// the key under which the strategy is kept.
    virtual std::unique_ptr<ILineSource> take(int channel, const COrderStrategyParam& strategy) = 0;
};

/// A report of the strategy's source with nothing in it yet.
CIntakeReport makeIntakeReport(int channel, const COrderStrategyParam& strategy);

/// The batch ends with the line in hand: the orders before it are handed on, the rest is lost. The user sees
/// no message; the report says so.
void cutShort(CIntakeReport& report, const QString& cause);

} // namespace TC
