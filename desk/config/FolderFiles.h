#pragma once

namespace desk {

// Names of what the desk reads, writes or makes in its folder. Whatever is new belongs into kOwnFiles too: no
// order file may have its place (OrderPaths.h).
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

inline constexpr const char* kOwnFiles[] = {
    kDeskFile,        kStrategyFile, kSettingsFile,    kInstrumentFile, kQuoteFile,
    kQuoteChangeFile, kPositionFile, kJournalFileName, kPaperStoreName, kLockFileName};

/// Behind the name of a file that is written anew, while it is written.
inline constexpr const char* kDraftSuffix = ".new";
/// Behind kPaperStoreName: what SQLite puts beside its file. The first is the log.
inline constexpr const char* kStoreSuffixes[] = {"-wal", "-shm", "-journal"};

/// Behind the name of an order file that the order service has taken.
inline constexpr const char* kTakenSuffix = ".tmp";
/// Folder of the order files that were refused whole.
inline constexpr const char* kRejectedFolder = "rejected";

} // namespace desk
