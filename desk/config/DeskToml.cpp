#include "desk/config/DeskToml.h"

#include "desk/config/BasketWarnings.h"
#include "desk/config/ConfirmWarnings.h"
#include "desk/config/Kinds.h"
#include "desk/config/SettingWarnings.h"
#include "desk/config/TomlFile.h"
#include "desk/config/TomlSection.h"
#include "desk/config/Words.h"
#include "orderservice/platform/Switches.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <set>
#include <string_view>

namespace desk {
namespace {

/// All subjects that a table with a misspelt name may have been meant to define.
constexpr ESubject kAllOfDesk = ESubject::Desk | ESubject::Accounts | ESubject::Groups;
constexpr std::string_view kTables[] = {"user",    "desk",  "socket", "switches", "settings",
                                        "account", "group", "basket", "portfolio"};
using TC::kCommandGuardSwitch;
using TC::kConfirmGuardSwitch;
using TC::kConfirmReadOnlySwitch;
using TC::kForceConfirmSwitch;
/// Kinds of users whose commands the order service issues.
const std::set<int> kCommandKinds = {80, 90, 91, 92, 100, 101};

/// Orders from a portfolio name the stock by its whole key. They only accept keys of this length in capital
/// letters.
bool sellsFromAPortfolio(const CInstrumentEntry& stock) {
    constexpr std::size_t kKeyLength = 8;
    const std::string key = stock.key();
    return key.size() == kKeyLength &&
           std::none_of(key.begin(), key.end(), [](char letter) { return letter >= 'a' && letter <= 'z'; }) &&
           tradesUnderItsCode(stock) && isBasketStock(stock);
}

/// Reads the tables of desk.toml one by one.
class CDeskTomlReader {
public:
    CDeskTomlReader(CDeskConfig& config, CDiagnostics& diagnostics)
        : m_config(config), m_diagnostics(diagnostics) {}

    CDeskLines read(const toml::table& root) {
        // On even if the file has no [switches] table.
        m_config.switches = {kCommandGuardSwitch, kConfirmGuardSwitch, kConfirmReadOnlySwitch};
        const CTomlSection section(kDeskFile, root, kDeskFile, m_diagnostics);
        section.read(
            {
                {"user", section.table([this](const auto& t) { readUser(t); })},
                {"desk", section.table([this](const auto& t) { readDesk(t); })},
                {"socket", section.table([this](const auto& t) { readSocket(t); })},
                {"switches", section.table([this](const auto& t) { readSwitches(t); })},
                {"settings", section.table([this](const auto& t) { readSettings(t); })},
                {"account", section.tables([this](const auto& t) { readAccount(t); })},
                {"group", section.tables([this](const auto& t) { readGroup(t); })},
                {"basket", section.tables([this](const auto& t) { readBasket(t); })},
                {"portfolio", section.tables([this](const auto& t) { readPortfolio(t); })},
            },
            {"user", "account"});
        for (const auto& [key, node] : root) {
            if (std::find(std::begin(kTables), std::end(kTables), std::string_view(key.str())) ==
                std::end(kTables))
                m_diagnostics.spoil(kAllOfDesk);
        }
        warnOfConfirmations(m_config, m_confirmLines, m_diagnostics);
        return m_lines;
    }

private:
    CTomlSection sectionOf(const toml::table& table, const std::string& name) {
        return {kDeskFile, table, name, m_diagnostics};
    }

    void readUser(const toml::table& table) {
        CUserEntry& user = m_config.user;
        const CTomlSection section = sectionOf(table, "user");
        section.read(
            {
                {"name", section.text(user.name)},
                {"kind", section.integer(user.kind, 0)},
                {"rights", [&](const toml::node& node) { readRights(section, node); }},
                {"order_service", section.flag(user.orderService)},
                {"trade_framework", section.flag(user.tradeFramework)},
                {"order_encryption", section.flag(user.orderEncryption)},
                {"max_strategies", section.integer(user.maxStrategies, 0)},
                {"max_socket_strategies", section.integer(user.maxSocketStrategies, 0)},
                {"file_interval_ms", section.integer(user.fileIntervalMs, 0)},
                {"hint_bits", section.integer(user.hintBits, 0)},
                {"messages", section.table([this](const auto& t) { readMessages(t); })},
            },
            {"name", "kind"});
        warnOfUser(section, user);
        m_confirmLines.m_nOrderService = section.lineOfKey("order_service");
        m_lines.maxStrategies = section.lineOfKey("max_strategies");
        m_lines.maxSocketStrategies = section.lineOfKey("max_socket_strategies");
    }

