#include "orderservice/records/OrderSetting.h"

#include <array>

namespace TC {
namespace {

// The index is the slot number.
constexpr std::array<EDefaultSetting, kSettingSlots> kDefaults = {
    EDefaultSetting::Stock,  EDefaultSetting::Future, EDefaultSetting::Future, EDefaultSetting::Future,
    EDefaultSetting::Future, EDefaultSetting::Future, EDefaultSetting::Basket, EDefaultSetting::None,
    EDefaultSetting::Stock,  EDefaultSetting::Option, EDefaultSetting::Neeq,   EDefaultSetting::HGT,
    EDefaultSetting::Gold,   EDefaultSetting::None,   EDefaultSetting::None,   EDefaultSetting::None,
};

} // namespace

EDefaultSetting defaultForSlot(ESettingSlot slot) {
    return kDefaults.at(static_cast<std::size_t>(slot));
}

QVector<COrderSetting> defaultFurtherSettings() {
    static const QVector<COrderSetting> settings(kSettingSlots - 1);
    return settings;
}

} // namespace TC
