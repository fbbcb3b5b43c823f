#pragma once

#include "tests/acceptance/ServiceRun.h"

#include <string>
#include <vector>

/// The real service on a host that has an instrument and a group "G" for every family.
class CFamilyService {
public:
    CFamilyService() {
        for (const char* group : {"1", "3", "4", "5", "6", "7", "10", "11"})
            set("group", std::string(group) + " G A1=0.6 A2=0.4");
        set("instrument", "future IF1712 market=CF price=3500");
        set("instrument", "futureoption IO1712 market=CF price=30");
        set("instrument", "option 10000001 market=SHO price=0.05");
        set("instrument", "sgt SGT00700 market=SGT code=00700 price=300");
        set("instrument", "hgt HGT00005 market=HGT code=00005 price=50");
        set("instrument", "gold GOLDAUTD market=GOLD code=AUTD price=400");
        set("instrument", "neeq NEEQ430001 market=NEEQ code=430001 price=3 transfer=2");
        set("instrument", "neeq NEEQ430002 market=NEEQ code=430002 price=3 transfer=4");
        set("instrument", "neeq NEEQ430003 market=NEEQ code=430003 price=3");
        set("stock", "SH 688001 10");
        set("star", "SH688001");
        set("stock", "SH 510050 1");
        set("basket", "some 600000:100:1:18");
        set("basket", "star 688001:400:1:18");
        set("basket", "蓝筹 600000:200:0.5:19");
        set("portfolio", "12____main 600000 700");
        set("switch", "mdl_order_compose_basket_buy_sell");
    }
    void set(const std::string& word, const std::string& rest) { m_run.apply({word, rest, "", {}}); }
    void addStrategy(int channel, const std::string& family, const std::string& words = {}) {
        set("strategy", std::to_string(channel) + " family=" + family + " " + words);
    }
    /// The words that a strategy needs besides its family, so that every number of the family can go out.
    static std::string wordsOf(const std::string& family) {
        return family == "futures option" ? "volume=1 code=IO1712" : "volume=1";
    }
    /// Drops a file with these lines, each with its line feed. Returns what reaches the host.
    std::vector<std::string> drop(int channel, const std::string& lines) {
        m_run.takeLog();
        m_run.apply({"file", std::to_string(channel), lines, {}});
        return m_run.takeLog();
    }
    /// Logs in and sends one order line, which must be accepted. Returns what reaches the host.
    std::vector<std::string> send(int channel, const std::string& line) {
        using EWho = CTalkLine::EWho;
        m_run.takeLog();
        m_run.apply({"talk",
                     std::to_string(channel),
                     "",
                     {{EWho::Server, "+OK Welcom to Lumo Order Server Version 0.0.3"},
                      {EWho::Client, "user trader"},
                      {EWho::Server, "+OK"},
                      {EWho::Client, "pass secret"},
                      {EWho::Server, "+OK"},
                      {EWho::Client, line},
                      {EWho::Server, "+OK"}}});
        return m_run.takeLog();
    }

private:
    CServiceRun m_run;
};

/// The first line that starts with `head`, or an empty text.
inline std::string findLine(const std::vector<std::string>& log, const std::string& head) {
    for (const std::string& line : log) {
        if (line.compare(0, head.size(), head) == 0) return line;
    }
    return {};
}
