#include "ui/CustomInvoiceWindow.h"

#include "contacts/Contact.h"
#include "core/Platform.h"
#include "invoices/Invoice.h"
#include "orders/Order.h"
#include "richtext/RichTextTools.h"

#include <QAction>
#include <QGuiApplication>
#include <QIcon>
#include <QPrintDialog>
#include <QPrinter>
#include <QScreen>
#include <QTextEdit>
#include <QToolBar>

CustomInvoiceWindow::CustomInvoiceWindow(Platform *platform, QWidget *parent)
    : QMainWindow(parent), m_mailer(platform), m_textView(new QTextEdit(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("CustomInvoice"));
    // The view shows the controller's document; it stays editable so that a
    // last-minute note can be typed before printing.
    m_textView->setDocument(m_controller.invoiceTextView());
    setCentralWidget(m_textView);

    QToolBar *toolBar = addToolBar(lwTr("Invoice"));
    toolBar->setObjectName(QStringLiteral("ledgerwickCustomInvoiceToolBar"));
    toolBar->setIconSize(QSize(24, 24));
    toolBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_print = toolBar->addAction(QIcon(QStringLiteral(":/icons/print.svg")), lwTr("Print"));
    m_print->setObjectName(QStringLiteral("printItemIdentifier"));
    m_print->setShortcut(QKeySequence::Print);
    m_savePdf = toolBar->addAction(QIcon(QStringLiteral(":/icons/pad.svg")), lwTr("Save as PDF..."));
    m_emailPdf = toolBar->addAction(QIcon(QStringLiteral(":/icons/envelope.svg")), lwTr("Email as PDF..."));
    connect(m_print, &QAction::triggered, this, &CustomInvoiceWindow::print);
    connect(m_savePdf, &QAction::triggered, this, &CustomInvoiceWindow::saveAsPdf);
    connect(m_emailPdf, &QAction::triggered, this, &CustomInvoiceWindow::emailAsPdf);
    resize(760, 900);
}

CustomInvoiceWindow::~CustomInvoiceWindow() = default;

void CustomInvoiceWindow::setOrder(const Order *order, const Contact *contact)
{
    m_controller.setOrder(order, contact);
    remember(order, contact);
    m_controller.fill();
    // The filled document is the window's own: it keeps no pointer to records
    // that may be deleted while it stays open.
    m_controller.setOrder(nullptr, nullptr);
    setWindowTitle(m_controller.windowTitle());
    centreAndShow();
}

void CustomInvoiceWindow::setSimpleInvoice(const Order *order, const Contact *contact, const QString &currency,
                                           const QString &linesHtml)
{
    Invoice form;
    form.setDetailsForThisOrder(order, contact, currency);
    form.composeInto(m_controller.invoiceTextView(),
                     order && order->getIncludeBOM() ? linesHtml : QString());
    remember(order, contact);
    m_controller.setWhichStationary(lwTr("Invoice"));
    setWindowTitle(m_controller.windowTitle());
    centreAndShow();
}

void CustomInvoiceWindow::remember(const Order *order, const Contact *contact)
{
    m_address = contact ? contact->getEmail() : QString();
    m_orderNumber = order ? order->getOrderNum() : QString();
}

void CustomInvoiceWindow::centreAndShow()
{
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        QRect frame = geometry();
        frame.moveCenter(screen->availableGeometry().center());
        move(frame.topLeft());
    }
    show();
}

QString CustomInvoiceWindow::documentTitle() const
{
    return m_orderNumber.isEmpty() ? m_controller.windowTitle()
                                   : m_controller.windowTitle() + QLatin1Char(' ') + m_orderNumber;
}

void CustomInvoiceWindow::print()
{
    m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    m_printer->setDocName(documentTitle());
    auto *dialog = new QPrintDialog(m_printer.get(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    connect(dialog, &QDialog::accepted, this,
            [this] { RichTextTools::print(m_controller.invoiceTextView(), m_printer.get()); });
    dialog->open();
}

void CustomInvoiceWindow::saveAsPdf()
{
    m_mailer.saveAsPdf(m_controller.invoiceTextView(), documentTitle());
}

void CustomInvoiceWindow::emailAsPdf()
{
    m_mailer.email(m_controller.invoiceTextView(), documentTitle(), m_address);
}