    /// Warns about user settings that are allowed but make the orders fail.
    static void warnOfUser(const CTomlSection& section, const CUserEntry& user) {
        constexpr int kLeastPause = 11; // milliseconds; with less, the file loop does not sleep
        constexpr int kLongestPause = 60000;
        if (kCommandKinds.count(user.kind) == 0)
            section.warnAt("kind", "users of kind " + std::to_string(user.kind) +
                                       " issue no commands; expected 80, 90, 91, 92, 100 or 101");
        if (!user.orderService && user.rights.empty())
            section.warnAt("order_service",
                           "with order_service = false and without rights no order goes out");
        if (user.orderEncryption)
            section.warnAt("order_encryption", "with order_encryption = true no file strategy starts");
        if (user.tradeFramework)
            section.warnAt("trade_framework",
                           "the desk has no trade framework; it only shows a message about that");
        if (section.has("messages")) section.warnAt("messages", "messages has no effect on the desk");
        if (section.has("hint_bits") && user.orderService)
            section.warnAt("hint_bits", "hint_bits has no effect with order_service = true");
        if (user.fileIntervalMs < kLeastPause)
            section.warnAt("file_interval_ms",
                           "the desk looks for files without a pause and keeps a core busy; "
                           "expected at least 11");
        if (user.fileIntervalMs > kLongestPause)
            section.warnAt("file_interval_ms",
                           "files wait for more than a minute; expected at most 60000 milliseconds");
    }

    void readRights(const CTomlSection& section, const toml::node& node) {
        const auto* rights = node.as_array();
        if (rights == nullptr) return section.expected(node, "a list of rights");
        for (const toml::node& right : *rights) {
            int number = -1;
            section.choice(number, rightWords(), true)(right);
            if (number >= 0) m_config.user.rights.insert(number);
        }
    }

    /// Reads the two display flags of each message type number.
    void readMessages(const toml::table& table) {
        const CTomlSection section = sectionOf(table, "user.messages");
        for (const auto& [key, node] : table) {
            const std::string text(key.str());
            int type = -1;
            const auto parsed = std::from_chars(text.data(), text.data() + text.size(), type);
            const auto* flags = node.as_array();
            const bool isNumber = parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
            const bool fits = isNumber && type >= 0 && flags != nullptr && flags->size() == 2 &&
                              flags->is_homogeneous<bool>();
            if (fits) {
                m_config.user.msgFlags[type] = {*flags->get(0)->value<bool>(), *flags->get(1)->value<bool>()};
            } else {
                section.mistake(
                    node, "expected a message type's number and two flags, such as \"0\" = [true, false]");
            }
        }
    }

    void readDesk(const toml::table& table) {
        const CTomlSection section = sectionOf(table, "desk");
        int confirm = static_cast<int>(m_config.confirm);
        section.read({{"accept_forced_confirm", section.flag(m_config.acceptForcedConfirm)},
                      {"confirm", section.choice(confirm, confirmWords(), false)}});
        m_config.confirm = static_cast<EConfirm>(confirm);
        m_confirmLines.m_nAnswer = section.has("confirm") ? section.lineOfKey("confirm") : 0;
    }

    void readSocket(const toml::table& table) {
        const CDefinition definition(m_diagnostics, ESubject::Desk);
        const CTomlSection section = sectionOf(table, "socket");
        section.read({{"allow_remote", section.flag(m_config.allowRemoteSocket)}});
        if (m_config.allowRemoteSocket)
            section.warnAt("allow_remote",
                           "other machines may connect to the order sockets; logins and orders "
                           "are not encrypted");
    }

    void readSwitches(const toml::table& table) {
        const CTomlSection section = sectionOf(table, "switches");
        std::map<std::string, bool> switches{
            {kCommandGuardSwitch, true}, {kConfirmGuardSwitch, true}, {kConfirmReadOnlySwitch, true}};
        std::map<std::string, CTomlSetter> setters;
        for (const std::string& name : switchNames())
            setters[name] = section.flag(switches[name]);
        section.read(setters);
        m_config.switches.clear();
        for (const auto& [name, on] : switches) {
            if (on) m_config.switches.insert(name);
            m_lines.switches[name] = section.lineOfKey(name);
        }
        if (!switches[kCommandGuardSwitch])
            section.warnAt(kCommandGuardSwitch,
                           std::string(kCommandGuardSwitch) +
                               " is off: orders without a market, code, price or volume go out");
        if (m_config.switches.count(TC::kPbDisplaySwitch) != 0)
            section.warnAt(TC::kPbDisplaySwitch,
                           std::string(TC::kPbDisplaySwitch) + " has no effect on the desk");
        if (m_config.switches.count(kForceConfirmSwitch) != 0)
            m_confirmLines.m_nForced = section.lineOfKey(kForceConfirmSwitch);
    }

