#pragma once

#include "orderservice/service/OrderService.h"
#include "tests/desk/window/WindowFolder.h"

#include <QApplication>
#include <QMessageBox>

#include <atomic>
#include <iterator>
#include <memory>
#include <regex>
#include <string>

namespace desk {

/// A window folder with steps for halts and resumes.
class CHaltFolder : public CWindowFolder {
protected:
    void SetUp() override { makeFolder(false); }

    /// The commands with a task: those that went to the broker.
    static int commandsIn(const std::string& journal) {
        static const std::regex kCommand(R"("kind":"command"[^\n]*"task":[0-9])");
        return static_cast<int>(std::distance(std::sregex_iterator(journal.begin(), journal.end(), kCommand),
                                              std::sregex_iterator()));
    }
    static std::string manyOrders(int count) {
        std::string lines;
        for (int i = 0; i < count; ++i)
            lines += "23,0,7.50,600104,200\n";
        return lines;
    }
    /// Watches the batches that are placed.
    CWindowFolder::CStep watchBatches() {
        return [this](CMainWindow& window) {
            QObject::connect(
                TC::COrderService::instance(), &TC::COrderService::sigPlaceOrders, &window,
                [this] { isPlaced = true; }, Qt::DirectConnection);
            return true;
        };
    }
    CWindowFolder::CStep hasPlaced() {
        return [this](CMainWindow&) { return isPlaced.load(); };
    }
    /// Makes `flag` true when the batches that were placed before are processed.
    static void noteProcessed(std::atomic<bool>& flag) {
        const auto note = [](std::atomic<bool>* done) { *done = true; };
        TC::COrderService::instance()->holdUntilProcessed(std::shared_ptr<std::atomic<bool>>(&flag, note));
    }
    std::atomic<bool> isPlaced{false};

    static QMessageBox* box() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* found = qobject_cast<QMessageBox*>(window);
            if (found != nullptr && found->isVisible()) return found;
        }
        return nullptr;
    }
    static CWindowFolder::CStep resumes() {
        return [](CMainWindow& window) {
            window.stateBar().haltButton().click();
            return true;
        };
    }
};

} // namespace desk
