#include "orderservice/service/Settings.h"

#include <boost/make_shared.hpp>

#include <QDomDocument>
#include <QDomElement>

#include <vector>

namespace TC {
namespace {

const QString kInterfacesTag = QString::fromLatin1(knservice::kInterfacesTag);
const QString kDataAttribute = QString::fromLatin1(knservice::kInterfaceDataAttribute);

} // namespace

void loadInterfaces(const QDomElement& element, knservice::TradeInterfaceList& interfaces) {
    const QDomElement parent = element.elementsByTagName(kInterfacesTag).at(0).toElement();
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const auto record = boost::make_shared<knservice::TradeInterfaceData>();
        record->fillFromJson(child.attribute(kDataAttribute).toStdString());
        interfaces.push_back(record);
    }
}

void saveInterfaces(const knservice::TradeInterfaceList& interfaces, QDomElement& element,
                    QDomDocument& document) {
    std::vector<QDomElement> children; // filled before the first child is appended, because toJson can throw
    for (const knservice::TradeInterfaceDataPtr& record : interfaces) {
        if (record == nullptr) continue;
        // The name is not checked against the rules of XML. For an empty name the document creates no
        // element, and appendChild then does nothing.
        QDomElement child = document.createElement(QString::fromStdString(record->m_strInterface));
        child.setAttribute(kDataAttribute, QString::fromStdString(record->toJson()));
        children.push_back(child);
    }
    for (const QDomElement& child : children)
        element.appendChild(child);
}

} // namespace TC
