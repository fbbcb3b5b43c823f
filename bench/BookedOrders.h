#pragma once

#include "bench/DeskProcess.h"

namespace bench {

/// Throws std::runtime_error unless the books have exactly this many orders and all of them wait for their
/// price. The desk must have ended.
void checkBooks(const CDeskFolder& folder, int orders);

/// The orders of a file that a desk has booked: its store and its journal.
class CBookedOrders {
public:
    /// Starts a desk, gives it a file of this many orders and ends it when all are booked. Throws
    /// std::runtime_error if the books do not have all orders afterwards.
    explicit CBookedOrders(int commands);

    /// Seconds from the file to the last booked order.
    double seconds() const { return m_dSeconds; }

    /// Stores the same rows of tasks and orders in a new database and the same bytes in a new journal, in
    /// one thread. There is one transaction and one write(2) for every `batch` commands. Returns the seconds.
    /// The rows are read and the files are created before the time is taken.
    double storeAgain(int batch) const;

private:
    CDeskFolder m_folder;
    int m_nCommands;
    double m_dSeconds = 0;
};

} // namespace bench
