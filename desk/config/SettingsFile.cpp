#include "desk/config/SettingsFile.h"

#include "desk/config/TextFile.h"
#include "records/TradeInterface.h"

#include <QDomDocument>

#include <filesystem>
#include <map>

namespace desk {
namespace {

const QString kRootTag = QStringLiteral("settings");
const QString kInterfacesTag = QStringLiteral("interfaceTrade");
const QString kDataAttribute = QStringLiteral("interfacedata");

/// In whose words a person is told what a field must be.
const std::map<bson::EType, const char*> kExpected = {
    {bson::EType::String, "a text in quotes"},
    {bson::EType::Bool, "true or false"},
    {bson::EType::Int32, "a whole number of 32 bits"},
    {bson::EType::Array, "a list of texts"},
};

std::string inQuotes(const QString& text) {
    return "\"" + text.toStdString() + "\"";
}

/// One reading of the file: where its mistakes go, and how many interfaces were good.
struct CReading {
    CDiagnostics& diagnostics;
    int interfaces = 0;

    void mistake(const QDomNode& node, const std::string& message) const {
        diagnostics.add(kSettingsFile, node.lineNumber(), message);
    }
};

void readInterface(const QDomElement& element, CReading& reading) {
    const std::string name = "interface " + inQuotes(element.tagName()) + ": ";
    if (!element.hasAttribute(kDataAttribute) || element.attributes().size() > 1 ||
        !element.firstChildElement().isNull()) {
        return reading.mistake(element, name + "expected the one attribute \"interfacedata\" and no more");
    }
    try {
        knservice::TradeInterfaceData().fillFromJson(element.attribute(kDataAttribute).toStdString());
        ++reading.interfaces;
    } catch (const bson::CTypeError& error) {
        reading.mistake(element, name + error.what() + "; expected " + kExpected.at(error.wanted()));
    } catch (const bson::CError& error) {
        reading.mistake(element, name + error.what());
    }
}

void readRoot(const QDomElement& root, CReading& reading) {
    if (root.tagName() != kRootTag) {
        return reading.mistake(root, "is a document of " + inQuotes(root.tagName()) +
                                         "; expected one of \"settings\"");
    }
    for (QDomElement part = root.firstChildElement(); !part.isNull(); part = part.nextSiblingElement()) {
        if (part.tagName() != kInterfacesTag || !part.previousSiblingElement(kInterfacesTag).isNull()) {
            reading.mistake(part, "unexpected element " + inQuotes(part.tagName()) +
                                      "; expected one \"interfaceTrade\" alone");
            continue;
        }
        for (QDomElement child = part.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement())
            readInterface(child, reading);
    }
}

int readText(const std::string& text, CDiagnostics& diagnostics) {
    QDomDocument document;
    QString reason;
    int line = 0;
    CReading reading{diagnostics};
    if (!document.setContent(QByteArray::fromStdString(text), &reason, &line)) {
        diagnostics.add(kSettingsFile, line,
                        "is not XML: " + reason.toStdString() +
                            "; expected <settings> with <interfaceTrade> in it");
    } else {
        readRoot(document.documentElement(), reading);
    }
    return reading.interfaces;
}

} // namespace

void readSettings(const std::string& folder, CDeskConfig& config, CDiagnostics& diagnostics) {
    std::string text;
    const EFileRead read = readTextFile(folder + "/" + kSettingsFile, text);
    if (read == EFileRead::Missing) return;
    if (read == EFileRead::Unreadable) {
        diagnostics.add(kSettingsFile, 0, "cannot be read; expected a file, or none");
        return;
    }
    readText(text, diagnostics);
    config.settings = text;
}

utils::KNError saveSettings(const std::string& folder, const std::string& text, int interfaces) {
    constexpr int kCannotBeReadAgain = 2;
    const std::string path = (std::filesystem::path(folder) / kSettingsFile).string();
    CDiagnostics diagnostics;
    const int found = readText(text, diagnostics);
    const std::vector<CDiagnostic> mistakes = diagnostics.take();
    if (!mistakes.empty()) {
        return {kCannotBeReadAgain,
                path + " stays as it was, since the new one could not be read again: " + mistakes[0].message};
    }
    if (found != interfaces) {
        return {kCannotBeReadAgain,
                path + " stays as it was: an interface has no name that can stand in XML"};
    }
    return replaceTextFile(std::filesystem::absolute(folder).lexically_normal().string(), kSettingsFile,
                           text);
}

} // namespace desk
