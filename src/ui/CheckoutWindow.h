#pragma once

#include "ui/lwEditorWindow.h"

#include <vector>

class BOMManager;
class CheckoutManager;
class QComboBox;
class QDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class integrityTableView;

// The counter checkout, laid out as a till: the customer, the sale's lines,
// the money in large figures, printing, New Sale and Tender. The tender panel
// is a sheet on the window. Every button has a keyboard shortcut, so a sale
// can be run from the keyboard alone. Closing the window (or Escape) asks
// before an unpaid sale is dropped.
class CheckoutWindow : public lwEditorWindow
{
    Q_OBJECT
public:
    CheckoutWindow(CheckoutManager *manager, BOMManager *lines, QWidget *parent = nullptr);
    ~CheckoutWindow() override;

    CheckoutManager *manager() const { return m_manager; }
    integrityTableView *linesTable() const { return m_lines; }
    QComboBox *stationeryPopUp() const { return m_stationery; }
    QDialog *tenderPanel() const { return m_tenderPanel; }

    // Commits the sale's fields without closing, then fills the chosen
    // template for it in a window of its own.
    void printInvoice();
    // Escape goes the way of the close box: an unpaid sale is asked about.
    void reject() override;

protected:
    void refreshExtras() override;
    QString editorTitle() const override;
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    QPushButton *button(const char *name, const QString &text, const QKeySequence &shortcut);
    void buildTenderPanel();

    // A money figure or date shown in a read-only field.
    struct Figure
    {
        QLineEdit *edit;
        const QString *field;
        bool amount; // shown with two decimals
    };

    CheckoutManager *m_manager; // not owned
    BOMManager *m_bom;          // not owned
    integrityTableView *m_lines = nullptr;
    QComboBox *m_stationery = nullptr;
    QPushButton *m_editContact = nullptr;
    QPushButton *m_pickMaterial = nullptr;
    QLabel *m_taxLabel = nullptr;
    QWidget *m_taxAmount = nullptr;
    QLabel *m_customer = nullptr;
    QDialog *m_tenderPanel = nullptr;
    QLabel *m_tenderInformative = nullptr;
    QLabel *m_paidNote = nullptr;
    std::vector<Figure> m_figures;
};
