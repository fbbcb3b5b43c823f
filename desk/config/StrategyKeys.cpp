#include "desk/config/StrategyKeys.h"

#include "desk/config/SettingWarnings.h"
#include "desk/config/StrategyCompare.h"
#include "desk/config/Words.h"
#include "orderservice/records/Families.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace desk {
namespace {

using TC::COrderSetting;
using TC::COrderStrategyParam;

/// The word for a value that is not set although the default has a value.
constexpr const char* kUnsetWord = "unset";

bool isUnsetWord(const toml::node& node) {
    return node.value_exact<std::string>() == kUnsetWord;
}

/// One key of a record: how it is read, and how it is written if it differs from the record from which
/// reading starts.
template<typename R>
struct CRecordKey {
    std::string m_strName;
    std::function<CTomlSetter(const CTomlSection&, R&)> m_setter;
    std::function<void(toml::table&, const R& record, const R& start)> m_insert;
};

CTomlSetter setterOf(const CTomlSection& section, bool& target) {
    return section.flag(target);
}

CTomlSetter setterOf(const CTomlSection& section, std::string& target) {
    return section.text(target);
}

CTomlSetter setterOf(const CTomlSection& section, QString& target) {
    return [&](const toml::node& node) {
        std::string text = target.toStdString();
        section.text(text)(node);
        target = QString::fromStdString(text);
    };
}

CTomlSetter setterOf(const CTomlSection& section, double& target) {
    return [&, read = section.number(target)](const toml::node& node) {
        if (isUnsetWord(node)) {
            target = TC::kUnsetDouble;
        } else {
            read(node);
        }
    };
}

CTomlSetter setterOf(const CTomlSection& section, int& target) {
    return [&, read = section.integer(target, 0)](const toml::node& node) {
        if (isUnsetWord(node)) {
            target = TC::kUnsetInt;
        } else {
            read(node);
        }
    };
}

/// Reads a document from the text of one JSON object.
CTomlSetter setterOf(const CTomlSection& section, bson::BSONObj& target) {
    return [&](const toml::node& node) {
        std::string text = target.jsonString();
        section.text(text)(node);
        try {
            target = bson::fromjson(text);
        } catch (const bson::CJsonError& error) {
            section.mistake(node, std::string("hedge_param: ") + error.what());
        }
    };
}

/// Reads an enumeration by its number or a word; `words` is null if it has no words.
template<typename E>
CTomlSetter enumSetter(const CTomlSection& section, E& target, const std::map<std::string, int>* words,
                       bool numberToo) {
    return [&target, &section, words, numberToo](const toml::node& node) {
        int number = static_cast<int>(target);
        if (isUnsetWord(node) && numberToo) {
            number = static_cast<int>(TC::unsetEnum<E>());
        } else if (words != nullptr) {
            section.choice(number, *words, numberToo)(node);
        } else {
            section.integer(number, 0)(node);
        }
        target = static_cast<E>(number);
    };
}

void insertValue(toml::table& table, const std::string& name, bool value) {
    table.insert(name, value);
}

void insertValue(toml::table& table, const std::string& name, const std::string& value) {
    table.insert(name, value);
}

void insertValue(toml::table& table, const std::string& name, const QString& value) {
    table.insert(name, value.toStdString());
}

void insertValue(toml::table& table, const std::string& name, const bson::BSONObj& value) {
    table.insert(name, value.jsonString());
}

template<typename T>
void insertNumber(toml::table& table, const std::string& name, T value, bool isUnset) {
    if (isUnset) {
        table.insert(name, kUnsetWord);
    } else {
        table.insert(name, value);
    }
}

void insertValue(toml::table& table, const std::string& name, double value) {
    insertNumber(table, name, value, TC::isInvalidPrice(value));
}

void insertValue(toml::table& table, const std::string& name, int value) {
    insertNumber(table, name, value, TC::isUnset(value));
}

template<typename R, typename T>
CRecordKey<R> plainKey(const char* name, T R::*member) {
    return {name, [=](const CTomlSection& section, R& record) { return setterOf(section, record.*member); },
            [=](toml::table& table, const R& record, const R& start) {
                if (!isSame(record.*member, start.*member)) insertValue(table, name, record.*member);
            }};
}

template<typename R, typename E>
CRecordKey<R> enumKey(const char* name, E R::*member) {
    return {name,
            [=](const CTomlSection& section, R& record) {
                return enumSetter(section, record.*member, nullptr, true);
            },
            [=](toml::table& table, const R& record, const R& start) {
                const E value = record.*member;
                if (value != start.*member)
                    insertNumber(table, name, static_cast<int>(value), TC::isUnset(value));
            }};
}

/// A key that is always written, so that a reader of the file sees its value.
template<typename R, typename E>
CRecordKey<R> wordKey(const char* name, E R::*member, const std::map<std::string, int>& words,
                      bool numberToo) {
    return {name,
            [=, &words](const CTomlSection& section, R& record) {
                return enumSetter(section, record.*member, &words, numberToo);
            },
            [=, &words](toml::table& table, const R& record, const R&) {
                const int number = static_cast<int>(record.*member);
                const std::string word = wordFor(words, number);
                if (words.count(word) != 0) {
                    table.insert(name, word);
                } else {
                    insertNumber(table, name, number, TC::isUnset(record.*member));
                }
            }};
}

/// A number with an on/off switch. If only the number is given, its switch is on.
template<typename R>
struct CSwitchedNumber {
    const char* m_pszNumber;
    const char* m_pszSwitch;
    double R::*m_number;
    bool R::*m_switch;
};

template<typename R>
struct CRecordKeys {
    std::vector<CRecordKey<R>> m_keys;
    std::vector<CSwitchedNumber<R>> m_switched;
};

const CRecordKeys<COrderSetting>& settingKeys() {
    static const CRecordKeys<COrderSetting> keys = {
        {
            wordKey("price_type", &COrderSetting::m_ePriceType, priceTypeWords(), true),
            enumKey("order_kind", &COrderSetting::m_eOrderType),
            {"remark", plainKey("remark", &COrderSetting::m_strCmdLog).m_setter,
             [](toml::table& table, const COrderSetting& setting, const COrderSetting&) {
                 // Always written: a missing remark means the default's remark, not an empty one.
                 insertValue(table, "remark", setting.m_strCmdLog);
             }},
        },
        {
            {"first_limit", "first_limit_on", &COrderSetting::m_dFirstLimit, &COrderSetting::m_bFirstLimitOn},
            {"second_limit", "second_limit_on", &COrderSetting::m_dSecondLimit,
             &COrderSetting::m_bSecondLimitOn},
        }};
    return keys;
}

const CRecordKeys<COrderStrategyParam>& strategyKeys() {
    using P = COrderStrategyParam;
    static const CRecordKeys<P> keys = {
        {
            {"channel",
             [](const CTomlSection& section, P& strategy) { return section.integer(strategy.m_nChannel, 1); },
             [](toml::table& table, const P& strategy, const P&) {
                 table.insert("channel", strategy.m_nChannel);
             }},
            wordKey("source", &P::m_eStrategyType, sourceWords(), false),
            wordKey("family", &P::m_eTradeType, familyWords(), false),
            plainKey("user", &P::m_strUser),
            plainKey("pass", &P::m_strPass),
            plainKey("code", &P::m_strCode),
            plainKey("volume", &P::m_nVolume),
            plainKey("further1", &P::m_nFurther1),
            plainKey("further2", &P::m_nFurther2),
            plainKey("account_mode", &P::m_nAccountMode),
            plainKey("hedge_basket", &P::m_bHedgeBasket),
            plainKey("hedge_param", &P::m_hedgeParam),
            plainKey("command_flag", &P::m_bCommandFlag),
            enumKey("order_type", &P::m_eOrderType),
            enumKey("position_type", &P::m_ePositionType),
        },
        {
            {"amount", "use_amount", &P::m_dAmount, &P::m_bUseAmount},
            {"percent", "by_percent", &P::m_dPercent, &P::m_bByPercent},
        }};
    return keys;
}

template<typename R>
void addSetters(const CRecordKeys<R>& keys, const CTomlSection& section, R& record,
                std::map<std::string, CTomlSetter>& setters) {
    for (const CRecordKey<R>& key : keys.m_keys)
        setters[key.m_strName] = key.m_setter(section, record);
    for (const CSwitchedNumber<R>& pair : keys.m_switched) {
        setters[pair.m_pszNumber] = setterOf(section, record.*pair.m_number);
        setters[pair.m_pszSwitch] = setterOf(section, record.*pair.m_switch);
    }
}

template<typename R>
void switchOn(const CRecordKeys<R>& keys, const toml::table& table, R& record) {
    for (const CSwitchedNumber<R>& pair : keys.m_switched) {
        if (table.contains(pair.m_pszNumber) && !table.contains(pair.m_pszSwitch))
            record.*pair.m_switch = !TC::isInvalidPrice(record.*pair.m_number);
    }
}

template<typename R>
void insertKeys(const CRecordKeys<R>& keys, toml::table& table, const R& record, const R& start) {
    for (const CRecordKey<R>& key : keys.m_keys)
        key.m_insert(table, record, start);
    for (const CSwitchedNumber<R>& pair : keys.m_switched) {
        const double number = record.*pair.m_number;
        const bool isWritten = !isSame(number, start.*pair.m_number);
        if (isWritten) insertValue(table, pair.m_pszNumber, number);
        const bool implied = isWritten ? !TC::isInvalidPrice(number) : start.*pair.m_switch;
        if (record.*pair.m_switch != implied) table.insert(pair.m_pszSwitch, record.*pair.m_switch);
    }
}

/// Returns the slot for a strategy's own settings before the keys are read: their target slot depends on the
/// key "family".
TC::ESettingSlot ownSlot(const toml::table& table) {
    const auto word = table["family"].value<std::string>();
    const auto found = word ? familyWords().find(*word) : familyWords().end();
    return found != familyWords().end()
               ? TC::settingSlotOf(static_cast<TC::EOrderStrategyTradeType>(found->second))
               : TC::ESettingSlot::Stock;
}

/// Reads one [[strategy.setting]] table. `taken`: the slots that already have their settings.
void readSlot(const CTomlSection& section, const toml::table& table, COrderStrategyParam& strategy,
              std::set<int>& taken) {
    const int slot = static_cast<int>(table["slot"].value<std::int64_t>().value_or(-1));
    const bool isSlot = slot >= 0 && slot < TC::kSettingSlots;
    COrderSetting unread;
    COrderSetting& setting = isSlot ? strategy.setting(static_cast<TC::ESettingSlot>(slot)) : unread;
    std::map<std::string, CTomlSetter> setters;
    addSetters(settingKeys(), section, setting, setters);
    setters["slot"] = [&](const toml::node& node) {
        if (!isSlot) section.expected(node, "a slot's number, 0 to " + std::to_string(TC::kSettingSlots - 1));
    };
    section.read(setters, {"slot"});
    switchOn(settingKeys(), table, setting);
    warnOfSetting(section, setting, "order_kind");
    if (isSlot && !taken.insert(slot).second)
        section.mistakeAt("slot",
                          "slot " + std::to_string(slot) +
                              " is defined twice; the settings of the family's own slot are in [[strategy]]");
}

QString sourcePath(const std::filesystem::path& folder, const COrderStrategyParam& strategy,
                   const std::string& path) {
    const bool isFile = strategy.comesFromFile() && !path.empty();
    return QString::fromStdString(isFile ? (folder / path).lexically_normal().string() : path);
}

std::string writtenPath(const std::filesystem::path& folder, const COrderStrategyParam& strategy) {
    std::string path = strategy.m_strSignalSource.toStdString();
    if (!strategy.comesFromFile()) return path;
    const auto relative = std::filesystem::path(path).lexically_relative(folder);
    return relative.empty() || *relative.begin() == ".." ? path : relative.string();
}

} // namespace

