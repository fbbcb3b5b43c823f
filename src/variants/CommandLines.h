#pragma once

/// The lines that the variants write to the log before they send a command. Users search the log for them, so
/// the texts stay, and each variant keeps its own choice of a line for a family.
namespace TC {

inline constexpr char kStockLine[] = "placeCommands: [orderservice] stock speculation.";
inline constexpr char kFutureLine[] = "placeCommands: [orderservice] future speculation.";
inline constexpr char kCreditLine[] = "placeCommands: [orderservice] credit operation.";
inline constexpr char kBasketLine[] = "placeCommands: [orderservice] basket compose.";
inline constexpr char kHedgeLine[] = "placeCommands: [orderservice] basket hedge.";

} // namespace TC
