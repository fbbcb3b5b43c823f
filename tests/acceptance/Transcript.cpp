#include "tests/acceptance/Transcript.h"

#include "orderservice/base/Text.h"

#include <fstream>
#include <stdexcept>
#include <utility>

namespace {

char unescapeOne(const std::string& text, std::size_t& i) {
    switch (text.at(++i)) {
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '\\':
        return '\\';
    case 'x': {
        const char byte = static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
        i += 2;
        return byte;
    }
    default:
        throw std::runtime_error("unknown escape in: " + text);
    }
}

std::string unescape(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i)
        bytes += text[i] == '\\' ? unescapeOne(text, i) : text[i];
    return bytes;
}

bool startsWith(const std::string& line, const std::string& head) {
    return line.compare(0, head.size(), head) == 0;
}

class CReader {
public:
    void addLine(const std::string& line) {
        if (startsWith(line, "C: ")) {
            addTalk(CTalkLine::EWho::Client, encode(line.substr(3)));
        } else if (startsWith(line, "S: ")) {
            addTalk(CTalkLine::EWho::Server, utils::safeUtf82Gbk(line.substr(3)));
        } else if (line == "S closes") {
            addTalk(CTalkLine::EWho::ServerCloses, "");
        } else if (startsWith(line, ">> ")) {
            addBytes(line.substr(3), "");
        } else if (startsWith(line, "> ") || line == ">") {
            addBytes(line.size() > 2 ? line.substr(2) : "", "\n");
        } else if (line == "expect") {
            m_bExpecting = true;
        } else if (line.empty() || line[0] == '#') {
            if (line.empty()) endExpecting();
        } else if (m_bExpecting) {
            m_transcript.steps.back().expected.push_back(line);
        } else {
            addStatement(line);
        }
    }

    CTranscript take() { return std::move(m_transcript); }

private:
    void endExpecting() {
        m_bStepDone = m_bStepDone || m_bExpecting;
        m_bExpecting = false;
    }

    void addStatement(const std::string& line) {
        const bool isNewStep = m_transcript.steps.empty() || m_bStepDone;
        if (isNewStep) m_transcript.steps.emplace_back();
        m_bStepDone = false;
        const std::size_t blank = line.find(' ');
        const std::string rest = blank != std::string::npos ? line.substr(blank + 1) : "";
        m_transcript.steps.back().statements.push_back({line.substr(0, blank), rest, "", {}});
    }

    CStatement& statement() { return m_transcript.steps.back().statements.back(); }

    /// Converts the statement's text to the bytes that it describes.
    std::string encode(const std::string& text) {
        const bool isGbk = statement().rest.find("gbk") != std::string::npos;
        return unescape(isGbk ? utils::safeUtf82Gbk(text) : text);
    }

    void addBytes(const std::string& text, const std::string& end) {
        statement().bytes += encode(text) + end;
        m_bStepDone = true;
    }

    void addTalk(CTalkLine::EWho who, std::string bytes) {
        statement().talk.push_back({who, std::move(bytes)});
        m_bStepDone = true;
    }

    CTranscript m_transcript;
    bool m_bExpecting = false;
    bool m_bStepDone = false; ///< the next statement starts another step
};

} // namespace

CTranscript readTranscript(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    CReader reader;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        try {
            reader.addLine(line);
        } catch (const std::exception& error) {
            throw std::runtime_error(path + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    return reader.take();
}
