#include "ui/OrderEditor.h"

#include "invoices/Stationery.h"
#include "ui/CustomInvoiceWindow.h"
#include "ui/lwHeaderSort.h"

#include "core/Platform.h"
#include "core/lwController.h"
#include "core/lwKeyResponder.h"
#include "orders/BOMManager.h"
#include "orders/OrderManager.h"
#include "prefs/PrefsController.h"
#include "ui/MyImageView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

OrderEditor::OrderEditor(OrderManager *manager, BOMManager *lines, QWidget *parent)
    : lwEditorWindow(manager, parent), m_manager(manager), m_bom(lines)
{
    setObjectName(QStringLiteral("orderEditorWindow"));
    OrderEditorState &s = m_manager->editorState();

    // --- the customer -------------------------------------------------------------
    auto *customer = new QGroupBox(lwTr("Customer"), this);
    auto *customerForm = new QFormLayout;
    customerForm->addRow(lwTr("Name:"), shownOnly(s.contactName));
    customerForm->addRow(lwTr("Address:"), shownOnly(s.contactAdd1));
    customerForm->addRow(QString(), shownOnly(s.contactAdd2));
    customerForm->addRow(QString(), shownOnly(s.contactAdd3));
    customerForm->addRow(lwTr("Short address:"), shownOnly(s.contactShortAddress));
    customerForm->addRow(lwTr("Postcode:"), shownOnly(s.contactPostcode));
    customerForm->addRow(lwTr("Phone:"), shownOnly(s.contactPhone));
    customerForm->addRow(lwTr("Mobile:"), shownOnly(s.contactMobile));
    customerForm->addRow(lwTr("Fax:"), shownOnly(s.contactFax));
    customerForm->addRow(lwTr("E-mail:"), shownOnly(s.contactEmail));
    auto *customerButtons = new QHBoxLayout;
    QPushButton *pick = button(QStringLiteral("pickContactButton"), lwTr("Pick…"));
    QPushButton *create = button(QStringLiteral("createContactButton"), lwTr("New…"));
    m_editContact = button(QStringLiteral("editContactButton"), lwTr("Edit…"));
    QPushButton *copy = button(QStringLiteral("copyContactButton"), lwTr("Copy"));
    QPushButton *mail = button(QStringLiteral("sendEmailButton"), lwTr("Mail"));
    for (QPushButton *b : {pick, create, m_editContact, copy, mail})
        customerButtons->addWidget(b);
    auto *customerLayout = new QVBoxLayout(customer);
    customerLayout->addLayout(customerForm);
    customerLayout->addLayout(customerButtons);

    // --- the order ------------------------------------------------------------------
    auto *orderBox = new QGroupBox(lwTr("Order"), this);
    auto *orderForm = new QFormLayout(orderBox);
    auto *orderNum = new QLineEdit;
    auto *date = new QLineEdit;
    auto *title = new QLineEdit;
    auto *type = new QComboBox;
    auto *status = new QComboBox;
    auto *description = new QPlainTextEdit;
    auto *payment = new QComboBox;
    auto *depositPaid = new QLineEdit;
    auto *balancePaid = new QComboBox;
    auto *includeBOM = new QCheckBox(lwTr("Print the lines on the invoice"));
    auto *sent = new QCheckBox(lwTr("Invoice sent"));
    orderNum->setObjectName(QStringLiteral("orderNumEdit"));
    title->setObjectName(QStringLiteral("titleEdit"));
    status->setObjectName(QStringLiteral("statusPopUp"));
    description->setMaximumHeight(70);
    orderForm->addRow(lwTr("Number:"), orderNum);
    orderForm->addRow(lwTr("Date:"), date);
    orderForm->addRow(lwTr("Title:"), title);
    orderForm->addRow(lwTr("Type:"), type);
    orderForm->addRow(lwTr("Status:"), status);
    orderForm->addRow(lwTr("Description:"), description);
    orderForm->addRow(lwTr("Payment:"), payment);
    orderForm->addRow(lwTr("Deposit paid:"), depositPaid);
    orderForm->addRow(lwTr("Balance paid:"), balancePaid);
    orderForm->addRow(QString(), includeBOM);
    orderForm->addRow(QString(), sent);
    bind(orderNum, s.orderNum);
    bind(date, s.date);
    bind(title, s.title);
    bind(type, s.type);
    bind(status, s.status);
    bind(description, s.description);
    bind(payment, s.paymentMethod);
    bind(depositPaid, s.depositPaid);
    bind(balancePaid, s.balancePaid);
    bind(includeBOM, s.includeBOM);
    bind(sent, s.sent);
    setFirstField(title);

    // --- the lines -------------------------------------------------------------------
    auto *linesBox = new QGroupBox(lwTr("Lines"), this);
    m_lines = new QTableView(linesBox);
    m_lines->setObjectName(QStringLiteral("linesTable"));
    m_lines->setModel(m_bom);
    m_lines->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lines->setSelectionMode(QAbstractItemView::SingleSelection);
    m_lines->verticalHeader()->hide();
    m_lines->horizontalHeader()->setStretchLastSection(true);
    for (int i = 0; i < m_bom->columns().size(); ++i)
        m_lines->setColumnWidth(i, m_bom->columns().at(i).width);
    m_bom->setTableSelection(m_lines->selectionModel());
    lwSortOnHeaderClicks(m_lines->horizontalHeader(), m_bom);
    auto *responder = new lwKeyResponder(m_lines);
    responder->setOwner(m_bom);
    m_lines->installEventFilter(responder);
    m_pickMaterial = button(QStringLiteral("pickMaterialButton"), lwTr("Select From Items…"));
    QPushButton *pickTime = button(QStringLiteral("pickTimeButton"), lwTr("Add Time…"));
    QPushButton *adHoc = button(QStringLiteral("adHocButton"), lwTr("Add Line"));
    QPushButton *deleteLine = button(QStringLiteral("deleteLineButton"), lwTr("Delete Line"));
    layOutLines(linesBox, m_lines, {m_pickMaterial, pickTime, adHoc, deleteLine});

    // --- money ------------------------------------------------------------------------
    auto *money = new QGroupBox(lwTr("Money"), this);
    auto *moneyGrid = new QGridLayout(money);
    auto *value = new QLineEdit;
    auto *shipping = new QLineEdit;
    m_taxAmount = new QLineEdit;
    m_net = new QLineEdit;
    auto *deposit = new QLineEdit;
    auto *balance = new QLineEdit;
    value->setObjectName(QStringLiteral("valueEdit"));
    balance->setObjectName(QStringLiteral("balanceEdit"));
    deposit->setObjectName(QStringLiteral("depositEdit"));
    m_taxLabel = new QLabel;
    m_netLabel = new QLabel(lwTr("Net:"));
    QPushButton *insertTotal = button(QStringLiteral("insertTotalButton"), lwTr("Total of lines"));
    QPushButton *insertShipping = button(QStringLiteral("insertShippingButton"), lwTr("Shipping of lines"));
    m_calculateTax = button(QStringLiteral("calculateTaxButton"), lwTr("Calculate"));
    QPushButton *calculateBalance = button(QStringLiteral("calculateBalanceButton"), lwTr("Balance"));
    int row = 0;
    auto addMoney = [&](QWidget *label, QLineEdit *edit, QPushButton *action) {
        moneyGrid->addWidget(label, row, 0);
        moneyGrid->addWidget(edit, row, 1);
        if (action)
            moneyGrid->addWidget(action, row, 2);
        ++row;
    };
    addMoney(new QLabel(lwTr("Value:")), value, insertTotal);
    addMoney(new QLabel(lwTr("Shipping:")), shipping, insertShipping);
    addMoney(m_taxLabel, m_taxAmount, m_calculateTax);
    addMoney(m_netLabel, m_net, nullptr);
    addMoney(new QLabel(lwTr("Deposit:")), deposit, nullptr);
    addMoney(new QLabel(lwTr("Balance:")), balance, calculateBalance);
    addMoney(new QLabel(lwTr("Value with tax:")), shownOnly(s.valueWithTax), nullptr);
    bind(value, s.value);
    bind(shipping, s.shipping);
    bind(m_taxAmount, s.taxAmount);
    bind(m_net, s.net);
    bind(deposit, s.deposit);
    bind(balance, s.balance);

    // --- repeats and attachments ---------------------------------------------------------
    auto *repeat = new QGroupBox(lwTr("Repeat"), this);
    auto *repeats = new QCheckBox(lwTr("Repeat this order every"));
    repeats->setObjectName(QStringLiteral("repeatsCheck"));
    auto *frequency = new QComboBox;
    m_repeatNote = new QLabel;
    m_repeatNote->setWordWrap(true);
    bind(repeats, s.repeats);
    bind(frequency, s.frequency);
    auto *repeatLayout = new QGridLayout(repeat);
    repeatLayout->addWidget(repeats, 0, 0);
    repeatLayout->addWidget(frequency, 0, 1);
    repeatLayout->addWidget(m_repeatNote, 1, 0, 1, 2);

    auto *attachments = new QGroupBox(lwTr("Attachments"), this);
    m_well = new MyImageView;
    m_well->setOrderManager(m_manager);
    m_attachmentNote = new QLabel;
    m_attachmentNote->setObjectName(QStringLiteral("attachmentNote"));
    QPushButton *attach = button(QStringLiteral("attachButton"), lwTr("Attach…"));
    m_viewAttachments = button(QStringLiteral("viewAttachmentsButton"), lwTr("View"));
    auto *attachLayout = new QGridLayout(attachments);
    attachLayout->addWidget(m_well, 0, 0, 2, 1);
    attachLayout->addWidget(m_attachmentNote, 0, 1, 1, 2);
    attachLayout->addWidget(attach, 1, 1);
    attachLayout->addWidget(m_viewAttachments, 1, 2);

    // --- the window -------------------------------------------------------------------------
    QPushButton *ok = button(QStringLiteral("okButton"), lwTr("OK"));
    QPushButton *cancel = button(QStringLiteral("cancelButton"), lwTr("Cancel"));
    QPushButton *duplicate = button(QStringLiteral("duplicateButton"), lwTr("Duplicate"));
    QPushButton *print = button(QStringLiteral("printInvoiceButton"), lwTr("Print…"));
    QPushButton *simple = button(QStringLiteral("simpleInvoiceButton"), lwTr("Simple Invoice…"));
    simple->setToolTip(lwTr("The order between your own invoice header and footer (File menu)"));
    m_stationery = new QComboBox(this);
    m_stationery->setObjectName(QStringLiteral("stationeryPopUp"));
    m_stationery->setToolTip(lwTr("The invoice template to print"));
    ok->setDefault(true);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(makeHelpButton());
    bottom->addWidget(duplicate);
    bottom->addSpacing(12);
    bottom->addWidget(m_stationery);
    bottom->addWidget(print);
    bottom->addWidget(simple);
    bottom->addStretch();
    bottom->addWidget(cancel);
    bottom->addWidget(ok);

    auto *top = new QHBoxLayout;
    top->addWidget(customer, 1);
    top->addWidget(orderBox, 1);
    auto *lower = new QHBoxLayout;
    auto *side = new QVBoxLayout;
    side->addWidget(repeat);
    side->addWidget(attachments);
    side->addStretch();
    lower->addWidget(money, 1);
    lower->addLayout(side, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(linesBox, 1);
    layout->addLayout(lower);
    layout->addLayout(bottom);

    auto *base = static_cast<lwEditorManagerBase *>(m_manager);
    connectAction(ok, base, &lwEditorManagerBase::finish);
    connectAction(cancel, static_cast<lwEditorManagerBase *>(m_manager), &lwEditorManagerBase::cancel);
    connectAction(duplicate, m_manager, static_cast<void (OrderManager::*)(QObject *)>(&OrderManager::duplicate));
    connectAction(pick, m_manager, &OrderManager::pickContact);
    connectAction(create, m_manager, &OrderManager::createContact);
    connectAction(m_editContact, m_manager, &OrderManager::editContact);
    connectAction(copy, m_manager, &OrderManager::copyContact);
    connectAction(mail, m_manager, &OrderManager::sendEmail);
    connectAction(m_pickMaterial, m_manager, &OrderManager::pickMaterial);
    connectAction(pickTime, m_manager, &OrderManager::pickTime);
    connectAction(adHoc, m_manager, &OrderManager::addAdHocLine);
    connectAction(deleteLine, m_manager, &OrderManager::deleteLine);
    connectAction(insertTotal, m_manager, &OrderManager::insertBOMTotal);
    connectAction(insertShipping, m_manager, &OrderManager::insertBOMShipping);
    connectAction(m_calculateTax, m_manager, &OrderManager::calculateTax);
    connectAction(calculateBalance, m_manager, &OrderManager::calculateBalance);
    connectAction(attach, m_manager, &OrderManager::attach);
    connectAction(m_viewAttachments, m_manager, &OrderManager::viewAttachments);
    connect(print, &QPushButton::clicked, this, &OrderEditor::printInvoice);
    connect(simple, &QPushButton::clicked, this, &OrderEditor::printSimpleInvoice);

    refresh();
    resize(qMax(sizeHint().width(), 980), qMax(sizeHint().height(), 820));
}

OrderEditor::~OrderEditor() = default;

CustomInvoiceWindow *OrderEditor::invoiceWindowForCommittedOrder()
{
    writeBack(); // the controls into the editor's state, then into the order
    m_manager->commitEditor();
    lwController *controller = m_manager->ledgerwick();
    if (!m_manager->currentItem() || !controller)
        return nullptr;
    return new CustomInvoiceWindow(controller->platform(), this);
}

void OrderEditor::printInvoice()
{
    CustomInvoiceWindow *invoice = invoiceWindowForCommittedOrder();
    if (!invoice)
        return;
    const Order *order = m_manager->currentItem();
    invoice->controller().setWhichStationary(m_stationery->currentText());
    invoice->controller().setbomDataSource(m_bom, m_bom->columns());
    invoice->setOrder(order, m_manager->ledgerwick()->getContactbyId(QString::number(order->getContactId())));
}

void OrderEditor::printSimpleInvoice()
{
    CustomInvoiceWindow *invoice = invoiceWindowForCommittedOrder();
    if (!invoice)
        return;
    const Order *order = m_manager->currentItem();
    lwController *controller = m_manager->ledgerwick();
    const PrefsController *prefs = controller->getPrefsController();
    invoice->setSimpleInvoice(order, controller->getContactbyId(QString::number(order->getContactId())),
                              prefs ? prefs->getCurrency() : QString(), m_bom->getDataAsHTMLusingTableView(m_bom->columns()));
}

QPushButton *OrderEditor::button(const QString &name, const QString &text)
{
    auto *b = new QPushButton(text, this);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

QLineEdit *OrderEditor::shownOnly(QString &field)
{
    auto *edit = new QLineEdit(this);
    edit->setReadOnly(true);
    // Read-only: writing it back stores the value it shows.
    bind(edit, field);
    return edit;
}

void OrderEditor::refreshExtras()
{
    const QString chosen = m_stationery->currentText();
    m_stationery->clear();
    m_stationery->addItems(Stationery::titles());
    if (const int kept = m_stationery->findText(chosen); kept >= 0)
        m_stationery->setCurrentIndex(kept);
    const OrderEditorState &s = m_manager->editorState();
    for (QWidget *w : {static_cast<QWidget *>(m_taxLabel), static_cast<QWidget *>(m_taxAmount),
                       static_cast<QWidget *>(m_netLabel), static_cast<QWidget *>(m_net),
                       static_cast<QWidget *>(m_calculateTax)})
        w->setVisible(s.taxShown);
    m_taxLabel->setText(s.taxLabel);
    m_repeatNote->setText(s.repeatNote);
    m_attachmentNote->setText(s.attachmentNote);
    m_viewAttachments->setEnabled(s.viewAttachmentsEnabled);
    m_editContact->setEnabled(s.editContactEnabled);
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    m_pickMaterial->setText(lwTr("Select From %1…").arg(prefs ? prefs->appliedTerms().items : lwTr("Items")));
    m_well->updateIcon();
}

QString OrderEditor::editorTitle() const
{
    const PrefsController *prefs = m_manager->ledgerwick() ? m_manager->ledgerwick()->getPrefsController() : nullptr;
    const QString term = prefs ? prefs->appliedTerms().order : QString();
    return term.isEmpty() ? lwTr("Order") : term;
}

void OrderEditor::changeEvent(QEvent *event)
{
    lwEditorWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        Q_EMIT activated();
}