    void readSettings(const toml::table& table) {
        using D = TC::EDefaultSetting;
        const std::map<std::string, D> kinds = {
            {"stock", D::Stock}, {"future", D::Future}, {"basket", D::Basket}, {"option", D::Option},
            {"neeq", D::Neeq},   {"hgt", D::HGT},       {"gold", D::Gold}};
        const CTomlSection section = sectionOf(table, "settings");
        std::map<std::string, CTomlSetter> setters;
        for (const auto& [word, kind] : kinds) {
            setters[word] = section.table(
                [this, word = word, kind = kind](const auto& t) { readSetting(t, word, kind); });
        }
        section.read(setters);
    }

    void readSetting(const toml::table& table, const std::string& word, TC::EDefaultSetting kind) {
        TC::COrderSetting& setting = m_config.defaultSettings[kind];
        int priceType = static_cast<int>(setting.m_ePriceType);
        int orderType = static_cast<int>(setting.m_eOrderType);
        const CTomlSection section = sectionOf(table, "settings." + word);
        section.read({
            {"price_type", section.choice(priceType, priceTypeWords(), true)},
            {"order_type", section.integer(orderType, 0)},
            {"remark", section.text(setting.m_strCmdLog)},
            {"first_limit", section.number(setting.m_dFirstLimit)},
            {"second_limit", section.number(setting.m_dSecondLimit)},
        });
        setting.m_ePriceType = static_cast<TC::EPriceType>(priceType);
        setting.m_eOrderType = static_cast<TC::EOrderType>(orderType);
        setting.m_bFirstLimitOn = !TC::isInvalidPrice(setting.m_dFirstLimit);
        setting.m_bSecondLimitOn = !TC::isInvalidPrice(setting.m_dSecondLimit);
        warnOfSetting(section, setting, "order_type");
    }

    void readAccount(const toml::table& table) {
        const CDefinition definition(m_diagnostics, ESubject::Accounts);
        CAccountEntry account;
        int broker = static_cast<int>(account.broker);
        const CTomlSection section = sectionOf(table, "account");
        section.read(
            {
                {"key", section.text(account.key)},
                {"display_id", section.text(account.displayId)},
                {"broker", section.choice(broker, brokerWords(), false)},
                {"login_status", section.integer(account.loginStatus, 0)},
                {"simple", section.flag(account.simple)},
                {"funds", section.number(account.funds)},
                {"credit_limit", section.number(account.creditLimit)},
            },
            {"key", "broker", "funds"});
        account.broker = static_cast<TC::EQDBrokerType>(broker);
        if (findAccount(account.key) != nullptr)
            return section.mistakeAt("key", "account \"" + account.key + "\" is defined twice");
        if (account.key.empty() && section.isText("key")) section.mistakeAt("key", "key must not be empty");
        warnOfAccountKey(section, account.key);
        warnOfDisplayId(section, account, m_config.accounts);
        if (account.funds < 0) section.mistakeAt("funds", "funds must not be negative");
        if (account.creditLimit < 0) section.mistakeAt("credit_limit", "credit_limit must not be negative");
        if (account.creditLimit > 0 && account.broker != TC::EQDBrokerType::Credit)
            section.mistakeAt("credit_limit", "credit_limit is for accounts of broker \"credit\" only");
        m_config.accounts.push_back(account);
    }

