#pragma once

/// Enumerations of the order records. Their numbers cross to the host, to files and to sockets unchanged:
/// each stands here once, and -1 means not set (see base/Unset.h). Where only some numbers of an enumeration
/// have a name, the others belong to the trading layer and are passed on as they come.
namespace TC {

/// Kind of source that an order came from, and kind of source that a strategy listens to.
enum class EOrderStrategyType : int {
    Interface = 0,    ///< a call of the client's own
    Signal = 1,       ///< the order socket
    File = 2,         ///< an order file
    BatchPending = 4, ///< a DBF table
};

/// Product family of a strategy; records/Families.h holds what is known of each.
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

/// What m_strSelectedAccount of a strategy names.
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

/// Button of the futures panel that a command stands for.
enum class EFtSpecBtnBarType : int { None = 0, OpenClose = 1, CloseFirst = 2, OpenOrClose = 3 };

enum class EQdStopLossType : int { None = 0 };

/// Platform that executes a command; algorithm order kinds name others than the plain one.
enum class ETradePlatform : int { Plain = 0 };

/// Order kind. 0 is the plain order; the numbers of algorithm orders are the host's.
enum class EOrderType : int { Plain = 0 };

/// What an order does. The trading layer may know further numbers.
enum class EOperationType : int {
    // Futures, options on futures and gold. What closes names the position that goes, or goes first:
    // of today or of earlier days.
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

    // Margin trading; the last three are orders on one contract.
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

    // The share-transfer market: a pair for each way of transfer.
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
};

/// Which price an order uses.
enum class EPriceType : int {
    Sell5 = 0,
    Sell4 = 1,
    Sell3 = 2,
    Sell2 = 3,
    Sell1 = 4,
    Latest = 5, ///< also what an unknown price command of a table row means
    Buy1 = 6,
    Buy2 = 7,
    Buy3 = 8,
    Buy4 = 9,
    Buy5 = 10,
    Specified = 11, ///< the price stands in the order
    NoQuote = 12,   ///< a further kind that needs no quote
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
    SpecifiedByRow = 49, ///< like 11, basket rows need a price of their own
};

/// Passed on to the splitting of volumes; its numbers are the trading layer's.
enum class EPositionType : int {};

/// Hedge flag of the trading layer: the code of the character '1'.
enum class EHedge_Flag_Type : int { Speculation = 49 };

enum class EEntrustTypes : int {};

/// Kind of account at a broker, by which account groups are kept.
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

/// Login status of an account at its broker; every number but 0 means not usable.
enum class EBROKER_LOGIN_STATUS : int { LoggedIn = 0 };

/// Rights of a user. A source kind's right is its EOrderStrategyType plus 6.
enum class EUserAuth : int { SignalOrders = 7, FileOrders = 8 };

/// Kinds of message to the user; each has display settings of its own.
enum class EMsgTypeDef : int { General = 0, OrderFailure = 4 };

enum class MsgLevel : int { Note = 1, Warning = 2 };

/// What m_nQuantityKind of a code record says of m_dQuantity: the code of the character '0'.
inline constexpr int kQuantityKindPlain = 48;

/// Operation numbers of CTaskOpRecord and of CTradeClient::cancelTask.
inline constexpr int kTaskOpTerminate = 3;
inline constexpr int kTaskOpCancel = 5;

/// Result of the two line parsers, and what the read loop does with it.
enum TypeReturn : int {
    TR_STOP_READING = -1, ///< a whole basket was taken from the settings: stop reading
    TR_LINE_DONE = 0,     ///< the line was consumed or ignored: read the next
    TR_PLAIN_LINE = 1,    ///< an ordinary order line; from the first-line parser: not a header
    TR_BASKET_HEADER = 2, ///< the header named a basket: the rest of the file only holds trade parameters
};

} // namespace TC
