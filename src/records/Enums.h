#pragma once

/// Enumerations of the order records. The host, files and sockets use the same numbers, so a number must not
/// change. -1 means not set (see base/Unset.h). If only some numbers of an enumeration have a name, the other
/// numbers belong to the trading layer and are passed on unchanged.
namespace TC {

/// Kind of source that an order came from, and kind of source that a strategy listens to.
enum class EOrderStrategyType : int {
    Interface = 0,    ///< a call from the client itself
    Signal = 1,       ///< the order socket
    File = 2,         ///< an order file
    Function = 3,     ///< a function call
    BatchPending = 4, ///< a DBF table
};

/// Product family of a strategy. The properties of the families are in records/Families.h.
enum class EOrderStrategyTradeType : int {
    Stock = 0,
    Future = 1,
    Basket = 2,
    Credit = 3,
    StockOption = 4,
    FutureOption = 5,
    FutureBasket = 6,
    SGT = 9,   ///< Shenzhen-Hong Kong connect
    HGT = 10,  ///< Shanghai-Hong Kong connect
    Neeq = 11, ///< share-transfer market
    Gold = 12,
};

/// Meaning of m_strSelectedAccount of a strategy.
enum class ESelectedAccountType : int { Group = 0, Account = 1 };

/// Product family of a command, as bits.
enum class EQdTraderType : int {
    Stock = 1,
    FutureSpeculation = 2,
    Basket = 4,
    Credit = 8,
    Gold = 16,
    Option = 32,
    HGT = 128,
    Neeq = 256,
    FutureOption = 1024,
    SGT = 16384,
};

enum class EQdHedgeType : int { None = 0, Compose = 1, Hedge = 2 };

/// Button of the futures panel that matches the command.
enum class EFtSpecBtnBarType : int { None = 0, OpenClose = 1, CloseFirst = 2, OpenOrClose = 3 };

enum class EQdStopLossType : int { None = 0 };

/// Platform that executes a command. Algorithm order kinds use other platforms than the plain platform.
enum class ETradePlatform : int { Plain = 0 };

/// Order kind. 0 is the plain order. The host defines the numbers of algorithm orders.
enum class EOrderType : int { Plain = 0 };

/// Operation of an order. The trading layer may know further numbers.
enum class EOperationType : int {
    // Futures, options on futures and gold. The name of a closing operation says which position is closed, or
    // closed first: the position of today or of earlier days.
    OpenLong = 0,
    CloseLongEarlier = 1,
    CloseLongToday = 2,
    OpenShort = 3,
    CloseShortEarlier = 4,
    CloseShortToday = 5,
    CloseLongTodayFirst = 6,
    CloseLongEarlierFirst = 7,
    CloseShortTodayFirst = 8,
    CloseShortEarlierFirst = 9,
    CloseLongTodayFirstThenOpenShort = 10,
    CloseLongEarlierFirstThenOpenShort = 11,
    CloseShortTodayFirstThenOpenLong = 12,
    CloseShortEarlierFirstThenOpenLong = 13,
    ExerciseFutureOption = 50,

    // Shares, the connects and gold.
    Buy = 18,
    Sell = 19,

    // Margin trading. The last three operate on one contract.
    MarginBuy = 20,
    ShortSell = 21,
    BuyToReturn = 22,
    ReturnShares = 23,
    SellToRepay = 24,
    RepayMoney = 25,
    EndMoneyContract = 55,
    EndShareContract = 56,
    RepayMoneyContract = 1021,

    // Funds.
    SubscribeFund = 26,
    RedeemFund = 27,
    CreateFund = 30,
    DissolveFund = 31,
    BuyFund = 1025,
    SellFund = 1026,

    // Options on stocks.
    OptionBuyOpen = 32,
    OptionSellClose = 33,
    OptionSellOpen = 34,
    OptionBuyClose = 35,
    OptionCoveredOpen = 36,
    OptionCoveredClose = 37,
    OptionExerciseCall = 38,
    OptionExercisePut = 39,
    OptionLock = 40,
    OptionUnlock = 41,

    // The share-transfer market: one pair for each transfer method.
    TransferBuy1 = 42,
    TransferSell1 = 43,
    TransferBuy2 = 44,
    TransferSell2 = 45,
    TransferBuy3 = 46,
    TransferSell3 = 47,
    TransferBuy4 = 48,
    TransferSell4 = 49,
    TransferBuy5 = 1013,
    TransferSell5 = 1014,
    TransferBuy6 = 1027,
    TransferSell6 = 1028,
    TransferBuy7 = 1029,
    TransferSell7 = 1030,

    BuyAtGivenPrice = 1043, ///< a stock, at the price type 49; only function trading uses it
};

/// Price that an order uses.
enum class EPriceType : int {
    Sell5 = 0,
    Sell4 = 1,
    Sell3 = 2,
    Sell2 = 3,
    Sell1 = 4,
    Latest = 5, ///< also used for an unknown price command of a table row
    Buy1 = 6,
    Buy2 = 7,
    Buy3 = 8,
    Buy4 = 9,
    Buy5 = 10,
    Specified = 11, ///< the order contains the price
    NoQuote = 12,   ///< another price type that needs no quote
    Sell6 = 30,
    Sell7 = 31,
    Sell8 = 32,
    Sell9 = 33,
    Sell10 = 34,
    Buy6 = 35,
    Buy7 = 36,
    Buy8 = 37,
    Buy9 = 38,
    Buy10 = 39,
    SpecifiedByRow = 49, ///< as for 11, each basket row needs its own price
};

/// Passed on to CTradeClient when volumes are split. The trading layer defines the numbers.
enum class EPositionType : int {};

/// Hedge flag of the trading layer. The number is the code of the character '1'.
enum class EHedge_Flag_Type : int { Speculation = 49 };

enum class EEntrustTypes : int {};

/// Kind of account at a broker. Each account group has one kind.
enum class EQDBrokerType : int {
    Future = 1,
    Stock = 2,
    Credit = 3,
    Gold = 4,
    FutureOption = 5,
    StockOption = 6,
    HGT = 7,
    Neeq = 10,
    SGT = 11,
};

/// Login status of an account at its broker. Every number except 0 means that the account is not usable.
enum class EBROKER_LOGIN_STATUS : int { LoggedIn = 0 };

/// Rights of a user. The right for a source kind is its EOrderStrategyType plus 6.
enum class EUserAuth : int { SignalOrders = 7, FileOrders = 8 };

/// Types of messages to the user. Each type has its own display settings.
enum class EMsgTypeDef : int { General = 0, OrderFailure = 4, Function = 6 };

enum class MsgLevel : int { Note = 1, Warning = 2 };

/// Value of m_nQuantityKind for a plain m_dQuantity in a code record. It is the code of the character '0'.
inline constexpr int kQuantityKindPlain = 48;

/// Operation numbers of CTaskOpRecord and of CTradeClient::cancelTask.
inline constexpr int kTaskOpTerminate = 3;
inline constexpr int kTaskOpCancel = 5;

/// Result of the two line parsers. It tells the read loop what to do next.
enum TypeReturn : int {
    TR_STOP_READING = -1, ///< a whole basket was read from the settings: stop reading
    TR_LINE_DONE = 0,     ///< the line was consumed or ignored: read the next line
    TR_PLAIN_LINE = 1,    ///< an ordinary order line; the first-line parser means: not a header
    TR_BASKET_HEADER = 2, ///< the header named a basket: the rest of the file contains only trade parameters
};

} // namespace TC
