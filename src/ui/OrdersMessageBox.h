#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"
#include "orderservice/widgets/CommonDialog.h"

#include <QString>

#include <map>
#include <optional>
#include <string>
#include <vector>

class QPushButton;
class QTimer;

namespace UW {
class CSimpleTextWidget;
class CWidgetList;
} // namespace UW

namespace TC {

class COrdersConfirmWidget;
class CRemarkLine;

/// The modal dialog in which the user confirms a batch. While it is open, the intake of order files pauses
/// (gates/IntakePause.h). The two buttons and Escape end the pause. If the dialog is closed by its frame, the
/// batch is declined, the pause stays set, and a message says so. If the application quits, nobody has
/// answered, and the pause stays set. Main thread.
class ORDERSERVICE_EXPORT COrdersMessageBox : public UW::CCommonDialog {
    Q_OBJECT
public:
    /// The events of handleEvent.
    enum EEvent {
        ButtonEvent = 5, ///< the value is an EButton
        SelectionEvent = 47,
        CurrentRowEvent = 49,
        RemarkEvent = 98,
    };
    enum EButton { OkButton = 0, CancelButton = 1 };

    /// Shows the orders and waits for the answer, in an event loop of its own. Returns 1 if the user has
    /// confirmed, and 0 in every other case. A call while a dialog is open returns 0 and reports that the
    /// orders are not executed. Batches of the order service that must be confirmed wait until the dialog is
    /// closed.
    ///
    /// remarks: UTF-8, with the keys of `orders`. Another key is an order without a record: it is counted,
    /// and has no row. parent: may be null.
    static int showOrders(QWidget* parent, const QString& title, EQdTraderType traderType,
                          const std::map<int, CCodeOrderParam>& orders,
                          const std::map<int, std::string>& remarks);

    /// The remark of an order after its dialog has closed, in UTF-8, or an empty text. `row` is the key of
    /// the order in the last call of showOrders.
    static std::string getRemark(int row);

    /// Whether the user has ended the last dialog: by a button, by a key, or by its frame. If not, the dialog
    /// was destroyed, or the application quits: nobody has answered.
    static bool wasAnswered();

    /// Whether a dialog is open.
    static bool isOpen();

    /// Closes the open dialog, if there is one, without an answer: showOrders returns 0, and wasAnswered is
    /// false. Order files are paused afterwards only if they were before the dialog.
    static void withdraw();

    ~COrdersMessageBox() override;

    void handleEvent(int event, int value) override;

    /// The size of the dialog for this wish on a screen with this space for windows, in pixels. `frame`: what
    /// the window manager adds. The result is without it.
    static QSize boundedSize(const QSize& wish, const QSize& available, const QSize& frame);

    /// The size for a table of this height, with the width of every dialog, on such a screen.
    static QSize sizeFor(int tableHeight, const QSize& available, const QSize& frame);

    COrdersConfirmWidget* table() const { return m_table; }
    QPushButton* okButton() const { return m_okButton; }
    QPushButton* cancelButton() const { return m_cancelButton; }
    /// Null if the deployment or the user has no remarks.
    CRemarkLine* remarkEdit() const { return m_remarkEdit; }
    /// With the guard: its timer, which enables the buttons 0.5 seconds after the dialog is shown.
    QTimer* guardTimer() const { return m_guardTimer; }
    /// With the guard: takes no answer for the next 0.5 seconds. For a host whose own question was above the
    /// dialog: a key that was meant for that question must not answer this one.
    void restartGuard();
    /// The line above the buttons that says which edits reach no command. Empty if there are none.
    QString notice() const;
    /// The number of orders and the sum of money.
    QString summary() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    COrdersMessageBox(const QString& title, QWidget* parent);

    void makeInner();
    void makeRemark(UW::CWidgetList& row);
    QPushButton* makeButton(const QString& text, int number);
    void setOrders(const std::map<int, CCodeOrderParam>& orders, const std::map<int, std::string>& remarks);
    void loadLayout();
    void saveLayout();
    void fitSize();
    void answer(int button);
    bool isTooEarly() const;
    void startGuard();
    void endGuard();
    /// Whether the key must not reach the dialog.
    bool isKeyIgnored(const QKeyEvent& event);
    void showRemark();
    void keepRemark();
    void showSummary();
    void fitSummary();
    void showNotice();
    int changedRemarks() const;
    /// With the guard: Enter in the remark line ends the remark. Returns false for any other key or place.
    bool endRemark(const QKeyEvent& event);
    /// The caller's key of the selected row, or null if no row is selected.
    const int* selectedKey() const;

    bool m_bWasPaused = false; ///< the confirmation pause was set before the dialog
    std::vector<CCodeOrderParam> m_orders;
    COrdersConfirmWidget* m_table = nullptr;
    QPushButton* m_okButton = nullptr;
    QPushButton* m_cancelButton = nullptr;
    CRemarkLine* m_remarkEdit = nullptr;
    UW::CSimpleTextWidget* m_summary = nullptr;
    UW::CSimpleTextWidget* m_notice = nullptr;
    std::map<int, int> m_rowKeys;               ///< the caller's key by row
    std::map<int, std::string> m_callerRemarks; ///< as they came in, by the caller's key
    int m_nWithoutRow = 0;                      ///< orders that have a remark and no record
    const bool m_bGuarded;                      ///< no answer is taken until the user can have seen the batch
    QTimer* const m_guardTimer;                 ///< enables the buttons
    std::optional<double> m_dShown;             ///< time of the clock in seconds
    bool m_bLayoutLoaded = false;
    std::string m_strLayoutUser; ///< the user whose layout was loaded
};

} // namespace TC
