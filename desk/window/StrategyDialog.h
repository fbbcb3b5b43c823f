#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/records/StrategyParam.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace desk {

/// Edits the values of one strategy. Values that it does not show stay as they are. Main thread.
class CStrategyDialog : public QDialog {
    Q_OBJECT
public:
    /// Applies the values. Returns an empty text, or the reason why they are refused; then the dialog stays.
    using CApply = std::function<QString(const TC::COrderStrategyParam&)>;

    /// `isNew`: the kind of the source can be chosen.
    CStrategyDialog(const CDeskConfig& config, TC::COrderStrategyParam strategy, bool isNew, CApply apply,
                    QWidget* parent = nullptr);

    /// The strategy with the values of the fields.
    TC::COrderStrategyParam strategy() const;
    void accept() override;
    QString refusal() const;

private:
    void fillAccounts();
    void showSource();

    const CDeskConfig& m_config;
    const TC::COrderStrategyParam m_strategy;
    const CApply m_apply;
    QLineEdit* m_name;
    QComboBox* m_source;
    QLineEdit* m_path;
    QLineEdit* m_user;
    QLineEdit* m_pass;
    QComboBox* m_family;
    QComboBox* m_accounts;
    QLineEdit* m_code;
    QSpinBox* m_volume;
    QCheckBox* m_useAmount;
    QDoubleSpinBox* m_amount;
    QComboBox* m_priceType;
    QLabel* m_refusal;
};

} // namespace desk
