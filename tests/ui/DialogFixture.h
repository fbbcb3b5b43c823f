#pragma once

#include "orderservice/gates/IntakePause.h"
#include "orderservice/ui/OrdersMessageBox.h"
#include "tests/ui/ConfirmFixture.h"

#include <QApplication>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

/// The dialog on the fake host.
class CDialogTest : public testing::Test {
protected:
    void SetUp() override {
        TC::setConfirmationPause(false);
        host.user.hints = {1};
    }
    void TearDown() override { TC::setConfirmationPause(false); }

    /// Shows the orders and calls `act` in the dialog's event loop.
    int show(const std::map<int, TC::CCodeOrderParam>& batch, const std::map<int, std::string>& remarks,
             const std::function<void(TC::COrdersMessageBox&)>& act,
             TC::EQdTraderType traderType = TC::EQdTraderType::Stock) {
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<TC::COrdersMessageBox*>(QApplication::activeModalWidget());
            wasShown = box != nullptr;
            if (box != nullptr) act(*box);
        });
        return TC::COrdersMessageBox::showOrders(nullptr, QStringLiteral("标题"), traderType, batch, remarks);
    }
    static void clickOk(TC::COrdersMessageBox& box) { QTest::mouseClick(box.okButton(), Qt::LeftButton); }
    static void clickCancel(TC::COrdersMessageBox& box) {
        QTest::mouseClick(box.cancelButton(), Qt::LeftButton);
    }

    /// Enters another volume into a row.
    static void enterVolume(TC::COrdersMessageBox& box, int row, const char* text) {
        QAbstractItemModel* model = box.table()->table()->view()->model();
        model->setData(model->index(row, TC::COrdersConfirmWidget::Volume), QString::fromLatin1(text),
                       Qt::EditRole);
    }

    CFakeHost host;
    bool wasShown = false;
    /// Three orders under the keys of the caller, which have gaps.
    const std::map<int, TC::CCodeOrderParam> orders{
        {3, makeRecord(100)}, {5, makeRecord(200)}, {9, makeRecord(300, "600001")}};
};
