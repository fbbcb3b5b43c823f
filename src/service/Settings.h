#pragma once

#include "records/TradeInterface.h"

class QDomDocument;
class QDomElement;

/// The interfaces of the trade framework in the host's settings document: below an element "interfaceTrade",
/// one child for each, with the interface's JSON text in its attribute "interfacedata".
namespace TC {

/// Appends what stands in the first "interfaceTrade" anywhere below the element; without one does nothing.
/// Throws what TradeInterfaceData::fillFromJson throws, at the first child that cannot be read; those before
/// it have been appended then.
void loadInterfaces(const QDomElement& element, knservice::TradeInterfaceList& interfaces);

/// Appends a child to the element, which is the "interfaceTrade" itself, for each interface that is not null.
void saveInterfaces(const knservice::TradeInterfaceList& interfaces, QDomElement& element,
                    QDomDocument& document);

} // namespace TC
