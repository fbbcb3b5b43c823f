#pragma once

#include "orderservice/records/TradeInterface.h"

class QDomDocument;
class QDomElement;

/// The interfaces of the trade framework in the host's settings document. The element "interfaceTrade" has
/// one child for each interface. The child's attribute "interfacedata" contains the interface's JSON text.
namespace TC {

/// Appends the interfaces of the first element "interfaceTrade" at any depth below `element`. Does nothing if
/// there is no such element. Throws the exceptions of TradeInterfaceData::fillFromJson at the first child
/// that cannot be read; the interfaces before it have been appended by then.
void loadInterfaces(const QDomElement& element, knservice::TradeInterfaceList& interfaces);

/// Appends a child to `element`, which is the "interfaceTrade" element itself, for each interface that is not
/// null.
void saveInterfaces(const knservice::TradeInterfaceList& interfaces, QDomElement& element,
                    QDomDocument& document);

} // namespace TC
