#include "ui/CheckoutWindow.h"

#include "core/NumberText.h"
#include "core/Platform.h"
#include "core/lwController.h"
#include "invoices/Stationery.h"
#include "orders/BOMManager.h"
#include "orders/CheckoutManager.h"
#include "prefs/PrefsController.h"
#include "ui/CustomInvoiceWindow.h"
#include "ui/lwHeaderSort.h"
#include "ui/integrityTableView.h"
#include "ui/lwWindowPlacement.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

using Control = CheckoutState::Control;

// The order's controls this window has: the copies to the sale skip the rest.
const CheckoutState::Controls kControls = {Control::Balance,     Control::BalancePaid, Control::Date,
                                           Control::Deposit,     Control::DepositPaid, Control::OrderNum,
                                           Control::Shipping,    Control::Tax,         Control::Title,
                                           Control::Value,       Control::ValueWithTax, Control::PaymentMethod};

QFont scaled(QFont font, qreal factor, bool bold)
{
    font.setPointSizeF(font.pointSizeF() * factor);
    font.setBold(bold);
    return font;
}

// A figure the user reads but does not type: a frameless, right-aligned field.
QLineEdit *figure(QWidget *parent, qreal factor, bool bold)
{
    auto *edit = new QLineEdit(parent);
    edit->setReadOnly(true);
    edit->setFrame(false);
    edit->setFocusPolicy(Qt::NoFocus);
    edit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    edit->setFont(scaled(edit->font(), factor, bold));
    return edit;
}

} // namespace