COrderStrategyParam freshStrategy(const CDeskConfig& config) {
    COrderStrategyParam strategy;
    strategy.m_nChannel = 0;
    for (int slot = 0; slot < TC::kSettingSlots; ++slot) {
        const auto found =
            config.defaultSettings.find(TC::defaultForSlot(static_cast<TC::ESettingSlot>(slot)));
        if (found != config.defaultSettings.end())
            strategy.setting(static_cast<TC::ESettingSlot>(slot)) = found->second;
    }
    return strategy;
}

COrderStrategyParam readStrategyKeys(const std::filesystem::path& folder, const CDeskConfig& config,
                                     const toml::table& table, const CTomlSection& section) {
    COrderStrategyParam strategy = freshStrategy(config);
    const TC::ESettingSlot own = ownSlot(table);
    std::set<int> taken = {static_cast<int>(own)};
    std::optional<std::string> name, group, account;
    std::string path;
    bool running = false;
    std::map<std::string, CTomlSetter> setters = {
        {"name", [&](const toml::node& node) { section.text(name.emplace())(node); }},
        {"group", [&](const toml::node& node) { section.text(group.emplace())(node); }},
        {"account", [&](const toml::node& node) { section.text(account.emplace())(node); }},
        {"path", section.text(path)},
        {"running", section.flag(running)},
        {"setting", section.tables([&](const toml::table& slot) {
             readSlot(section.below(slot, "strategy.setting"), slot, strategy, taken);
         })}};
    addSetters(strategyKeys(), section, strategy, setters);
    addSetters(settingKeys(), section, strategy.setting(own), setters);
    section.read(setters, {"channel", "source", "family"});
    switchOn(strategyKeys(), table, strategy);
    switchOn(settingKeys(), table, strategy.setting(own));
    strategy.m_strName = QString::fromStdString(name.value_or("策略" + std::to_string(strategy.m_nChannel)));
    strategy.m_strSignalSource = sourcePath(folder, strategy, path);
    strategy.m_eSelectedAccountType =
        account ? TC::ESelectedAccountType::Account : TC::ESelectedAccountType::Group;
    strategy.m_strSelectedAccount = QString::fromStdString(account ? *account : group.value_or(""));
    strategy.m_nStatus = running ? COrderStrategyParam::kRunning : COrderStrategyParam::kStopped;
    const bool isEmpty = strategy.m_strSelectedAccount.isEmpty();
    if (group && account)
        section.mistakeAt(section.lineOfKey("group") > section.lineOfKey("account") ? "group" : "account",
                          "expected either \"group\" or \"account\"");
    else if (isEmpty && running)
        section.reportMissing(group ? "group" : "account", "; expected either \"group\" or \"account\"");
    return strategy;
}

