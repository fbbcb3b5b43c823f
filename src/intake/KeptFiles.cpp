#include "orderservice/intake/KeptFiles.h"

#include "orderservice/base/Text.h"

namespace TC {
namespace {

std::string rejectedPath() {
    return utils::toPathBytes(rejectedFolder());
}

/// The part of a kept file's name that follows its writer's name. The name alone shows whether orders of the
/// file may have been placed. This matters if a crash comes between the move and the report.
const char* markOf(EKeptFile kind) {
    switch (kind) {
    case EKeptFile::CutShort:
        return ".cut";
    case EKeptFile::LeftOver:
        return kTmpSuffix;
    case EKeptFile::Refused:
        break;
    }
    return "";
}

/// The cause that is reported for a file found under its .tmp name.
QString causeOfFound(EKeptFile kind) {
    if (kind == EKeptFile::Refused)
        return QStringLiteral("it was refused before and could not be moved then");
    if (kind == EKeptFile::CutShort)
        return QStringLiteral("a part of it was carried out before, and it could not be moved then");
    return QStringLiteral(
        "an earlier run left it there, and its orders may have gone out already: see the journal");
}

} // namespace

void CKeptFiles::keep(CTakenFile& file, EKeptFile kind, CIntakeReport& report) {
    note(file.keep(markOf(kind), rejectedPath()), kind, report);
}

CPutAside CKeptFiles::moveLeftOver(const std::string& source, CIntakeReport& report) {
    const std::string tmpPath = source + kTmpSuffix;
    const auto unmoved = m_unmoved.find(tmpPath);
    const EKeptFile kind = unmoved != m_unmoved.end() ? unmoved->second : EKeptFile::LeftOver;
    CPutAside kept = putAside(tmpPath, source + markOf(kind), rejectedPath());
    if (!kept.m_bMoved) return kept;
    forget(source);
    report.m_strSource += QLatin1String(kTmpSuffix);
    report.m_bRejected = kind == EKeptFile::Refused;
    report.m_bLeftOver = !report.m_bRejected;
    report.m_strCause = causeOfFound(kind);
    note(kept, kind, report);
    return kept;
}

void CKeptFiles::note(const CPutAside& kept, EKeptFile kind, CIntakeReport& report) {
    report.m_strKeptAs = QString::fromStdString(kept.m_strPath);
    if (!kept.m_strTrouble.empty())
        report.m_strCause += QStringLiteral("; ") + QString::fromLocal8Bit(kept.m_strTrouble.c_str());
    if (!kept.m_bMoved) m_unmoved[kept.m_strPath] = kind;
}

} // namespace TC