CheckoutWindow::CheckoutWindow(CheckoutManager *manager, BOMManager *lines, QWidget *parent)
    : lwEditorWindow(manager, parent), m_manager(manager), m_bom(lines)
{
    setObjectName(QStringLiteral("checkoutWindow"));
    m_manager->setControls(kControls);
    OrderEditorState &s = m_manager->editorState();
    CheckoutState &c = m_manager->checkoutState();

    // --- the customer -------------------------------------------------------------
    auto *customer = new QGroupBox(lwTr("Customer"), this);
    QLineEdit *name = figure(customer, 1.4, true);
    name->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    name->setObjectName(QStringLiteral("customerName"));
    name->setPlaceholderText(lwTr("No customer"));
    auto *details = new QFormLayout;
    const std::pair<const char *, QString *> shown[] = {{"Address:", &s.contactAdd1},  {"", &s.contactAdd3},
                                                        {"Postcode:", &s.contactPostcode},
                                                        {"Phone:", &s.contactPhone}};
    for (const auto &[label, field] : shown) {
        QLineEdit *edit = figure(customer, 1.0, false);
        edit->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        details->addRow(*label ? lwTr(label) : QString(), edit);
        bind(edit, *field);
    }
    bind(name, s.contactName);
    QPushButton *pick = button("pickContactButton", lwTr("&Customer…"), QKeySequence(Qt::Key_F2));
    QPushButton *create = button("newContactButton", lwTr("&New Customer…"), QKeySequence(Qt::Key_F3));
    m_editContact = button("editContactButton", lwTr("&Edit Customer…"), QKeySequence(Qt::Key_F4));
    auto *customerButtons = new QVBoxLayout;
    for (QPushButton *b : {pick, create, m_editContact})
        customerButtons->addWidget(b);
    customerButtons->addStretch();
    auto *customerLayout = new QHBoxLayout(customer);
    auto *customerText = new QVBoxLayout;
    customerText->addWidget(name);
    customerText->addLayout(details);
    customerLayout->addLayout(customerText, 1);
    customerLayout->addLayout(customerButtons);

    // --- the sale -------------------------------------------------------------------
    auto *sale = new QGroupBox(lwTr("Sale"), this);
    auto *saleForm = new QFormLayout(sale);
    QLineEdit *orderNum = figure(sale, 1.0, true);
    orderNum->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    orderNum->setObjectName(QStringLiteral("orderNumEdit"));
    QLineEdit *date = figure(sale, 1.0, false);
    date->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    auto *title = new QLineEdit(sale);
    title->setObjectName(QStringLiteral("titleEdit"));
    title->setPlaceholderText(lwTr("Counter sale"));
    auto *payment = new QComboBox(sale);
    payment->setObjectName(QStringLiteral("paymentPopUp"));
    saleForm->addRow(lwTr("Number:"), orderNum);
    saleForm->addRow(lwTr("Date:"), date);
    saleForm->addRow(lwTr("Title:"), title);
    saleForm->addRow(lwTr("Payment:"), payment);
    bind(orderNum, s.orderNum);
    bind(date, s.date);
    bind(title, s.title);
    bind(payment, s.paymentMethod);
    // Whatever the user types counts as an edit of the sale, kept in the state at once.
    connect(title, &QLineEdit::textEdited, this, [this] { run([this] { m_manager->markWindowEdited(); }); });
    connect(payment, &QComboBox::activated, this, [this] { run([this] { m_manager->markWindowEdited(); }); });

    // --- the lines ---------------------------------------------------------------------
    auto *linesBox = new QGroupBox(lwTr("Lines"), this);
    m_lines = new integrityTableView(linesBox);
    m_lines->setObjectName(QStringLiteral("checkoutTable"));
    m_lines->setModel(m_bom);
    m_lines->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                             QAbstractItemView::AnyKeyPressed);
    m_lines->horizontalHeader()->setSectionsMovable(false);
    m_lines->setProperty("noRowsText", lwTr("No lines yet: F5 adds an item, F7 a line of your own."));
    for (int i = 0; i < m_bom->columns().size(); ++i)
        m_lines->setColumnWidth(i, m_bom->columns().at(i).width);
    m_bom->setCheckoutManager(m_manager, m_lines->selectionModel());
    lwSortOnHeaderClicks(m_lines->horizontalHeader(), m_bom);
    m_pickMaterial = button("pickMaterialButton", lwTr("&Item…"), QKeySequence(Qt::Key_F5));
    QPushButton *pickTime = button("pickTimeButton", lwTr("Ti&me…"), QKeySequence(Qt::Key_F6));
    QPushButton *adHoc = button("adHocButton", lwTr("&Ad-hoc Line"), QKeySequence(Qt::Key_F7));
    QPushButton *deleteLine = button("deleteLineButton", lwTr("&Delete Line"), QKeySequence(Qt::Key_F8));
    // In the table itself the delete keys take the selected line too.
    for (const QKeySequence &key : {QKeySequence(QKeySequence::Delete), QKeySequence(Qt::Key_Backspace)}) {
        auto *shortcut = new QShortcut(key, m_lines, nullptr, nullptr, Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, deleteLine, &QPushButton::click);
    }
    layOutLines(linesBox, m_lines, {m_pickMaterial, pickTime, adHoc, deleteLine});

    // --- the money ------------------------------------------------------------------------
    auto *money = new QGroupBox(lwTr("Money"), this);
    auto *moneyGrid = new QGridLayout(money);
    m_taxLabel = new QLabel(money);
    QLineEdit *taxAmount = figure(money, 1.3, false);
    m_taxAmount = taxAmount;
    int row = 0;
    auto addFigure = [&](QLabel *label, QLineEdit *edit, const QString &field, bool amount, const char *objectName) {
        edit->setObjectName(QLatin1String(objectName));
        label->setFont(scaled(label->font(), 1.3, false));
        moneyGrid->addWidget(label, row, 0);
        moneyGrid->addWidget(edit, row, 1);
        m_figures.push_back({edit, &field, amount});
        ++row;
    };
    addFigure(new QLabel(lwTr("Subtotal:"), money), figure(money, 1.3, false), s.value, true, "valueEdit");
    addFigure(new QLabel(lwTr("Shipping:"), money), figure(money, 1.3, false), s.shipping, true, "shippingEdit");
    addFigure(m_taxLabel, taxAmount, s.taxAmount, true, "taxEdit");
    addFigure(new QLabel(lwTr("Value with tax:"), money), figure(money, 1.3, false), s.valueWithTax, true,
              "valueWithTaxEdit");
    addFigure(new QLabel(lwTr("Deposit:"), money), figure(money, 1.3, false), s.deposit, true, "depositEdit");
    addFigure(new QLabel(lwTr("Deposit paid:"), money), figure(money, 1.3, false), s.depositPaid, false,
              "depositPaidEdit");
    addFigure(new QLabel(lwTr("Balance paid:"), money), figure(money, 1.3, false), c.balancePaid, false,
              "balancePaidEdit");
    auto *due = new QLabel(lwTr("Balance"), money);
    due->setFont(scaled(due->font(), 2.0, true));
    QLineEdit *balance = figure(money, 3.2, true);
    balance->setObjectName(QStringLiteral("balanceEdit"));
    balance->setPlaceholderText(QStringLiteral("0.00"));
    balance->setMinimumWidth(balance->fontMetrics().horizontalAdvance(QStringLiteral("000000.00")));
    m_figures.push_back({balance, &s.balance, true});
    m_paidNote = new QLabel(money);
    m_paidNote->setObjectName(QStringLiteral("paidNote"));
    m_paidNote->setFont(scaled(m_paidNote->font(), 1.6, true));
    moneyGrid->addWidget(due, 0, 2, 1, 1, Qt::AlignRight | Qt::AlignBottom);
    moneyGrid->addWidget(balance, 1, 2, 3, 1, Qt::AlignRight | Qt::AlignTop);
    moneyGrid->addWidget(m_paidNote, 4, 2, row - 4, 1, Qt::AlignRight | Qt::AlignTop);
    moneyGrid->setColumnStretch(2, 1);

    // --- the window ------------------------------------------------------------------------------
    m_stationery = new QComboBox(this);
    m_stationery->setObjectName(QStringLiteral("stationeryPopUp"));
    m_stationery->setToolTip(lwTr("The invoice template to print"));
    QPushButton *print = button("printInvoiceButton", lwTr("&Print…"), QKeySequence::Print);
    // The orders list comes to the front, and a double-click there opens the order here.
    QPushButton *existing = button("existingOrderButton", lwTr("&Open Order…"), QKeySequence::Open);
    QPushButton *newSale = button("newSaleButton", lwTr("New &Sale"), QKeySequence::New);
    QPushButton *tender = button("tenderButton", lwTr("&Tender…"), QKeySequence(Qt::Key_F12));
    tender->setFont(scaled(tender->font(), 1.5, true));
    // Return anywhere but in an edited cell opens the tender panel.
    tender->setDefault(true);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(makeHelpButton());
    bottom->addSpacing(12);
    bottom->addWidget(m_stationery);
    bottom->addWidget(print);
    bottom->addStretch();
    bottom->addWidget(existing);
    bottom->addWidget(newSale);
    bottom->addWidget(tender);

    auto *top = new QHBoxLayout;
    top->addWidget(customer, 3);
    top->addWidget(sale, 2);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(linesBox, 1);
    layout->addWidget(money);
    layout->addLayout(bottom);
    setFirstField(m_lines);

    connectAction(pick, m_manager, &CheckoutManager::checkoutSelectContact);
    connectAction(create, m_manager, &CheckoutManager::checkoutNewContact);
    connectAction(m_editContact, m_manager, &CheckoutManager::checkoutEditContact);
    connectAction(m_pickMaterial, m_manager, &CheckoutManager::checkoutSelectItem);
    connectAction(pickTime, m_manager, &CheckoutManager::checkoutSelectTime);
    connectAction(adHoc, m_manager, &CheckoutManager::checkoutCreateAdhoc);
    connectAction(deleteLine, m_manager, &CheckoutManager::checkoutDeleteItem);
    connectAction(newSale, m_manager, &CheckoutManager::checkoutNew);
    connectAction(existing, m_manager, &CheckoutManager::updateExistingOrder);
    connectAction(tender, m_manager, &CheckoutManager::tender);
    connect(print, &QPushButton::clicked, this, &CheckoutWindow::printInvoice);

    buildTenderPanel();
    refresh();
    resize(qMax(sizeHint().width(), 900), qMax(sizeHint().height(), 760));
}

