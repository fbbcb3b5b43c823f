#include "bench/DeskProcess.h"

#include "bench/BenchHost.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace bench {
namespace {

constexpr auto kPatience = std::chrono::seconds(120);
/// Much shorter than a round. Counting the lines more often would take processor time from the desk.
constexpr auto kPollInterval = std::chrono::milliseconds(2);
constexpr int kStrategies = 2;

constexpr const char* kDeskFile = R"([user]
name = "bench"
kind = 100
rights = ["signal_orders", "file_orders"]
order_service = true
file_interval_ms = 11

[switches]
mdl_order_file_guard = true
mdl_order_command_guard = true

[[account]]
key = "A1"
display_id = "10001"
broker = "stock"
funds = 1e12

[[account]]
key = "A2"
display_id = "10002"
broker = "stock"
funds = 1e12

[[group]]
name = "main"
broker = "stock"
members = [{ account = "A1", weight = 6 }, { account = "A2", weight = 4 }]
)";

constexpr const char* kInstrumentFile =
    "market,code,name,product,types,unit,ui_unit,upper_limit,lower_limit,reference_price,kind,multiplier,"
    "margin_rate,transfer_kind\n"
    "SH,600000,bench,STOCK,100028 100003,100,100,12.10,9.90,11.00\n";

constexpr const char* kQuoteFile =
    "instrument,last,previous_close,bid1,bid1_volume\nSH600000,11,11,10.99,1000\n";

/// The socket guard is off. If it is on, an order is not read before the service has finished most of the
/// earlier ones, so the rate of the replies is the rate of the books, which desk_file measures.
std::string strategyFile(unsigned short port) {
    const std::string common = "group = \"main\"\nfamily = \"stock\"\nvolume = 1000\n"
                               "price_type = \"specified\"\nrunning = true\n";
    return "[[strategy]]\nchannel = 1\nname = \"file\"\nsource = \"file\"\npath = \"orders.txt\"\n" + common +
           "\n[[strategy]]\nchannel = 2\nname = \"socket\"\nsource = \"signal\"\npath = \"127.0.0.1:" +
           std::to_string(port) + "\"\nuser = \"bench\"\npass = \"bench-login\"\n" + common;
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
    ::chmod(path.c_str(), 0600); // the strategies have a password
}

/// Returns a port that was free a moment ago.
unsigned short findFreePort() {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool isBound = ::bind(socket, reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
                         ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    ::close(socket);
    if (!isBound) throw std::runtime_error("no port is free");
    return ntohs(address.sin_port);
}

/// Starts the desk. Its messages go to the file `screen.txt` of the folder.
pid_t startDesk(const std::string& folder) {
    posix_spawn_file_actions_t files;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, (folder + "/screen.txt").c_str(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    std::string program = ORDERDESK_PROGRAM, run = "run", path = folder;
    char* arguments[] = {program.data(), run.data(), path.data(), nullptr};
    pid_t process = 0;
    const int error = ::posix_spawn(&process, program.c_str(), &files, nullptr, arguments, environ);
    ::posix_spawn_file_actions_destroy(&files);
    if (error != 0) throw std::runtime_error(program + " cannot be started");
    return process;
}

} // namespace

CDeskFolder::CDeskFolder() : m_strPath(makeFolder()), m_nPort(findFreePort()) {
    writeFile(m_strPath + "/desk.toml", kDeskFile);
    writeFile(m_strPath + "/instruments.csv", kInstrumentFile);
    writeFile(m_strPath + "/quotes.csv", kQuoteFile);
    writeFile(m_strPath + "/strategies.toml", strategyFile(m_nPort));
    writeFile(journalPath(), "");
}

CDeskFolder::~CDeskFolder() {
    removeFolder(m_strPath);
}

std::string CDeskFolder::loginLines() {
    return "user bench\r\npass bench-login\r\n";
}

std::string CDeskFolder::socketLine() {
    return "placeorder 23,2,10.5,SH600000,1000\r\n";
}

void CDeskFolder::dropOrders(int count) const {
    std::string lines;
    for (int i = 0; i < count; ++i)
        lines += "23,1,10.5,SH600000,1000\n";
    const std::string draft = m_strPath + "/orders.draft";
    writeFile(draft, lines);
    std::rename(draft.c_str(), (m_strPath + "/orders.txt").c_str());
}

CJournalCount::CJournalCount(const std::string& path, const std::string& kind)
    : m_strBegin("{\"kind\":\"" + kind + "\","), m_nFile(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}

CJournalCount::~CJournalCount() {
    ::close(m_nFile);
}

long CJournalCount::update() {
    char bytes[65536];
    for (ssize_t size = 0; (size = ::read(m_nFile, bytes, sizeof bytes)) > 0;) {
        m_strRest.append(bytes, static_cast<std::size_t>(size));
        std::string_view rest = m_strRest;
        for (std::size_t end = 0; (end = rest.find('\n')) != std::string_view::npos;
             rest.remove_prefix(end + 1))
            m_nCount += rest.compare(0, m_strBegin.size(), m_strBegin) == 0 ? 1 : 0;
        m_strRest.erase(0, m_strRest.size() - rest.size());
    }
    return m_nCount;
}

CDeskProcess::CDeskProcess(const CDeskFolder& folder) : m_folder(folder) {
    m_nProcess = startDesk(folder.path());
    CJournalCount strategies(folder.journalPath(), "strategy");
    waitForLines(strategies, kStrategies);
}

CDeskProcess::~CDeskProcess() {
    if (m_nProcess == 0) return;
    ::kill(m_nProcess, SIGKILL);
    ::waitpid(m_nProcess, nullptr, 0);
}

void CDeskProcess::waitForLines(CJournalCount& lines, long count) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (lines.update() < count) {
        checkIsRunning();
        if (std::chrono::steady_clock::now() > end) throw std::runtime_error("the desk is too slow");
        std::this_thread::sleep_for(kPollInterval);
    }
}

void CDeskProcess::checkIsRunning() {
    if (::waitpid(m_nProcess, nullptr, WNOHANG) == 0) return;
    m_nProcess = 0;
    std::ifstream screen(m_folder.path() + "/screen.txt");
    throw std::runtime_error("the desk has ended: " +
                             std::string(std::istreambuf_iterator<char>(screen), {}));
}

void CDeskProcess::end() {
    ::kill(m_nProcess, SIGTERM);
    int status = 0;
    ::waitpid(m_nProcess, &status, 0);
    m_nProcess = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("the desk has failed");
}

} // namespace bench
