#include "desk/journal/RecordCapture.h"

namespace desk {
namespace {

thread_local CRecordCapture* s_pCapture = nullptr;

} // namespace

CRecordCapture::CRecordCapture() : m_pOuter(s_pCapture) {
    s_pCapture = this;
}

CRecordCapture::~CRecordCapture() {
    s_pCapture = m_pOuter;
}

bool CRecordCapture::isActive() {
    return s_pCapture != nullptr;
}

void CRecordCapture::note(const CJournalRecord& record, std::int64_t seq) {
    if (s_pCapture == nullptr) return;
    const bool isCommand = record.m_strKind == "command";
    s_pCapture->m_records.push_back({record.m_strKind, isCommand ? std::string() : record.m_strFields,
                                     isCommand ? record.m_numbers.m_task : std::nullopt, seq});
}

} // namespace desk