CheckoutWindow::~CheckoutWindow() = default;

void CheckoutWindow::buildTenderPanel()
{
    CheckoutState &c = m_manager->checkoutState();
    m_tenderPanel = new QDialog(this);
    m_tenderPanel->setObjectName(QStringLiteral("tenderPanel"));
    m_tenderPanel->setWindowTitle(lwTr("Tender"));
    m_tenderPanel->setWindowModality(Qt::WindowModal);
    auto *grid = new QGridLayout;
    auto *dueLabel = new QLabel(lwTr("Due"), m_tenderPanel);
    QLineEdit *due = figure(m_tenderPanel, 2.4, true);
    due->setObjectName(QStringLiteral("tenderDueEdit"));
    auto *tenderedLabel = new QLabel(lwTr("Tendered"), m_tenderPanel);
    auto *tendered = new QLineEdit(m_tenderPanel);
    tendered->setObjectName(QStringLiteral("tenderedEdit"));
    tendered->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    tendered->setFont(scaled(tendered->font(), 2.4, true));
    tendered->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
    m_tenderInformative = new QLabel(m_tenderPanel);
    m_tenderInformative->setObjectName(QStringLiteral("tenderInformativeText"));
    QLineEdit *balance = figure(m_tenderPanel, 2.4, true);
    balance->setObjectName(QStringLiteral("tenderBalanceEdit"));
    for (QLabel *label : {dueLabel, tenderedLabel, m_tenderInformative})
        label->setFont(scaled(label->font(), 1.6, false));
    grid->addWidget(dueLabel, 0, 0);
    grid->addWidget(due, 0, 1);
    grid->addWidget(tenderedLabel, 1, 0);
    grid->addWidget(tendered, 1, 1);
    grid->addWidget(m_tenderInformative, 2, 0);
    grid->addWidget(balance, 2, 1);
    bind(tendered, c.tenderTendered);
    m_figures.push_back({due, &c.tenderDue, true});
    m_figures.push_back({balance, &c.tenderBalance, true});

    auto *full = new QPushButton(lwTr("&Full Amount"), m_tenderPanel);
    full->setObjectName(QStringLiteral("fullAmountButton"));
    auto *cancel = new QPushButton(lwTr("Cancel"), m_tenderPanel);
    auto *ok = new QPushButton(lwTr("OK"), m_tenderPanel);
    ok->setObjectName(QStringLiteral("tenderOKButton"));
    for (QPushButton *b : {full, cancel})
        b->setAutoDefault(false);
    ok->setDefault(true); // Return tenders
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(full);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(ok);
    auto *layout = new QVBoxLayout(m_tenderPanel);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    // Every keystroke moves the balance and the words beside it.
    connect(tendered, &QLineEdit::textEdited, this, [this] { run([this] { m_manager->controlTextDidChange(); }); });
    connectAction(full, m_manager, &CheckoutManager::tenderFullAmount);
    connectAction(ok, m_manager, &CheckoutManager::tenderOK);
    connect(cancel, &QPushButton::clicked, m_tenderPanel, &QDialog::reject);
    // Cancel, Escape and the close box all end here.
    connect(m_tenderPanel, &QDialog::rejected, this, [this] { run([this] { m_manager->tenderCancel(this); }); });
    connect(m_manager, &CheckoutManager::tenderPanelOpened, this, [this, tendered] {
        refresh();
        m_tenderPanel->adjustSize();
        lwWindowPlacement::centreOver(m_tenderPanel, this);
        m_tenderPanel->open();
        // Some window managers place a new dialog themselves: ask again once it is mapped.
        lwWindowPlacement::centreOver(m_tenderPanel, this);
        tendered->setFocus(Qt::OtherFocusReason);
    });
    connect(m_manager, &CheckoutManager::tenderPanelClosed, this, [this] {
        if (m_tenderPanel->isVisible())
            m_tenderPanel->done(QDialog::Accepted);
    });
}

