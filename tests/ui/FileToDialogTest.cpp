// From order files over the real service and its adapter to the real dialog, and to the commands.
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/service/OrderServiceAdapter.h"
#include "orderservice/ui/OrdersConfirmer.h"
#include "tests/service/ServiceFixture.h"
#include "tests/ui/DialogFixture.h"

#include <QMetaObject>

#include <memory>
#include <vector>

namespace {

using namespace TC;

class FileToDialog : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        setConfirmationPause(false);
        host.user.orderService = false;
        host.user.hints.insert(32);
        addFileStrategy(3);
        addFileStrategy(4);
        adapter = std::make_unique<COrderServiceAdapter>();
        setOrderConfirmer(&confirmer);
    }
    void TearDown() override {
        setOrderConfirmer(nullptr);
        adapter.reset();
        ServiceFixture::TearDown();
        QCoreApplication::processEvents();
        setConfirmationPause(false);
    }
    /// Returns when the service thread has processed its queue and the main thread has placed the batches.
    void settle() {
        QMetaObject::invokeMethod(
            &service(), [] {}, Qt::BlockingQueuedConnection);
        QCoreApplication::processEvents();
    }

    COrdersConfirmer confirmer;
    std::unique_ptr<COrderServiceAdapter> adapter;
};

TEST_F(FileToDialog, TwoFilesAreAskedOneBehindTheOther) {
    service().loadFromConfig(false);
    const std::size_t before = host.messageTexts().size();
    drop(3, "23,0,10.5,600000,1000\n");
    drop(4, "23,0,11.5,600000,2000\n");
    ASSERT_TRUE(host.waitForMessages(before + 2)); // the service's thread has begun both batches
    std::vector<QString> volumes;
    std::vector<bool> pauses;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        auto* box = qobject_cast<COrdersMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr) return;
        volumes.push_back(box->table()->table()->itemText(0, COrdersConfirmWidget::Volume));
        pauses.push_back(isConfirmationPauseSet());
        QTest::mouseClick(volumes.size() == 1 ? box->okButton() : box->cancelButton(), Qt::LeftButton);
    });
    user.start(0);
    for (int turn = 0; turn < 5; ++turn)
        settle();
    EXPECT_EQ(volumes, (std::vector<QString>{QStringLiteral("400"), QStringLiteral("800")}))
        << "the parts of the last account";
    EXPECT_EQ(pauses, (std::vector<bool>{true, true}));
    EXPECT_FALSE(isConfirmationPauseSet());
    ASSERT_EQ(host.commands().size(), 1u);
    ASSERT_EQ(host.commands()[0]->m_codes.size(), 2u);
    EXPECT_EQ(host.commands()[0]->m_codes[0].m_nVolume, 600);
    EXPECT_EQ(host.commands()[0]->m_codes[1].m_nVolume, 400);
    EXPECT_FALSE(COrdersMessageBox::isOpen());
}

} // namespace
