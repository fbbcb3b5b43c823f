// The fixture of the tests that add, start, stop and change strategies.
#pragma once

#include "tests/service/ServiceFixture.h"

#include <vector>

class CRegistryFixture : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        QObject::connect(
            &service(), &TC::COrderService::sigSetStatus, &service(),
            [this](bool running) { statuses.push_back(running); }, Qt::DirectConnection);
    }
    /// Binds the service to its user. The strategies stay unchanged.
    void load() {
        service().loadFromConfig(false);
        statuses.clear();
    }
    /// Changes the host's map while no user is bound. Otherwise the file loop of an earlier load could read
    /// the map at the same time.
    template<typename Change>
    void changeMap(const Change& change) {
        host.user.loggedIn = false;
        load();
        change();
        host.user.loggedIn = true;
        load();
    }
    void add(const TC::COrderStrategyParam& strategy) {
        changeMap([&] { host.user.addStrategy(strategy); });
    }
    CStrategyBuilder stoppedFile() {
        folder.write("a.txt", "old orders");
        return CStrategyBuilder().file(folder.path("a.txt")).code(QStringLiteral("SH600000")).stopped();
    }
    /// Writes to a record while no pass of the file loop reads it.
    template<typename Write>
    void writeWhileLocked(const Write& write) {
        bool isWritten = false;
        service().visitStrategies([&](int, const TC::COrderStrategyParam&) {
            if (!isWritten) write();
            isWritten = true;
        });
        ASSERT_TRUE(isWritten);
    }
    int start(int id = 3, bool showMsg = false) {
        error.clear();
        return service().startOrderStrategy(id, error, showMsg);
    }
    bool isRunning(int id = 3) { return service().getStrategyMap()[id].isRunning(); }

    QString error;
    std::vector<bool> statuses;
};