QPushButton *CheckoutWindow::button(const char *name, const QString &text, const QKeySequence &shortcut)
{
    auto *b = new QPushButton(text, this);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    b->setFocusPolicy(Qt::TabFocus);
    // The shortcut is the window's, whichever control has the focus.
    auto *key = new QShortcut(shortcut, this);
    connect(key, &QShortcut::activated, b, &QPushButton::click);
    QString plain = text;
    plain.remove(QLatin1Char('&')).remove(QStringLiteral("…"));
    b->setToolTip(QStringLiteral("%1 (%2)").arg(plain, shortcut.toString(QKeySequence::NativeText)));
    return b;
}

void CheckoutWindow::printInvoice()
{
    writeBack(); // the controls into the state, then the ones the sale keeps into it
    m_manager->commitEditor();
    const Order *order = m_manager->currentItem();
    lwController *controller = m_manager->ledgerwick();
    if (!order || !controller)
        return;
    auto *invoice = new CustomInvoiceWindow(controller->platform(), this);
    invoice->controller().setWhichStationary(m_stationery->currentText());
    invoice->controller().setbomDataSource(m_bom, m_bom->columns());
    invoice->setOrder(order, controller->getContactbyId(QString::number(order->getContactId())));
}

void CheckoutWindow::reject()
{
    close();
}