    void readGroup(const toml::table& table) {
        const CDefinition definition(m_diagnostics, ESubject::Groups);
        CGroupEntry group;
        int broker = static_cast<int>(group.broker);
        const CTomlSection section = sectionOf(table, "group");
        section.read(
            {
                {"name", section.text(group.name)},
                {"broker", section.choice(broker, brokerWords(), false)},
                {"members", section.tables([&](const auto& t) { readMember(t, group); })},
            },
            {"name", "broker", "members"});
        group.broker = static_cast<TC::EQDBrokerType>(broker);
        if (group.name.empty() && section.isText("name")) section.mistakeAt("name", "name must not be empty");
        const toml::array* members = table["members"].as_array();
        if (members != nullptr && members->empty())
            section.mistakeAt("members",
                              "group \"" + group.name + "\" has no accounts; expected at least one");
        checkMembers(section, group);
        for (const CGroupEntry& other : m_config.groups) {
            if (other.name == group.name && other.broker == group.broker) {
                return section.mistakeAt("name", "group \"" + group.name + "\" is defined twice");
            }
        }
        m_config.groups.push_back(group);
    }

    void readMember(const toml::table& table, CGroupEntry& group) {
        CGroupMember member;
        const CTomlSection section = sectionOf(table, "group.members");
        section.read(
            {{"account", section.text(member.accountKey)}, {"weight", section.number(member.weight)}},
            {"account"});
        if (!section.isText("account")) return;
        if (findAccount(member.accountKey) == nullptr) {
            return section.mistakeAt("account",
                                     "account \"" + member.accountKey +
                                         "\" is unknown; expected the key of an [[account]]",
                                     ESubject::Accounts);
        }
        if (!(member.weight > 0)) section.mistakeAt("weight", "weight must be above 0");
        for (const CGroupMember& other : group.members) {
            if (other.accountKey == member.accountKey) {
                return section.mistakeAt("account", "account \"" + member.accountKey +
                                                        "\" is defined twice in the group");
            }
        }
        group.members.push_back(member);
    }

    /// A group's orders go to all of its accounts, so each account must be of the group's kind.
    void checkMembers(const CTomlSection& section, const CGroupEntry& group) const {
        for (const CGroupMember& member : group.members) {
            const CAccountEntry* account = findAccount(member.accountKey);
            if (account == nullptr || account->broker == group.broker) continue;
            return section.mistakeAt("members",
                                     "account \"" + member.accountKey +
                                         "\" is of another broker type than the group \"" + group.name + "\"",
                                     ESubject::Accounts);
        }
    }

    const CAccountEntry* findAccount(const std::string& key) const {
        const auto found = std::find_if(m_config.accounts.begin(), m_config.accounts.end(),
                                        [&](const CAccountEntry& account) { return account.key == key; });
        return found != m_config.accounts.end() ? &*found : nullptr;
    }

    void readBasket(const toml::table& table) {
        std::string name;
        TC::CBasketSetting basket;
        const CTomlSection section = sectionOf(table, "basket");
        section.read({{"name", section.text(name)},
                      {"rows", section.tables([&](const auto& t) { readBasketRow(t, basket); })}},
                     {"name", "rows"});
        const QString key = QString::fromStdString(name);
        if (name.empty() && section.isText("name")) section.mistakeAt("name", "name must not be empty");
        if (m_config.baskets.contains(key))
            return section.mistakeAt("name", "basket \"" + name + "\" is defined twice");
        if (table.contains("rows")) warnOfBasket(section, name, basket);
        m_config.baskets.insert(key, basket);
    }

    void readBasketRow(const toml::table& table, TC::CBasketSetting& basket) {
        TC::CBasketStockData row;
        std::string market, code, name;
        const CTomlSection section = sectionOf(table, "basket.rows");
        section.read(
            {
                {"market", section.text(market)},
                {"code", section.text(code)},
                {"name", section.text(name)},
                {"weight", section.number(row.m_dWeight)},
                {"volume", section.integer(row.m_nVolume, 0)},
                {"operation", section.integer(row.m_eOperationType, 0)},
                {"price", section.number(row.m_dPrice)},
            },
            {"market", "code"});
        if (row.m_dWeight < 0) section.mistakeAt("weight", "weight must not be negative");
        if (!(row.m_dPrice > 0))
            section.mistakeAt("price", "price must be above 0; leave it out if there is no price");
        if (const CInstrumentEntry* stock = checkStock(section, market, code)) {
            checkBareCode(section, market, code);
            warnOfBasketRow(section, basket, row, *stock);
        }
        row.m_strMarket = QString::fromStdString(market);
        row.m_strCode = QString::fromStdString(code);
        row.m_strName = QString::fromStdString(name);
        basket.m_rows.push_back(row);
    }

