#pragma once

#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/records/StrategyParam.h"

#include <memory>
#include <string>

namespace TC {

/// One batch of order lines that was taken from its writer. The caller reads it to the end, reports it, hands
/// its orders to the gate, and destroys it last. The source deletes the batch only when it is destroyed, so
/// orders that the gate has not taken are still there after a crash. Used on the file thread, with the
/// registry locked.
class ILineSource {
public:
    virtual ~ILineSource() = default;

    /// Reads the next line, with its line end if it has one. `rowPosition` becomes its position in a table,
    /// counted from 1, or 0 if the source is not a table. False at the end. Throws if reading fails; the
    /// lines read before stay valid.
    virtual bool readLine(std::string& line, int& rowPosition) = 0;
    /// Size of the batch in bytes, so that the reader can reserve memory for its orders; 0: not known.
    virtual long long bytes() const = 0;
    /// Called once after the last line, before the batch is reported. Adds to the report what only the source
    /// knows about the batch.
    virtual void finish(CIntakeReport& report) = 0;
};

/// A kind of line source. Holds all state that is needed between passes. Used on the file thread, with the
/// registry locked.
///
/// A future kind for tables will also write the results of cancels into the table. They arrive on the
/// service's thread, without the registry's lock. So the rows that wait for a result belong in an object with
/// its own lock, which the kind and the receiver of the results share.
class ILineSourceKind {
public:
    virtual ~ILineSourceKind() = default;

    /// Whether strategies like this one read from this kind of source. Does not call the host.
    virtual bool serves(const COrderStrategyParam& strategy) const = 0;
    /// Takes the strategy's batch away from its writer, so that no other pass reads it again. Null: there is
    /// no batch, or it cannot be taken, which was reported. The source must not outlive the kind. `channel`
    /// is the strategy's key in the registry.
    virtual std::unique_ptr<ILineSource> take(int channel, const COrderStrategyParam& strategy) = 0;
};

/// Creates a report for the strategy's source. No result is filled in yet.
CIntakeReport makeIntakeReport(int channel, const COrderStrategyParam& strategy);

/// Notes in the report that the batch ends at the current line. The orders before it are handed on, the rest
/// is lost. The user sees no message; only the report says it.
void cutShort(CIntakeReport& report, const QString& cause);

} // namespace TC
