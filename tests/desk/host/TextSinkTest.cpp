#include "desk/host/TextSink.h"
#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace desk {
namespace {

class TextSink : public testing::Test {
protected:
    void flood(CTextSink& sink, EFloodLine kind, int lines) {
        for (int i = 0; i < lines; ++i)
            sink.writeFloodLine(kind, true, "line");
    }
    std::string shown() {
        std::string text = m_out.str();
        m_out.str({});
        return text;
    }
    std::ptrdiff_t shownLines() {
        const std::string text = shown();
        return std::count(text.begin(), text.end(), '\n');
    }

    CFakeClock m_clock;
    std::ostringstream m_out;
};

TEST_F(TextSink, FloodOfOneKindIsCountedAtTheEndOfTheSecond) {
    CTextSink sink(m_out);
    flood(sink, EFloodLine::Refusal, CTextSink::kLinesPerSecond + 20);
    EXPECT_EQ(shownLines(), CTextSink::kLinesPerSecond);
    sink.poll();
    EXPECT_EQ(shown(), "");
    m_clock.sleep(1);
    sink.poll();
    EXPECT_EQ(shown(), "(refused orders: 20 more lines in one second; the journal has each of them)\n");
    sink.poll();
    EXPECT_EQ(shown(), "");
}

TEST_F(TextSink, NextSecondShowsLinesAgainAfterTheCount) {
    CTextSink sink(m_out);
    flood(sink, EFloodLine::File, CTextSink::kLinesPerSecond + 1);
    shown();
    m_clock.sleep(1);
    flood(sink, EFloodLine::File, 1);
    EXPECT_EQ(shown(), "(order files: 1 more line in one second; the journal has each of them)\nline\n");
}

TEST_F(TextSink, ListenerGetsAlsoTheLinesThatAreLeftOut) {
    CTextSink sink(m_out);
    int plain = 0;
    int refusals = 0;
    sink.setListener([&](const EFloodLine* kind, ESeverity, const std::string&) {
        ++(kind == nullptr ? plain : refusals);
    });
    flood(sink, EFloodLine::Refusal, CTextSink::kLinesPerSecond + 20);
    sink.writeLine("line");
    EXPECT_EQ(refusals, CTextSink::kLinesPerSecond + 20);
    EXPECT_EQ(plain, 1);
}

TEST_F(TextSink, WriterSaysWhetherALineIsAWarning) {
    CTextSink sink(m_out);
    std::vector<ESeverity> severities;
    sink.setListener(
        [&](const EFloodLine*, ESeverity severity, const std::string&) { severities.push_back(severity); });
    sink.writeLine("note");
    sink.writeLine("warning", ESeverity::Warning);
    sink.writeFloodLine(EFloodLine::Refusal, true, "warning");
    sink.writeFloodLine(EFloodLine::Incident, true, "warning");
    sink.writeFloodLine(EFloodLine::File, true, "note");
    sink.writeFloodLine(EFloodLine::File, true, "warning", ESeverity::Warning);
    sink.writeFloodLine(EFloodLine::Note, true, "note");
    const auto note = ESeverity::Note;
    const auto warning = ESeverity::Warning;
    EXPECT_EQ(severities, (std::vector<ESeverity>{note, warning, warning, warning, note, warning, note}));
}

TEST_F(TextSink, KindsAreCountedApart) {
    CTextSink sink(m_out);
    flood(sink, EFloodLine::Message, CTextSink::kLinesPerSecond + 1);
    shown();
    sink.writeFloodLine(EFloodLine::Incident, true, "incident");
    sink.writeLine("always");
    EXPECT_EQ(shown(), "incident\nalways\n");
}

TEST_F(TextSink, LineThatTheJournalDoesNotHaveIsAlwaysShown) {
    CTextSink sink(m_out);
    flood(sink, EFloodLine::Refusal, CTextSink::kLinesPerSecond);
    shown();
    sink.writeFloodLine(EFloodLine::Refusal, false, "not in the journal");
    EXPECT_EQ(shown(), "not in the journal\n");
}

TEST_F(TextSink, EndShowsTheCount) {
    {
        CTextSink sink(m_out);
        flood(sink, EFloodLine::Message, CTextSink::kLinesPerSecond + 2);
        shown();
    }
    EXPECT_EQ(shown(), "(messages: 2 more lines in one second; the journal has each of them)\n");
}

} // namespace
} // namespace desk
