// The host, files and sockets use these numbers. The test repeats them on purpose.
#include "orderservice/records/Enums.h"

#include "orderservice/base/Unset.h"
#include "orderservice/records/OrderSetting.h"
#include "orderservice/records/OrderTypes.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

template<typename E>
struct CNumber {
    E value;
    int number;
};

template<typename E, std::size_t Count>
void expectNumbers(const CNumber<E> (&rows)[Count]) {
    for (const auto& row : rows)
        EXPECT_EQ(static_cast<int>(row.value), row.number);
}

TEST(Enums, SourceKinds) {
    expectNumbers<EOrderStrategyType>({{EOrderStrategyType::Interface, 0},
                                       {EOrderStrategyType::Signal, 1},
                                       {EOrderStrategyType::File, 2},
                                       {EOrderStrategyType::BatchPending, 4}});
}

TEST(Enums, Families) {
    expectNumbers<EOrderStrategyTradeType>({{EOrderStrategyTradeType::Stock, 0},
                                            {EOrderStrategyTradeType::Future, 1},
                                            {EOrderStrategyTradeType::Basket, 2},
                                            {EOrderStrategyTradeType::Credit, 3},
                                            {EOrderStrategyTradeType::StockOption, 4},
                                            {EOrderStrategyTradeType::FutureOption, 5},
                                            {EOrderStrategyTradeType::FutureBasket, 6},
                                            {EOrderStrategyTradeType::SGT, 9},
                                            {EOrderStrategyTradeType::HGT, 10},
                                            {EOrderStrategyTradeType::Neeq, 11},
                                            {EOrderStrategyTradeType::Gold, 12}});
}

TEST(Enums, SelectedAccounts) {
    expectNumbers<ESelectedAccountType>(
        {{ESelectedAccountType::Group, 0}, {ESelectedAccountType::Account, 1}});
}

TEST(Enums, TraderTypesAreBits) {
    expectNumbers<EQdTraderType>({{EQdTraderType::Stock, 1},
                                  {EQdTraderType::FutureSpeculation, 2},
                                  {EQdTraderType::Basket, 4},
                                  {EQdTraderType::Credit, 8},
                                  {EQdTraderType::Gold, 16},
                                  {EQdTraderType::Option, 32},
                                  {EQdTraderType::HGT, 128},
                                  {EQdTraderType::Neeq, 256},
                                  {EQdTraderType::FutureOption, 1024},
                                  {EQdTraderType::SGT, 16384}});
}

TEST(Enums, CommandKinds) {
    expectNumbers<EQdHedgeType>(
        {{EQdHedgeType::None, 0}, {EQdHedgeType::Compose, 1}, {EQdHedgeType::Hedge, 2}});
    expectNumbers<EFtSpecBtnBarType>({{EFtSpecBtnBarType::None, 0},
                                      {EFtSpecBtnBarType::OpenClose, 1},
                                      {EFtSpecBtnBarType::CloseFirst, 2},
                                      {EFtSpecBtnBarType::OpenOrClose, 3}});
    expectNumbers<EQdStopLossType>({{EQdStopLossType::None, 0}});
    expectNumbers<ETradePlatform>({{ETradePlatform::Plain, 0}});
    expectNumbers<EOrderType>({{EOrderType::Plain, 0}});
}

TEST(Enums, Operations) {
    using EOp = EOperationType;
    expectNumbers<EOp>({{EOp::OpenLong, 0},
                        {EOp::CloseLongEarlier, 1},
                        {EOp::CloseLongToday, 2},
                        {EOp::OpenShort, 3},
                        {EOp::CloseShortEarlier, 4},
                        {EOp::CloseShortToday, 5},
                        {EOp::CloseLongTodayFirst, 6},
                        {EOp::CloseLongEarlierFirst, 7},
                        {EOp::CloseShortTodayFirst, 8},
                        {EOp::CloseShortEarlierFirst, 9},
                        {EOp::CloseLongTodayFirstThenOpenShort, 10},
                        {EOp::CloseLongEarlierFirstThenOpenShort, 11},
                        {EOp::CloseShortTodayFirstThenOpenLong, 12},
                        {EOp::CloseShortEarlierFirstThenOpenLong, 13},
                        {EOp::Buy, 18},
                        {EOp::Sell, 19},
                        {EOp::MarginBuy, 20},
                        {EOp::ShortSell, 21},
                        {EOp::BuyToReturn, 22},
                        {EOp::ReturnShares, 23},
                        {EOp::SellToRepay, 24},
                        {EOp::RepayMoney, 25},
                        {EOp::SubscribeFund, 26},
                        {EOp::RedeemFund, 27},
                        {EOp::CreateFund, 30},
                        {EOp::DissolveFund, 31},
                        {EOp::OptionBuyOpen, 32},
                        {EOp::OptionSellClose, 33},
                        {EOp::OptionSellOpen, 34},
                        {EOp::OptionBuyClose, 35},
                        {EOp::OptionCoveredOpen, 36},
                        {EOp::OptionCoveredClose, 37},
                        {EOp::OptionExerciseCall, 38},
                        {EOp::OptionExercisePut, 39},
                        {EOp::OptionLock, 40},
                        {EOp::OptionUnlock, 41},
                        {EOp::TransferBuy1, 42},
                        {EOp::TransferSell1, 43},
                        {EOp::TransferBuy2, 44},
                        {EOp::TransferSell2, 45},
                        {EOp::TransferBuy3, 46},
                        {EOp::TransferSell3, 47},
                        {EOp::TransferBuy4, 48},
                        {EOp::TransferSell4, 49},
                        {EOp::ExerciseFutureOption, 50},
                        {EOp::EndMoneyContract, 55},
                        {EOp::EndShareContract, 56},
                        {EOp::TransferBuy5, 1013},
                        {EOp::TransferSell5, 1014},
                        {EOp::RepayMoneyContract, 1021},
                        {EOp::BuyFund, 1025},
                        {EOp::SellFund, 1026},
                        {EOp::TransferBuy6, 1027},
                        {EOp::TransferSell6, 1028},
                        {EOp::TransferBuy7, 1029},
                        {EOp::TransferSell7, 1030},
                        {EOp::BuyAtGivenPrice, 1043}});
    expectNumbers<EHedge_Flag_Type>({{EHedge_Flag_Type::Speculation, 49}});
    EXPECT_EQ(kQuantityKindPlain, 48);
    EXPECT_EQ(kTaskOpTerminate, 3);
    EXPECT_EQ(kTaskOpCancel, 5);
}

