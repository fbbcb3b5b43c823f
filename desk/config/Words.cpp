#include "desk/config/Words.h"

#include "desk/config/DeskConfig.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/records/Enums.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

namespace desk {
namespace {

template<typename E>
int n(E value) {
    return static_cast<int>(value);
}

} // namespace

const std::map<std::string, int>& brokerWords() {
    using B = TC::EQDBrokerType;
    static const std::map<std::string, int> words = {
        {"future", n(B::Future)},
        {"stock", n(B::Stock)},
        {"credit", n(B::Credit)},
        {"gold", n(B::Gold)},
        {"future_option", n(B::FutureOption)},
        {"stock_option", n(B::StockOption)},
        {"hgt", n(B::HGT)},
        {"neeq", n(B::Neeq)},
        {"sgt", n(B::SGT)},
    };
    return words;
}

const std::map<std::string, int>& sourceWords() {
    using S = TC::EOrderStrategyType;
    static const std::map<std::string, int> words = {
        {"interface", n(S::Interface)},
        {"signal", n(S::Signal)},
        {"file", n(S::File)},
        {"table", n(S::BatchPending)},
    };
    return words;
}

const std::map<std::string, int>& familyWords() {
    using F = TC::EOrderStrategyTradeType;
    static const std::map<std::string, int> words = {
        {"stock", n(F::Stock)},
        {"future", n(F::Future)},
        {"basket", n(F::Basket)},
        {"credit", n(F::Credit)},
        {"stock_option", n(F::StockOption)},
        {"future_option", n(F::FutureOption)},
        {"future_basket", n(F::FutureBasket)},
        {"sgt", n(F::SGT)},
        {"hgt", n(F::HGT)},
        {"neeq", n(F::Neeq)},
        {"gold", n(F::Gold)},
    };
    return words;
}

const std::map<std::string, int>& priceTypeWords() {
    using P = TC::EPriceType;
    static const std::map<std::string, int> words = [] {
        std::map<std::string, int> result = {{"latest", n(P::Latest)}, {"specified", n(P::Specified)}};
        constexpr int kNearLevels = 5;
        for (int level = 1; level <= 10; ++level) {
            const bool near = level <= kNearLevels;
            const int offset = near ? level - 1 : level - kNearLevels - 1;
            result["sell" + std::to_string(level)] = near ? n(P::Sell1) - offset : n(P::Sell6) + offset;
            result["buy" + std::to_string(level)] = (near ? n(P::Buy1) : n(P::Buy6)) + offset;
        }
        return result;
    }();
    return words;
}

const std::map<std::string, int>& rightWords() {
    static const std::map<std::string, int> words = {{"signal_orders", n(TC::EUserAuth::SignalOrders)},
                                                     {"file_orders", n(TC::EUserAuth::FileOrders)}};
    return words;
}

const std::map<std::string, int>& confirmWords() {
    static const std::map<std::string, int> words = {{"decline", n(EConfirm::Decline)},
                                                     {"accept", n(EConfirm::Accept)}};
    return words;
}

const std::map<std::string, int>& kindWords() {
    using K = EInstrumentKind;
    static const std::map<std::string, int> words = {
        {"stock", n(K::Stock)},
        {"future", n(K::Future)},
        {"future_option", n(K::FutureOption)},
        {"stock_option", n(K::StockOption)},
        {"sgt", n(K::Sgt)},
        {"hgt", n(K::Hgt)},
        {"neeq", n(K::Neeq)},
        {"gold", n(K::Gold)},
    };
    return words;
}

const std::map<std::string, int>& sideWords() {
    static const std::map<std::string, int> words = {{"long", n(EPositionSide::Long)},
                                                     {"short", n(EPositionSide::Short)}};
    return words;
}

const std::map<std::string, int>& paidWords() {
    static const std::map<std::string, int> words = {{"full", 1}, {"margin", 0}};
    return words;
}

const std::set<std::string>& switchNames() {
    static const std::set<std::string> names(std::begin(TC::kOrderSwitches), std::end(TC::kOrderSwitches));
    return names;
}

bool isLike(const std::string& a, const std::string& b) {
    constexpr std::size_t kSlips = 2;
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back() <= kSlips && row.back() < std::min(a.size(), b.size());
}

std::string wordFor(const std::map<std::string, int>& words, int number) {
    for (const auto& [word, value] : words) {
        if (value == number) return word;
    }
    return std::to_string(number);
}

} // namespace desk