    /// Returns the stock of a row; null if it is unknown, which is reported.
    const CInstrumentEntry* checkStock(const CTomlSection& section, const std::string& market,
                                       const std::string& code) const {
        const auto stock = std::find_if(
            m_config.instruments.begin(), m_config.instruments.end(), [&](const CInstrumentEntry& entry) {
                return entry.kind == EInstrumentKind::Stock && entry.market == market && entry.code == code;
            });
        if (stock != m_config.instruments.end()) return &*stock;
        if (!market.empty() && !code.empty())
            section.mistakeAt("code",
                              "instrument \"" + market + code +
                                  "\" is unknown; expected market and code of a stock in instruments.csv",
                              ESubject::Instruments);
        return nullptr;
    }

    /// Orders use the codes of a basket without their markets. A code then means the SH stock that trades
    /// under this code. If SH has no such stock, the code means the SZ stock.
    void checkBareCode(const CTomlSection& section, const std::string& market,
                       const std::string& code) const {
        const auto means = [&](const char* name) {
            return std::any_of(
                m_config.instruments.begin(), m_config.instruments.end(), [&](const CInstrumentEntry& entry) {
                    return entry.market == name && entry.code == code && tradesUnderItsCode(entry);
                });
        };
        const std::string meant = means("SH") ? "SH" : means("SZ") ? "SZ" : "";
        if (meant == market) return;
        section.mistakeAt("code",
                          "code \"" + code + "\" means " + (meant.empty() ? "nothing" : meant + code) +
                              " in a basket, not " + market + code,
                          ESubject::Instruments);
    }

    void readPortfolio(const toml::table& table) {
        CPortfolioEntry portfolio;
        const CTomlSection section = sectionOf(table, "portfolio");
        section.read({{"kind", section.integer(portfolio.kind, 0)},
                      {"id", section.text(portfolio.id)},
                      {"rows", section.tables([&](const auto& t) { readPortfolioRow(t, portfolio); })}},
                     {"kind", "id", "rows"});
        // An order line has the id between separators, and blanks at the end of the line are removed. So the
        // id must not contain separators or end in a blank.
        const bool isNamed = !portfolio.id.empty() &&
                             portfolio.id.find_first_of("_,\r\n") == std::string::npos &&
                             std::string_view(" \t\v\f").find(portfolio.id.back()) == std::string_view::npos;
        if (!isNamed && section.isText("id"))
            section.mistakeAt("id", "id is \"" + portfolio.id +
                                        "\"; expected a text without \"_\", \",\" and a blank at its end");
        warnOfPortfolioId(section, portfolio.id);
        if (portfolio.rows.empty() && table.contains("rows"))
            section.mistakeAt("rows", "there are no rows; expected at least one");
        const auto isSame = [&](const CPortfolioEntry& other) {
            return other.kind == portfolio.kind && other.id == portfolio.id;
        };
        if (std::any_of(m_config.portfolios.begin(), m_config.portfolios.end(), isSame)) {
            return section.mistakeAt("id", "portfolio " + std::to_string(portfolio.kind) + "_" +
                                               portfolio.id + " is defined twice");
        }
        m_config.portfolios.push_back(portfolio);
    }

    void readPortfolioRow(const toml::table& table, CPortfolioEntry& portfolio) {
        CPortfolioEntry::CRow row;
        std::string market;
        std::string code;
        const CTomlSection section = sectionOf(table, "portfolio.rows");
        section.read({{"market", section.text(market)},
                      {"code", section.text(code)},
                      {"volume", section.integer(row.volume, 1)}},
                     {"market", "code", "volume"});
        const CInstrumentEntry* stock = checkStock(section, market, code);
        row.stockKey = market + code;
        if (stock != nullptr && !sellsFromAPortfolio(*stock)) {
            section.mistakeAt(
                "code",
                "instrument \"" + row.stockKey +
                    "\" cannot be sold from a portfolio; expected a key of eight characters, in "
                    "capitals, and type 100028 with one of a basket's in instruments.csv",
                ESubject::Instruments);
        }
        if (stock != nullptr) warnOfUnit(section, row.volume, *stock);
        portfolio.rows.push_back(row);
    }

    CDeskConfig& m_config;
    CDiagnostics& m_diagnostics;
    CDeskLines m_lines;
    CConfirmLines m_confirmLines;
};

} // namespace

CDeskLines readDeskToml(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics) {
    if (const auto root = readTomlFile(folder, kDeskFile, diagnostics)) {
        return CDeskTomlReader(config, diagnostics).read(*root);
    }
    diagnostics.spoil(kAllOfDesk);
    return {};
}

} // namespace desk