void CheckoutWindow::refreshExtras()
{
    const QString chosen = m_stationery->currentText();
    const QStringList titles = Stationery::titles();
    QStringList listed;
    for (int i = 0; i < m_stationery->count(); ++i)
        listed << m_stationery->itemText(i);
    if (listed != titles) {
        m_stationery->clear();
        m_stationery->addItems(titles);
        if (const int kept = m_stationery->findText(chosen); kept >= 0)
            m_stationery->setCurrentIndex(kept);
    }
    // The figures are shown, never typed, so the sale keeps its amounts as
    // calculated; on screen they read as money.
    for (const Figure &f : m_figures)
        f.edit->setText(f.amount && !f.field->isEmpty() ? NumberText::twoDecimals(NumberText::floatValue(*f.field))
                                                        : *f.field);
    const OrderEditorState &s = m_manager->editorState();
    m_taxLabel->setText(s.taxShown ? s.taxLabel : lwTr("Tax:"));
    m_taxLabel->setVisible(s.taxShown);
    m_taxAmount->setVisible(s.taxShown);
    m_editContact->setEnabled(s.editContactEnabled);
    // The lines wear the sale's label colour, as the sale's row does in the orders list.
    const QColor saleColour = m_manager->labelColorForOrder(m_manager->currentItem());
    m_lines->setRowColour(saleColour == m_manager->clearcolour() ? QColor() : saleColour);
    const CheckoutState &c = m_manager->checkoutState();
    m_tenderInformative->setText(c.tenderInformativeText);
    // Once tendered, what was handed over stays in sight until the next sale.
    m_paidNote->setText(c.tendered ? QStringLiteral("%1 %2").arg(c.tenderInformativeText,
                                                                  NumberText::twoDecimals(
                                                                      NumberText::floatValue(c.tenderBalance)))
                                   : QString());
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    const QString term = prefs ? prefs->appliedTerms().item : QString();
    m_pickMaterial->setText(QStringLiteral("&%1…").arg(term.isEmpty() ? lwTr("Item") : term));
}

QString CheckoutWindow::editorTitle() const
{
    return lwTr("Checkout");
}

void CheckoutWindow::changeEvent(QEvent *event)
{
    lwEditorWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && isVisible())
        m_manager->windowDidBecomeKey();
}

void CheckoutWindow::closeEvent(QCloseEvent *event)
{
    writeBack();
    if (!m_manager->windowShouldClose(this)) {
        event->ignore();
        return;
    }
    event->accept();
}