toml::table strategyTable(const std::filesystem::path& folder, const CDeskConfig& config,
                          const COrderStrategyParam& strategy) {
    const COrderStrategyParam start = freshStrategy(config);
    const TC::ESettingSlot own = TC::settingSlotOf(strategy.m_eTradeType);
    const bool isAccount = strategy.m_eSelectedAccountType == TC::ESelectedAccountType::Account;
    toml::table table;
    insertKeys(strategyKeys(), table, strategy, start);
    insertKeys(settingKeys(), table, strategy.setting(own), start.setting(own));
    insertValue(table, "name", strategy.m_strName);
    table.insert("path", writtenPath(folder, strategy));
    table.insert("running", strategy.isRunning());
    if (isAccount || !strategy.m_strSelectedAccount.isEmpty())
        insertValue(table, isAccount ? "account" : "group", strategy.m_strSelectedAccount);
    toml::array otherSettings;
    for (int number = 0; number < TC::kSettingSlots; ++number) {
        const auto slot = static_cast<TC::ESettingSlot>(number);
        if (slot == own || isSame(strategy.setting(slot), start.setting(slot))) continue;
        toml::table further{{"slot", number}};
        insertKeys(settingKeys(), further, strategy.setting(slot), start.setting(slot));
        otherSettings.push_back(std::move(further));
    }
    if (!otherSettings.empty()) table.insert("setting", std::move(otherSettings));
    return table;
}

} // namespace desk
