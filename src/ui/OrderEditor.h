#pragma once

#include "ui/lwEditorWindow.h"

class BOMManager;
class CustomInvoiceWindow;
class MyImageView;
class OrderManager;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

// The order editor window, laid out as an order is filled in: the customer,
// the order's own fields, its lines, the money, repeats and attachments.
// OK commits, Cancel and Escape drop the edit, closing the window commits.
class OrderEditor : public lwEditorWindow
{
    Q_OBJECT
public:
    OrderEditor(OrderManager *manager, BOMManager *lines, QWidget *parent = nullptr);
    ~OrderEditor() override;

    OrderManager *manager() const { return m_manager; }
    QTableView *linesTable() const { return m_lines; }
    QComboBox *stationeryPopUp() const { return m_stationery; }

    // Commits the editor without closing it, then fills the chosen template
    // for the order in a window of its own.
    void printInvoice();
    // The same commit, then the simple form: the user's own header and footer
    // around the order's address, lines and money.
    void printSimpleInvoice();

Q_SIGNALS:
    // The window became the active one: the checkout lets go of its order.
    void activated();

protected:
    void refreshExtras() override;
    QString editorTitle() const override;
    void changeEvent(QEvent *event) override;

private:
    QPushButton *button(const QString &name, const QString &text);
    QLineEdit *shownOnly(QString &field);
    // The editor committed; a new invoice window for its order, or none.
    CustomInvoiceWindow *invoiceWindowForCommittedOrder();

    OrderManager *m_manager; // not owned
    BOMManager *m_bom;       // not owned
    QTableView *m_lines = nullptr;
    MyImageView *m_well = nullptr;
    QPushButton *m_pickMaterial = nullptr;
    QPushButton *m_editContact = nullptr;
    QPushButton *m_viewAttachments = nullptr;
    QPushButton *m_calculateTax = nullptr;
    QLabel *m_taxLabel = nullptr;
    QLabel *m_netLabel = nullptr;
    QLineEdit *m_taxAmount = nullptr;
    QLineEdit *m_net = nullptr;
    QLabel *m_repeatNote = nullptr;
    QLabel *m_attachmentNote = nullptr;
    QComboBox *m_stationery = nullptr;
};