TEST(Enums, PriceTypes) {
    expectNumbers<EPriceType>(
        {{EPriceType::Sell5, 0},    {EPriceType::Sell4, 1},  {EPriceType::Sell3, 2},
         {EPriceType::Sell2, 3},    {EPriceType::Sell1, 4},  {EPriceType::Latest, 5},
         {EPriceType::Buy1, 6},     {EPriceType::Buy2, 7},   {EPriceType::Buy3, 8},
         {EPriceType::Buy4, 9},     {EPriceType::Buy5, 10},  {EPriceType::Specified, 11},
         {EPriceType::NoQuote, 12}, {EPriceType::Sell6, 30}, {EPriceType::Sell7, 31},
         {EPriceType::Sell8, 32},   {EPriceType::Sell9, 33}, {EPriceType::Sell10, 34},
         {EPriceType::Buy6, 35},    {EPriceType::Buy7, 36},  {EPriceType::Buy8, 37},
         {EPriceType::Buy9, 38},    {EPriceType::Buy10, 39}, {EPriceType::SpecifiedByRow, 49}});
}

TEST(Enums, Brokers) {
    expectNumbers<EQDBrokerType>({{EQDBrokerType::Future, 1},
                                  {EQDBrokerType::Stock, 2},
                                  {EQDBrokerType::Credit, 3},
                                  {EQDBrokerType::Gold, 4},
                                  {EQDBrokerType::FutureOption, 5},
                                  {EQDBrokerType::StockOption, 6},
                                  {EQDBrokerType::HGT, 7},
                                  {EQDBrokerType::Neeq, 10},
                                  {EQDBrokerType::SGT, 11}});
    expectNumbers<EBROKER_LOGIN_STATUS>({{EBROKER_LOGIN_STATUS::LoggedIn, 0}});
}

TEST(Enums, ARightIsTheSourceKindPlusSix) {
    EXPECT_EQ(static_cast<int>(EUserAuth::SignalOrders), 7);
    EXPECT_EQ(static_cast<int>(EUserAuth::FileOrders), 8);
    EXPECT_EQ(static_cast<int>(EUserAuth::SignalOrders), static_cast<int>(EOrderStrategyType::Signal) + 6);
    EXPECT_EQ(static_cast<int>(EUserAuth::FileOrders), static_cast<int>(EOrderStrategyType::File) + 6);
}

TEST(Enums, Messages) {
    expectNumbers<EMsgTypeDef>({{EMsgTypeDef::General, 0}, {EMsgTypeDef::OrderFailure, 4}});
    expectNumbers<MsgLevel>({{MsgLevel::Note, 1}, {MsgLevel::Warning, 2}});
}

TEST(Enums, ParserResults) {
    expectNumbers<TypeReturn>(
        {{TR_STOP_READING, -1}, {TR_LINE_DONE, 0}, {TR_PLAIN_LINE, 1}, {TR_BASKET_HEADER, 2}});
}

TEST(Enums, SettingSlots) {
    expectNumbers<ESettingSlot>({{ESettingSlot::Stock, 0},
                                 {ESettingSlot::Future, 1},
                                 {ESettingSlot::Unused2, 2},
                                 {ESettingSlot::Unused3, 3},
                                 {ESettingSlot::Unused4, 4},
                                 {ESettingSlot::Unused5, 5},
                                 {ESettingSlot::StockBasket, 6},
                                 {ESettingSlot::FutureBasket, 7},
                                 {ESettingSlot::Credit, 8},
                                 {ESettingSlot::StockOption, 9},
                                 {ESettingSlot::Neeq, 10},
                                 {ESettingSlot::HGT, 11},
                                 {ESettingSlot::Gold, 12},
                                 {ESettingSlot::FunctionHGT, 13},
                                 {ESettingSlot::FunctionSGT, 14},
                                 {ESettingSlot::SGT, 15}});
    EXPECT_EQ(kSettingSlots, 16);
}

TEST(Enums, OrderNumbers) {
    expectNumbers<EOrderNumber>({{kOrderBasketBuy, 25},
                                 {kOrderBasketSell, 26},
                                 {kOrderBasketHeader, 33},
                                 {kOrderBasketWhole, 34},
                                 {kOrderBasketList, 35},
                                 {kOrderPosition, 36}});
}

} // namespace
