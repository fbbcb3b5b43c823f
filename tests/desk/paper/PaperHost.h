#pragma once

#include "desk/host/BrokerJournal.h"
#include "desk/journal/Json.h"
#include "tests/desk/paper/PaperDesk.h"

#include <nlohmann/json.hpp>

#include <sstream>

namespace desk::test {

/// Host services with a broker whose events are written to the journal.
class PaperHost : public PaperDesk {
protected:
    PaperHost() {
        EXPECT_TRUE(m_journal.open(m_folder.path()).isSuccess());
        m_broker.reset();
        m_broker = std::make_unique<CPaperBroker>(m_quotes, [this](const std::vector<CBrokerEvent>& events) {
            return journalBrokerEvents(m_journal, events);
        });
        EXPECT_TRUE(m_broker->open(m_folder.path(), deskAccounts(), 0).isSuccess());
    }

    TC::COrderComandParamPtr command(std::vector<TC::CCodeOrderParam> codes) const {
        return boost::make_shared<TC::COrderComandParam>(stockCommand(std::move(codes)));
    }
    std::uintmax_t journalSize() const { return std::filesystem::file_size(m_folder.file(kJournalFileName)); }
    CTexts kinds() const {
        CTexts kinds;
        for (const std::string& line : m_folder.lines(kJournalFileName))
            kinds.push_back(CJson::parse(line)["kind"]);
        return kinds;
    }
    CJson record(std::size_t place) const { return CJson::parse(m_folder.lines(kJournalFileName).at(place)); }

    /// Breaks the journal. It stays broken until a probe.
    void failJournal() {
        const CFullDisk disk(journalSize());
        EXPECT_FALSE(m_journal.append("message", CJson::object()).isSuccess());
    }

    CJournal m_journal;
    std::ostringstream m_shown;
    CTextSink m_sink{m_shown};
};

} // namespace desk::test
