#pragma once

#include "invoices/CustomInvoiceController.h"
#include "invoices/InvoiceMailer.h"

#include <QMainWindow>

#include <memory>

class Contact;
class Order;
class Platform;
class QAction;
class QPrinter;
class QTextEdit;

// The invoice window: a filled template shown as rich text, with Print,
// "Save as PDF..." and "Email as PDF..." on its toolbar. It deletes itself
// when closed.
class CustomInvoiceWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit CustomInvoiceWindow(Platform *platform, QWidget *parent = nullptr);
    ~CustomInvoiceWindow() override;

    // Give these before setOrder(): the template's title and the lines table.
    CustomInvoiceController &controller() { return m_controller; }
    InvoiceMailer &mailer() { return m_mailer; }
    // Fills the invoice for the order and its customer (none: no address),
    // titles the window with the template's name, centres and shows it.
    void setOrder(const Order *order, const Contact *contact);
    // The simple form instead of a template: the order's address and money
    // between the user's header and footer, with the lines table when the
    // order includes its lines. Titled "Invoice", centred and shown.
    void setSimpleInvoice(const Order *order, const Contact *contact, const QString &currency,
                          const QString &linesHtml);

    QTextEdit *invoiceTextView() const { return m_textView; }
    QAction *printAction() const { return m_print; }
    QAction *savePdfAction() const { return m_savePdf; }
    QAction *emailPdfAction() const { return m_emailPdf; }

public Q_SLOTS:
    // Through the print panel, attached to this window; scaled to the page width.
    void print();
    void saveAsPdf();
    void emailAsPdf();

private:
    QString documentTitle() const;
    void remember(const Order *order, const Contact *contact);
    void centreAndShow();

    CustomInvoiceController m_controller;
    InvoiceMailer m_mailer;
    QTextEdit *m_textView = nullptr;
    QAction *m_print = nullptr;
    QAction *m_savePdf = nullptr;
    QAction *m_emailPdf = nullptr;
    std::unique_ptr<QPrinter> m_printer;
    QString m_address;
    QString m_orderNumber;
};
