#pragma once

namespace desk {

// Names of all files that the desk reads or writes in its folder. Add each new name to kOwnFiles too, because
// an order file must not have the same path (OrderPaths.h).
inline constexpr const char* kDeskFile = "desk.toml";
inline constexpr const char* kStrategyFile = "strategies.toml";
inline constexpr const char* kSettingsFile = "settings.xml";
inline constexpr const char* kInstrumentFile = "instruments.csv";
inline constexpr const char* kQuoteFile = "quotes.csv";
inline constexpr const char* kQuoteChangeFile = "quote_changes.csv";
inline constexpr const char* kPositionFile = "positions.csv";
inline constexpr const char* kJournalFileName = "journal.jsonl";
inline constexpr const char* kPaperStoreName = "paper.db";
inline constexpr const char* kLockFileName = ".lock";
inline constexpr const char* kControlSocketName = "control.sock";

inline constexpr const char* kOwnFiles[] = {
    kDeskFile,     kStrategyFile,    kSettingsFile,   kInstrumentFile, kQuoteFile,        kQuoteChangeFile,
    kPositionFile, kJournalFileName, kPaperStoreName, kLockFileName,   kControlSocketName};

/// Suffix of a file's new version while it is being written.
inline constexpr const char* kDraftSuffix = ".new";
/// Suffixes after kPaperStoreName: files that SQLite creates next to its file. The first is the log.
inline constexpr const char* kStoreSuffixes[] = {"-wal", "-shm", "-journal"};

/// Suffix of an order file that the order service has taken.
inline constexpr const char* kTakenSuffix = ".tmp";
/// Folder of the order files that were refused completely.
inline constexpr const char* kRejectedFolder = "rejected";

} // namespace desk
