#pragma once

#include "desk/config/ConfigLoader.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace desk::test {

/// A small desk folder without mistakes. A test then adds mistakes to it.
class CConfigFolder {
public:
    CConfigFolder() {
        m_folder.write("desk.toml", R"([user]
name = "trader"
kind = 100
rights = ["file_orders", 7]

[[account]]
key = "A1"
broker = "stock"
funds = 1000.0

[[account]]
key = "C1"
broker = "credit"
funds = 0

[[group]]
name = "main"
broker = "stock"
members = [{ account = "A1", weight = 6 }]

[[basket]]
name = "蓝筹"
rows = [{ market = "SH", code = "600000", volume = 100, weight = 1.0 }]

[settings.stock]
price_type = "buy1"
remark = "早盘"
)");
        m_folder.write("strategies.toml", R"([[strategy]]
channel = 1
name = "一号"
source = "file"
path = "orders/one.txt"
account = "A1"
family = "stock"
running = true

[[strategy]]
channel = 2
source = "file"
path = "orders/two.txt"
group = "main"
family = "stock"
)");
        m_folder.write("instruments.csv", "market,code,name,types,unit,upper_limit,lower_limit\n"
                                          "SH,600000,浦江,100028 100003,100,11,9\n"
                                          "SZ,000001,平原,100028 1172,100,22,18\n");
        m_folder.write("quotes.csv", "instrument,last,bid1,bid1_volume,bid2,bid2_volume,ask1,ask1_volume\n"
                                     "SH600000,10,9.99,100,9.98,300,10.01,200\n"
                                     "SZ000001,20,19.99,100,,,20.01,200\n");
        m_folder.write("quote_changes.csv", "after_seconds,instrument,last\n"
                                            "5,SH600000,10.5\n"
                                            "2,SZ000001,20.5\n");
        m_folder.write("positions.csv", "account,instrument,volume,available,cost\n"
                                        "A1,SH600000,500,300,9.5\n");
    }

    const CTempFolder& files() const { return m_folder; }
    std::string path() const { return m_folder.path(); }

    /// Replaces the text, which must occur exactly once.
    void replace(const std::string& file, const std::string& what, const std::string& by) const {
        std::string text = m_folder.read(file);
        const std::size_t place = text.find(what);
        ASSERT_NE(place, std::string::npos) << "no \"" << what << "\" in " << file;
        ASSERT_EQ(text.find(what, place + 1), std::string::npos) << "\"" << what << "\" twice in " << file;
        m_folder.write(file, text.replace(place, what.size(), by));
    }

    /// Makes the file readable only by its owner, or by everybody.
    void setSecret(const std::string& file, bool isSecret) const {
        using std::filesystem::perms;
        const perms others = isSecret ? perms::none : perms::group_read | perms::others_read;
        std::filesystem::permissions(m_folder.path(file), perms::owner_read | perms::owner_write | others);
    }

    CLoadedConfig load() const { return loadDeskConfig(path()); }

    /// Each mistake as "file:line: message".
    std::vector<std::string> mistakes() const {
        std::vector<std::string> lines;
        for (const CDiagnostic& mistake : load().mistakes)
            lines.push_back(mistake.file + ":" + std::to_string(mistake.line) + ": " + mistake.message);
        return lines;
    }

private:
    CTempFolder m_folder;
};

} // namespace desk::test
