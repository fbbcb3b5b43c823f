#pragma once

#include "orderservice/base/Unset.h"

#include <QString>

namespace TC {

/// The rows of one basket that are left out without a message. The audit gets one report for all of them.
struct CLeftOut {
    int rows = 0;
    QString code;  ///< of the first row
    QString cause; ///< of the first row

    void add(const QString& rowCode, const QString& rowCause) {
        if (rows++ > 0) return;
        code = rowCode;
        cause = rowCause;
    }
    void add(const QString& rowCode, const char* rowCause) { add(rowCode, QString::fromUtf8(rowCause)); }

    /// Reports them, if there are any. channel: of the order, not set if it has none.
    void report(int channel = kUnsetInt) const;
};

/// Why a row is left out, for the audit.
namespace leftout {
inline constexpr char kNotTradable[] = "the code is not a stock that can be traded";
inline constexpr char kUnknownInstrument[] = "the instrument is unknown";
inline constexpr char kSuspended[] = "the instrument is suspended: its quote has no figures of today";
inline constexpr char kWrongType[] = "a basket cannot have an instrument of this type";
inline constexpr char kNegativeVolume[] = "the volume is below zero";
} // namespace leftout

} // namespace TC
