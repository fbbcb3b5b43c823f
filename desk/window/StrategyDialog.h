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

namespace desk {

/// Edits the values of one strategy. Values that it does not show, and those that the user does not edit,
/// stay as they are. Main thread.
class CStrategyDialog : public QDialog {
    Q_OBJECT
public:
    /// Applies the values. Returns an empty text, or the reason why they are refused; then the dialog stays.
    using CApply = std::function<QString(const TC::COrderStrategyParam&)>;

    /// `folder`: that of the desk; a relative path of a file is below it. `isNew`: the kind of the source can
    /// be chosen.
    CStrategyDialog(const CDeskConfig& config, QString folder, TC::COrderStrategyParam strategy, bool isNew,
                    CApply apply, QWidget* parent = nullptr);

    /// The strategy with the values of the fields.
    TC::COrderStrategyParam strategy() const;
    void accept() override;
    QString refusal() const;

private:
    /// A group or an account.
    struct CChoice {
        TC::ESelectedAccountType m_eType;
        QString m_strName;
    };

    void makeForm();
    void fillFields();
    void fillAccounts();
    void addAccount(const CChoice& choice);
    int findAccount(const CChoice& choice) const;
    void fillPriceType();
    void showSource();
    bool isAccountMissing() const;
    QString signalSource(TC::EOrderStrategyType type) const;

    const CDeskConfig& m_config;
    const QString m_strFolder;
    const TC::COrderStrategyParam m_strategy;
    const bool m_bNew;
    const CApply m_apply;
    CChoice m_choice; ///< the strategy's own until the user chooses another one
    QLineEdit* m_name;
    QComboBox* m_source;
    QLineEdit* m_path;
    QLineEdit* m_user;
    QLineEdit* m_pass;
    QComboBox* m_family;
    QComboBox* m_accounts;
    QLineEdit* m_code;
    QLineEdit* m_volume; ///< empty: not set
    QCheckBox* m_useAmount;
    QDoubleSpinBox* m_amount;
    double m_dShownAmount = 0; ///< as the field shows it before the user edits it
    QComboBox* m_priceType;
    QLabel* m_refusal;
};

} // namespace desk
