// Cuts any bytes into any pieces and sends them through the framing of the order socket. The result must be
// the lines of the whole stream, whether each line is taken at once or left for the next piece.
//
// The first byte chooses the lines that wait for the next piece. The second byte is the number of lengths
// that follow. The lengths are used repeatedly to cut the remaining bytes.
#include "orderservice/socket/LineFraming.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kMaxCuts = 16;

void require(bool condition) {
    if (!condition) std::abort();
}

/// The lines of a stream, and the bytes after the last line.
struct CFrames {
    std::vector<std::string> lines;
    std::string rest;
    bool hasLoneFeed = false;
};

bool operator==(const CFrames& a, const CFrames& b) {
    return a.lines == b.lines && a.rest == b.rest && a.hasLoneFeed == b.hasLoneFeed;
}

CFrames framesOf(std::string_view stream) {
    CFrames frames;
    for (std::size_t feed = stream.find('\n'); feed != std::string_view::npos; feed = stream.find('\n')) {
        frames.hasLoneFeed = feed == 0 || stream[feed - 1] != '\r';
        if (frames.hasLoneFeed) break;
        frames.lines.emplace_back(stream.substr(0, feed + 1));
        stream.remove_prefix(feed + 1);
    }
    frames.rest = std::string(stream);
    return frames;
}

class CReceiver {
public:
    explicit CReceiver(std::uint8_t waits) : m_nWaits(waits) {}

    void receive(std::string_view piece) {
        m_buffer.append(piece.data(), static_cast<int>(piece.size()));
        takeLines(m_nWaits);
    }
    CFrames finish() {
        takeLines(0);
        m_frames.rest = std::string(view());
        return m_frames;
    }

private:
    std::string_view view() const {
        return {m_buffer.constData(), static_cast<std::size_t>(m_buffer.size())};
    }
    void takeLines(unsigned waits) {
        const std::string_view bytes = view();
        TC::EFrame frame = m_framing.next(bytes);
        for (; frame == TC::EFrame::Line; frame = m_framing.next(bytes)) {
            const std::string line(m_framing.line(bytes));
            require(m_framing.next(bytes) == TC::EFrame::Line && m_framing.line(bytes) == line);
            if (((waits >> (m_nLooks++ % 8)) & 1U) != 0) break;
            m_frames.lines.push_back(line);
            m_framing.take();
        }
        if (frame == TC::EFrame::LoneFeed) m_frames.hasLoneFeed = true;
        const std::string left(bytes.substr(bytes.size() - m_framing.left(bytes)));
        m_framing.compact(m_buffer);
        require(view() == left && m_framing.left(view()) == left.size());
    }

    const unsigned m_nWaits;
    unsigned m_nLooks = 0;
    QByteArray m_buffer;
    TC::CLineFraming m_framing;
    CFrames m_frames;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const std::size_t count = std::min({std::size_t{data[1]}, kMaxCuts, size - 2});
    std::vector<std::size_t> cuts;
    for (std::size_t i = 0; i < count; ++i)
        cuts.push_back(std::size_t{data[2 + i]} + 1);
    std::string_view stream(reinterpret_cast<const char*>(data) + 2 + count, size - 2 - count);
    if (cuts.empty()) cuts.push_back(stream.size() + 1);
    const CFrames expected = framesOf(stream);
    CReceiver receiver(data[0]);
    for (std::size_t i = 0; !stream.empty(); ++i) {
        const std::size_t length = std::min(cuts[i % cuts.size()], stream.size());
        receiver.receive(stream.substr(0, length));
        stream.remove_prefix(length);
    }
    require(receiver.finish() == expected);
    return 0;
}
