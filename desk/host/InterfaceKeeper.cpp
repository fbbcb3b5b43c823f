#include "desk/host/InterfaceKeeper.h"

#include "desk/config/SettingsFile.h"
#include "orderservice/service/OrderService.h"

#include <QDomDocument>

namespace desk {

CInterfaceKeeper::CInterfaceKeeper(std::string folder, std::string settings,
                                   CDeskTradeFrameworkSource& framework)
    : m_strFolder(std::move(folder)), m_strSettings(std::move(settings)), m_framework(framework) {}

void CInterfaceKeeper::load() {
    QDomDocument document;
    document.setContent(QByteArray::fromStdString(m_strSettings));
    QDomElement root = document.documentElement();
    TC::COrderService& service = *TC::COrderService::instance();
    service.loadSettings(root);
    m_framework.setInterfaces(service.interfaces());
    m_saved = current();
}

utils::KNError CInterfaceKeeper::save() {
    constexpr int kIndent = 4;
    const std::vector<std::string> texts = current();
    if (texts == m_saved) return {};
    QDomDocument document;
    document.setContent(QByteArray(kEmptySettings));
    QDomElement element = document.documentElement().firstChildElement();
    TC::COrderService::instance()->saveSettings(element, document);
    const utils::KNError saved = saveSettings(m_strFolder, document.toByteArray(kIndent).toStdString(),
                                              m_framework.getAllInterfaces());
    if (saved.isSuccess()) m_saved = texts;
    return saved;
}

std::vector<std::string> CInterfaceKeeper::current() const {
    std::vector<std::string> texts;
    for (const knservice::TradeInterfaceDataPtr& record : m_framework.getAllInterfaces()) {
        if (record != nullptr) texts.push_back(record->toJson());
    }
    return texts;
}

} // namespace desk
